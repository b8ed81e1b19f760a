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

    HostFolder host{true};
    std::shared_ptr<devhost::DevUser> user = std::make_shared<devhost::DevUser>();
    portable::PortablePlatform platform{
        portable::PortableOptions{.driveC = {}, .clock = hostClock, .makeConnection = {}}, *user};
    FieldWindow window{platform};
    devhost::DevFieldHelper helper{user, nullptr, spanishLocale()};
};

TEST_F(FieldHelper, FormatsWhatAFieldHolds) {
    const char* const cases[][3] = {{"25072006", "dd/mm/yyyy", "25/07/2006"},
                                    {"250706", "dd/mm/yyyy", "25/07/2006"},
                                    {" 5/8/08 ", "dd/mm/yyyy", "05/08/2008"},
                                    {"99992006", "dd/mm/yyyy", "99992006"},
                                    {"pronto", "dd/mm/yyyy", "pronto"},
                                    {"25072006", "", "25072006"},
                                    {"1234567,5", "#,###,##0.00", "1.234.567,50"},
                                    {"-999,995", "#,###,##0.00", "-1.000,00"},
                                    {"-0,001", "#,###,##0.00", "0,00"},
                                    {"x", "#,###,##0.00", "x"}};
    for (const auto& [text, format, expected] : cases) EXPECT_EQ(left(text, format), expected) << text;
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
    const auto search = [&](const char* sql, const char* column, devhost::SearchChoice choice) {
        user->choices = {std::move(choice)};
        return helper.Buscar(
            {.sSQL = sql, .sCampo = column, .sTitulo1 = {}, .sTitulo2 = {}, .sTituloVentana = {}});
    };
    const char* const brands = "Select Marca_ID,Marca_Des,Marca_CodAbrev FROM Marcas";
    EXPECT_EQ(errorOf([&] { search(brands, "Marca_Des", "a"); }), 91);
    std::size_t recorded = 0;
    const auto recorder = std::make_shared<devhost::Recorder>([&](std::string_view) { ++recorded; });
    helper.Conexion(makeObject<devhost::RecordingConnection>(host.connection, recorder, nullptr, true));
    EXPECT_EQ(search(brands, "Marca_Des", std::int32_t{2}), "3\x01Vendaval\x01VDV");
    EXPECT_EQ(search(brands, "Marca_Des", "vEND"), "3\x01Vendaval\x01VDV");
    EXPECT_EQ(search(brands, "Marca_Des", "zz"), "");
    EXPECT_EQ(search(brands, "Marca_Des", std::int32_t{4}), "");
    EXPECT_EQ(search("Select Pro_ID,Pro_NOM,Pro_comer FROM Pro", "PRO_COMER", "EL T"),
              "3\x01\x01"
              "El Tractorista");
    EXPECT_EQ(recorded, 0u) << "the host's own query is no call of the plug-in";
    EXPECT_EQ(errorOf([&] { helper.Redondear(1, -1); }), 5);
}

}  // namespace

}  // namespace pxtarvo::tests
