// The sample host, a plain program over the stand-ins for ADO: the same import as the development host's
// leaves the same rows.

#include <gmock/gmock.h>

#include <algorithm>
#include <set>

#include "platform/portable/clocks.h"
#include "platform/portable/sqlite/sqlite_connection.h"
#include "tests/common/database_state.h"
#include "tests/wine/plain_program.h"
#include "tests/wine/two_worlds.h"

namespace pxtarvo::test {

namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

std::vector<std::string> rowsOf(const std::string& database) {
    const portable::SystemClock clock;
    const auto connection = portable::SqliteConnection::open(database, clock);
    std::vector<std::string> rows;
    for (
        const char* statement :
        {"SELECT Art_Id,Art_Cod,ART_DES,ART_PVE,ART_PCO,Art_Estado,Art_Marca,Art_Cal FROM Art ORDER BY Art_Id",
         "SELECT Aat_Id,Aat_C01 FROM Aat ORDER BY Aat_Id",
         "SELECT ARP_Id,ARP_Ida,ARP_Idp,ARP_Cop,ARP_des,Arp_Precio FROM ArtPro ORDER BY ARP_Id"}) {
        for (std::string& row : tests::rowsOf(*connection, statement)) rows.push_back(std::move(row));
    }
    return rows;
}

const SeenWindow* find(const std::vector<SeenWindow>& seen, std::string_view type, std::string_view text) {
    const auto found = std::ranges::find_if(seen, [&](const SeenWindow& window) {
        return (type.empty() || window.type == type) && window.text.find(text) != std::string::npos;
    });
    return found == seen.end() ? nullptr : &*found;
}

class SampleHost : public TwoWorlds {
  protected:
    SampleHost() { plugIn(); }

    std::string connectionString(const std::string& database) {
        return "Provider=PXTarvo.Dealer;Data Source=" + database;
    }
    const StandInClasses classes_{PXTARVO_ADO_PATH};
};

TEST_F(SampleHost, ImportsWhatTheDevelopmentHostImports) {
    const std::string list = "C:\\TARVO\\list-decimal-price.mdb";
    const std::string database = newDealer();
    enum { Opening, Searching, Found, Running } step = Opening;
    std::set<std::string> messages;
    const auto user = [&](const std::vector<SeenWindow>& seen) {
        if (const SeenWindow* box = find(seen, "#32770", "")) {
            for (const SeenWindow& inside : seen) {
                const bool told = inside.type == "Static" && !inside.text.empty();
                if (told && IsChild(box->handle, inside.handle)) messages.insert(inside.text);
            }
            PostMessageW(box->handle, WM_COMMAND, IDOK, 0);
        } else if (const SeenWindow* brand = find(seen, "", "SAME"); step == Opening && brand) {
            PostMessageW(brand->handle, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(2, 2));
            PostMessageW(brand->handle, WM_LBUTTONUP, 0, MAKELPARAM(2, 2));
            PostMessageW(brand->handle, WM_KEYDOWN, VK_F1, 0x003B0001);
            PostMessageW(brand->handle, WM_KEYUP, VK_F1, static_cast<LPARAM>(0xC03B0001));
            step = Searching;
        } else if (const SeenWindow* rows = find(seen, "ListBox", "Buscar Marcas por nombre");
                   step == Searching && rows) {
            PostMessageW(rows->handle, WM_KEYDOWN, VK_RETURN, 0x001C0001);
            step = Found;
        } else if (const SeenWindow* file = find(seen, "", "TARIFA2012.MDB");
                   step == Found && file && !rows) {
            const windows::Bstr text(list);
            SendMessageW(file->handle, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.get()));
            PostMessageW(find(seen, "", "Iniciar proceso")->handle, BM_CLICK, 0, 0);
            step = Running;
        }
    };
    const ProgramEnd end = runProgram(PXTARVO_SAMPLE_HOST, {connectionString(database)}, user);
    EXPECT_EQ(end.status, 0u) << end.output;
    EXPECT_EQ(step, Running);
    EXPECT_THAT(messages, ElementsAre("Proceso finalizado con exito", "stabla List"));

    const std::string twin = folder_.file("dealer" + std::to_string(dealers_ + 1) + ".db");
    withoutScreen({.name = "twin",
                   .script = {click("Text1", 3), key(vkF1), choose(0), type(0, list), click("XPButton1")},
                   .expected = "Proceso finalizado con exito"});
    EXPECT_EQ(rowsOf(database), rowsOf(twin));
    EXPECT_THAT(rowsOf(database), Contains(HasSubstr("|D39|PIEZA 39|12,273")));
}

}  // namespace

}  // namespace pxtarvo::test
