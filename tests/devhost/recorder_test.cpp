#include "devhost/record/recorder.h"

#include <gmock/gmock.h>

#include "tests/common/temporary_folder.h"

namespace pxtarvo::tests {

namespace {

using devhost::Recorder;
using devhost::WrittenColumn;
using ::testing::ElementsAre;

TEST(Recorder, WritesTheFixedFormat) {
    std::vector<std::string> lines;
    Recorder recorder([&](std::string_view line) { lines.emplace_back(line); });
    const RuntimeError error(-2147217900, "Sintaxis \"ñ\"");

    recorder.sourceOpen("Data Source=C:\\TARVO\\X.MDB");
    recorder.sourceQuery("SELECT * FROM List", &error);
    recorder.transaction(devhost::TransactionCall::Rollback, &error);
    recorder.execute("SELECT 'á\x01'");
    const WrittenColumn columns[] = {
        {"a", 2, 12.0},   {"b", 2, 0.1},
        {"c", 2, 1e300},  {"d", 1, std::int16_t{-3}},
        {"e", 3, Null{}}, {"f", 3, ""},
        {"g", 0, true},   {"h", 2, Currency{125000}},
        {"i", 2, 0.1f},   {"j", 4, Date{39665.0}},
    };
    recorder.write({devhost::WriteKind::Insert, "Art", "", columns}, true);
    recorder.write({devhost::WriteKind::Update, "Art", " WHERE Art_Id = 7", {}}, false);
    recorder.write({devhost::WriteKind::Delete, "Exis", " WHERE Exis_IdArt = 7", {}}, true);
    Message notice;
    notice.text = "Error '13':\r\n\r\nx";
    notice.icon = MessageIcon::Critical;
    recorder.message(notice, MessageAnswer::Ok);
    const Message question{"¿?", "Título", MessageButtons::YesNo, MessageIcon::Warning, true};
    recorder.message(question, MessageAnswer::Yes);
    const Busqueda busqueda{
        .sSQL = "Select …", .sCampo = "Pro_Nom", .sTitulo1 = {}, .sTitulo2 = {}, .sTituloVentana = "T"};
    recorder.search(busqueda,
                    "4\x01"
                    "24\x01X");
    recorder.search(busqueda, "", &error);
    recorder.unload("frmImpTarifas");

    EXPECT_THAT(
        lines,
        ElementsAre(
            R"({"call":"source.open","connection":"Data Source=C:\\TARVO\\X.MDB"})",
            R"({"call":"source.query","sql":"SELECT * FROM List","error":{"number":-2147217900,"description":"Sintaxis \"ñ\""}})",
            R"({"call":"rollback","error":{"number":-2147217900,"description":"Sintaxis \"ñ\""}})",
            R"({"call":"execute","sql":"SELECT 'á\u0001'"})",
            R"({"call":"insert","table":"Art","columns":[["a",2,12],["b",2,0.1],["c",2,1e+300],["d",1,-3],["e",3,null],)"
            R"(["f",3,""],["g",0,true],["h",2,12.5],["i",2,0.1],["j",4,"05/08/2008"]],"ok":true})",
            R"({"call":"update","table":"Art","where":" WHERE Art_Id = 7","columns":[]})",
            R"({"call":"delete","table":"Exis","where":" WHERE Exis_IdArt = 7","ok":true})",
            R"({"call":"message","text":"Error '13':\r\n\r\nx","title":"PXTarvo","buttons":"ok","icon":"critical"})",
            R"({"call":"message","text":"¿?","title":"Título","buttons":"yesno","icon":"warning","default":"no","answer":"yes"})",
            R"({"call":"search","sql":"Select …","column":"Pro_Nom","title":"T","answer":"4\u000124\u0001X"})",
            R"({"call":"search","sql":"Select …","column":"Pro_Nom","title":"T","error":{"number":-2147217900,"description":"Sintaxis \"ñ\""}})",
            R"({"call":"unload","window":"frmImpTarifas"})"));
}

TEST(Recorder, FileIsCompleteAfterEveryLine) {
    const TemporaryFolder folder;
    const std::string path = folder.write("récord.jsonl", "old");
    const auto recorder = Recorder::toFile(path);
    recorder->unload("a");
    EXPECT_EQ(bytesOf(path), "{\"call\":\"unload\",\"window\":\"a\"}\n");
    EXPECT_EQ(errorOf([&] { Recorder::toFile(folder.file("no/such/folder")); }), 75);
}

}  // namespace

}  // namespace pxtarvo::tests
