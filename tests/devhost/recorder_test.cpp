#include "devhost/record/recorder.h"

#include <gmock/gmock.h>

#include "tests/common/temporary_folder.h"

namespace pxtarvo::tests {

namespace {

using devhost::Recorder;
using devhost::WrittenColumn;
using ::testing::ElementsAre;

/// What no kept record has.
TEST(Recorder, WritesTheFixedFormat) {
    std::vector<std::string> lines;
    Recorder recorder([&](std::string_view line) { lines.emplace_back(line); });
    const RuntimeError error(-2147217900, "Sintaxis \"ñ\"");
    const std::string failed = R"("error":{"number":-2147217900,"description":"Sintaxis \"ñ\""}})";
    const WrittenColumn columns[] = {{"a", 2, 12.0},   {"b", 2, 1e300},        {"c", 1, std::int16_t{-3}},
                                     {"d", 3, Null{}}, {"e", 0, true},         {"f", 2, Currency{125000}},
                                     {"g", 2, 0.1f},   {"h", 4, Date{39665.0}}};
    const Busqueda search{.sSQL = "…", .sCampo = "C", .sTitulo1 = {}, .sTitulo2 = {}, .sTituloVentana = "T"};
    recorder.sourceQuery("SELECT * FROM List", &error);
    recorder.transaction(devhost::TransactionCall::Rollback, &error);
    recorder.execute("SELECT 'á\x01'");
    recorder.write({devhost::WriteKind::Insert, "Art", "", columns}, true);
    recorder.search(search, "", &error);
    EXPECT_THAT(
        lines,
        ElementsAre(
            R"({"call":"source.query","sql":"SELECT * FROM List",)" + failed,
            R"({"call":"rollback",)" + failed, R"({"call":"execute","sql":"SELECT 'á\u0001'"})",
            R"({"call":"insert","table":"Art","columns":[["a",2,12],["b",2,1e+300],["c",1,-3],["d",3,null],)"
            R"(["e",0,true],["f",2,12.5],["g",2,0.1],["h",4,"05/08/2008"]],"ok":true})",
            R"({"call":"search","sql":"…","column":"C","title":"T",)" + failed));
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
