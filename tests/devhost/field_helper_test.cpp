#include "devhost/library/field_helper.h"

#include <gmock/gmock.h>

#include "devhost/record/recording_connection.h"
#include "platform/portable/portable_platform.h"
#include "tests/devhost/host_folder.h"

namespace pxtarvo::tests {

namespace {

class FieldWindow : public Window {
  public:
    explicit FieldWindow(Platform& platform)
        : Window(platform, {.name = "w", .caption = "w"}),
          box(*this, {.name = "Text1", .rect = {}, .tabIndex = 0}) {}
    TextBox box;

  protected:
    void Form_Load() override {}
};

class FieldHelper : public ::testing::Test {
  protected:
    std::string left(std::string_view text, std::string_view format) {
        window.box.setText(text);
        helper.SalirCampo(window.box, format);
        return window.box.text();
    }
    std::string search(devhost::SearchChoice choice) {
        user->choices = {std::move(choice)};
        return helper.Buscar(busqueda);
    }

    HostFolder host{true};
    std::shared_ptr<devhost::DevUser> user = std::make_shared<devhost::DevUser>();
    portable::PortablePlatform platform{
        portable::PortableOptions{.driveC = {}, .clock = hostClock, .makeConnection = {}}, *user};
    FieldWindow window{platform};
    devhost::DevFieldHelper helper{user, nullptr, spanishLocale()};
    Busqueda busqueda{.sSQL = "Select Marca_ID,Marca_Des,Marca_CodAbrev FROM Marcas",
                      .sCampo = "Marca_Des",
                      .sTitulo1 = {},
                      .sTitulo2 = {},
                      .sTituloVentana = {}};
};

TEST_F(FieldHelper, FormatsWhatAFieldHolds) {
    const char* const cases[][3] = {
        {"25072006", "dd/mm/yyyy", "25/07/2006"},
        {"250706", "dd/mm/yyyy", "25/07/2006"},
        {" 5/8/08 ", "dd/mm/yyyy", "05/08/2008"},
        {"99992006", "dd/mm/yyyy", "99992006"},
        {"pronto", "dd/mm/yyyy", "pronto"},
        {"", "dd/mm/yyyy", ""},
        {"1234567,5", "#,###,##0.00", "1.234.567,50"},
        {"-999,995", "#,###,##0.00", "-1.000,00"},
        {"0", "#,###,##0.00", "0,00"},
        {"-0,001", "#,###,##0.00", "0,00"},
        {"x", "#,###,##0.00", "x"},
        {"25072006", "", "25072006"},
    };
    for (const auto& [text, format, expected] : cases) EXPECT_EQ(left(text, format), expected) << text;
}

TEST_F(FieldHelper, ColoursAndSelectsTheFieldInUse) {
    helper.ColorFondo(16777215);
    helper.ColorFoco(65535);
    window.box.setText("añó");
    helper.EntrarCampo(window.box, "");
    EXPECT_EQ(window.box.backColor(), 65535u);
    EXPECT_EQ(window.box.selectionLength(), 3);
    helper.SalirCampo(window.box, "");
    EXPECT_EQ(window.box.backColor(), 16777215u);
}

TEST_F(FieldHelper, FiltersKeys) {
    const auto passed = [&](bool bFecha) {
        std::string keys;
        for (std::int16_t key = 1; key < 256; ++key) {
            std::int16_t KeyAscii = key;
            helper.FiltrarTecla(window.box, KeyAscii, bFecha);
            if (KeyAscii != 0 && key >= 32) keys += static_cast<char>(key);
            EXPECT_TRUE(key >= 32 || KeyAscii == key) << key;
        }
        return keys;
    };
    EXPECT_EQ(passed(false), "+,-0123456789");
    EXPECT_EQ(passed(true), "/0123456789");
}

TEST_F(FieldHelper, SearchesThroughItsConnection) {
    EXPECT_EQ(errorOf([&] { helper.Buscar(busqueda); }), 91);
    std::vector<std::string> record;
    const auto recorder =
        std::make_shared<devhost::Recorder>([&](std::string_view line) { record.emplace_back(line); });
    helper.Conexion(makeObject<devhost::RecordingConnection>(host.connection, recorder, nullptr, true));

    EXPECT_EQ(search(std::int32_t{1}),
              "2\x01"
              "Agromar\x01"
              "AGM");
    EXPECT_EQ(search("vEND"), "3\x01Vendaval\x01VDV");
    EXPECT_EQ(search("zz"), "");
    EXPECT_EQ(search(std::int32_t{4}), "");
    EXPECT_EQ(search(std::monostate{}), "");
    busqueda.sSQL = "Select Pro_ID,Pro_NOM,Pro_comer FROM Pro";
    busqueda.sCampo = "PRO_COMER";
    EXPECT_EQ(search("EL T"),
              "3\x01\x01"
              "El Tractorista");
    busqueda.sSQL = "Select Pro_ID,Pro_COD,Pro_NOM FROM Pro WHERE Pro_COD = 0";
    EXPECT_EQ(search("a"), "");
    EXPECT_THAT(record, ::testing::IsEmpty()) << "the host's own query is no call of the plug-in";
}

TEST_F(FieldHelper, RoundsOnTheDecimalValue) {
    EXPECT_EQ(helper.Redondear(31.07 / 100 * 50, 2), 15.54);
    EXPECT_EQ(helper.Redondear(-1.005, 2), -1.01);
    EXPECT_EQ(errorOf([&] { helper.Redondear(1, -1); }), 5);
}

}  // namespace

}  // namespace pxtarvo::tests
