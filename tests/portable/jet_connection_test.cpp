#include "platform/portable/access/jet_connection.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <span>
#include <vector>

#include "platform/portable/access/rc4.h"
#include "tests/common/temporary_folder.h"

namespace pxtarvo::portable {
namespace {

constexpr std::int32_t failure = -2147467259;

std::string connectionString(const std::string& path) {
    return "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + path + ";Persist Security Info=False";
}

ObjectRef<Connection> connected(const std::string& path) {
    auto connection = makeObject<JetConnection>(DrivePaths(PXTARVO_SAMPLES_DIR));
    connection->ConnectionString(connectionString(path));
    connection->Open("", "", adOptionUnspecified);
    return connection;
}

ObjectRef<Recordset> query(const std::string& path, std::string_view statement = "SELECT * FROM List") {
    return connected(path)->Execute(statement, adCmdText);
}

TEST(JetConnection, ReadsEveryKindOfColumnInTheSampleLists) {
    enum { Linea, Codigo, Sustituye, Precio, Fecha, Grupo, Peso, Unidades, Origen, Descripcion };
    using Cells = std::initializer_list<std::pair<int, Variant>>;
    const auto expect = [](const char* file, int row, Cells cells) {  // row from 1
        const auto rows = query(tests::sample(file));
        for (int passed = 1; passed < row; ++passed) rows->MoveNext();
        for (const auto& [column, value] : cells)
            EXPECT_EQ(rows->Fields(column), value) << file << " " << column;
    };
    constexpr std::int16_t units = 3;
    expect("TARIFA2008.MDB", 1, {{Linea, 1}, {Codigo, "0.017.2859.0/0"}, {Sustituye, Null()}, {Precio, 6.9}});
    expect("TARIFA2008.MDB", 1, {{Fecha, Date{39587}}, {Peso, 5.905F}, {Unidades, units}});
    expect("TARIFA2008.MDB", 2, {{Descripcion, " SENSOR PRESIÓN 1"}});
    expect("TARIFA2007.MDB", 1, {{Codigo, "  1000015 "}});
    expect("TARIFA2007.MDB", 2, {{Descripcion, " EJE TRANSMISIÓN 1"}});
    expect("TARIFA2009.MDB", 1, {{Precio, Currency{105600}}});
    expect("list-decimal-price.mdb", 2, {{Precio, Decimal{.low = 12007, .scale = 3}}});
    expect("list-whole-price.mdb", 2, {{Precio, std::int32_t{3}}});
    expect("list-numeric-code.mdb", 2, {{Codigo, 20000001.0}});
    expect("list-numeric-group.mdb", 1, {{Grupo, std::int32_t{89}}});
    expect("list-text-price.mdb", 2, {{Precio, "1.234,56"}});
    expect("list-text-date.mdb", 15, {{Fecha, "pronto"}});
    expect("list-null-date-row-9.mdb", 9, {{Fecha, Null()}});
    expect("list-nulls-and-empty-texts.mdb", 26, {{Codigo, Null()}});
    expect("list-nulls-and-empty-texts.mdb", 27, {{Codigo, ""}});
}

TEST(JetConnection, CountsAndNamesWithoutRegardToCase) {
    const auto counted = [](const char* path, const char* statement) {
        return query(path, statement)->Fields(0);
    };
    EXPECT_EQ(counted("C:\\tarifa2012.mdb", "SELECT count(*) FROM List"), Variant(2000));
    EXPECT_EQ(counted("C:\\TARIFA2012.MDB", "select  COUNT ( * )\r\nfrom [list] ;"), Variant(2000));
    EXPECT_EQ(counted("C:\\TARIFA2006.MDB", "SELECT count(*) FROM 31EUR000"), Variant(500));
    EXPECT_EQ(counted("C:\\list-empty-table.mdb", "SELECT count(*) FROM List"), Variant(0));
    EXPECT_TRUE(query("C:\\list-empty-table.mdb")->Eof());
    int passed = 0;
    for (auto rows = query("C:\\TARIFA2012.MDB"); !rows->Eof(); rows->MoveNext()) {
        EXPECT_EQ(rows->Fields("LINEA"), Variant(std::int32_t{++passed}));
    }
    EXPECT_EQ(passed, 2000);
}

TEST(JetConnection, TellsWhatIsWrongWithAFileAndNothingElseDoes) {
    const tests::TemporaryFolder folder;
    const std::string good = tests::bytesOf(tests::sample("TARIFA2012.MDB"));
    std::filesystem::create_directory(folder.file("carpeta.mdb"));
    std::string access97 = good.substr(0, 4096);
    access97[20] = 0;
    folder.write("97.mdb", access97);
    folder.write("vacío.mdb", "");
    folder.write("cabecera.mdb", good.substr(0, 5000));
    folder.write("tabla.mdb", good.substr(0, 77824));

    const struct {
        std::string path;
        std::int32_t number;
        std::string description;
    } cases[] = {
        {"", failure, "No se pudo encontrar el archivo ''."},
        {"C:\\no está.mdb", failure, "No se pudo encontrar el archivo 'C:\\no está.mdb'."},
        {"D:\\TARIFA2012.MDB", failure, "No se pudo encontrar el archivo 'D:\\TARIFA2012.MDB'."},
        {folder.file("carpeta.mdb"), failure, "no puede abrir el archivo '"},
        {folder.file("vacío.mdb"), failure, "vacío.mdb' no reconocido."},
        {tests::sample("CÓDIGO DE BARRAS2008.xls"), failure, "2008.xls' no reconocido."},
        {folder.file("97.mdb"), failure, "Access 97"},
        {folder.file("cabecera.mdb"), failure, "dañado"},
        {folder.file("tabla.mdb"), failure, "dañado"},
        {"C:\\no-list-table.mdb", -2147217865, "tabla o consulta de entrada 'List'."},
    };
    testing::internal::CaptureStderr();
    for (const auto& [path, number, description] : cases) {
        try {
            query(path);
            ADD_FAILURE() << path << " opened";
        } catch (const RuntimeError& error) {
            EXPECT_EQ(error.number(), number) << path;
            EXPECT_NE(error.description().find(description), std::string::npos) << error.description();
        }
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(JetConnection, AFileCutOffRaisesWhereItsRowsEnd) {
    const auto rows = query("C:\\list-truncated.mdb");
    for (int pass = 0; pass < 2; ++pass) {
        int passed = 0;
        EXPECT_EQ(tests::errorOf([&] {
                      for (rows->MoveFirst(); !rows->Eof(); rows->MoveNext()) ++passed;
                  }),
                  failure);
        EXPECT_EQ(passed, 735);  // those on whole pages
    }
}

std::size_t number(std::string_view bytes, std::size_t offset, std::size_t width) {
    std::size_t result = 0;
    while (width-- > 0) result = result << 8 | static_cast<unsigned char>(bytes[offset + width]);
    return result;
}

void put(std::string& bytes, std::size_t offset, std::size_t value, std::size_t width) {
    for (std::size_t i = 0; i < width; ++i) bytes[offset + i] = static_cast<char>(value >> 8 * i & 0xFF);
}

TEST(JetConnection, SkipsDeletedRowsAndFollowsMovedOnes) {
    // The page whose rows are the ten of the list; an entry of two bytes for each row stands from byte 14 on.
    std::string bytes = tests::bytesOf(tests::sample("list-six-columns.mdb"));
    std::size_t page = 4096;
    while (bytes[page] != 1 || number(bytes, page + 12, 2) != 10) page += 4096;
    const auto entry = [page](std::size_t row) { return page + 14 + 2 * row; };
    const std::size_t definition = number(bytes, page + 4, 4) * 4096;

    const std::size_t third = number(bytes, entry(2), 2);
    put(bytes, entry(2), third | 0x4000, 2);
    put(bytes, page + third, page / 4096 << 8 | 9, 4);             // the third row is where the tenth was
    put(bytes, entry(9), number(bytes, entry(9), 2) | 0x8000, 2);  // and only its pointer leads there
    put(bytes, entry(4), number(bytes, entry(4), 2) | 0xC000, 2);  // the fifth is deleted
    put(bytes, definition + 16, 8, 4);

    const auto lines = [&](const std::string& content) {
        const tests::TemporaryFolder folder;
        std::vector<std::int32_t> result;
        for (auto rows = query(folder.write("list.mdb", content)); !rows->Eof(); rows->MoveNext()) {
            result.push_back(*rows->Fields(0).get<std::int32_t>());
        }
        return result;
    };
    EXPECT_EQ(lines(bytes), (std::vector<std::int32_t>{1, 2, 10, 4, 6, 7, 8, 9}));

    std::string circle = bytes;
    put(circle, page + third, page / 4096 << 8 | 2, 4);
    std::string outside = bytes;
    put(outside, entry(6), 0x1FFF, 2);
    std::string zeros = bytes;
    const std::size_t seventh = number(bytes, entry(6), 2);
    const std::size_t length = number(bytes, entry(5), 2) - seventh;
    zeros.replace(page + seventh, length, length, '\0');
    std::string fewer = bytes;
    put(fewer, definition + 16, 9, 4);
    for (const std::string& damaged : {circle, outside, zeros, fewer}) {
        EXPECT_EQ(tests::errorOf([&] { lines(damaged); }), failure);
    }
}

TEST(JetConnection, ReadsAnEncodedFile) {
    std::vector<unsigned char> bytes(9);
    std::ranges::copy(std::string_view("Plaintext"), bytes.begin());
    const auto applied = [&](std::string_view key, std::size_t offset, std::size_t size) {
        applyRc4({reinterpret_cast<const unsigned char*>(key.data()), key.size()},
                 std::span(bytes).subspan(offset, size));
    };
    applied("Key", 0, 9);
    EXPECT_EQ(std::string(bytes.begin(), bytes.end()), "\xBB\xF3\x16\xE8\xD9\x40\xAF\x0A\xD3");

    // The header's key lies where the header is encoded itself; that of each page is mixed with its number.
    const std::string plain = tests::bytesOf(tests::sample("TARIFA2012.MDB"));
    bytes.assign(plain.begin(), plain.end());
    std::string key = "\x12\x34\x56\x78";
    for (std::size_t i = 0; i < 4; ++i) bytes[0x3E + i] ^= static_cast<unsigned char>(key[i]);
    for (std::size_t page = 1; page < bytes.size() / 4096; ++page) {
        put(key, 0, 0x78563412 ^ page, 4);
        applied(key, page * 4096, 4096);
    }
    const tests::TemporaryFolder folder;
    const auto expected = query("C:\\TARIFA2012.MDB");
    const auto rows =
        query(folder.write("list.mdb", {reinterpret_cast<const char*>(bytes.data()), bytes.size()}));
    for (; !rows->Eof(); rows->MoveNext(), expected->MoveNext()) {
        EXPECT_EQ(rows->Fields("Codigo"), expected->Fields("Codigo"));
    }
    EXPECT_TRUE(expected->Eof());
}

TEST(JetConnection, PutsMemosTogetherWhereverTheyLie) {
    // A memo of the list that lies in its row: twelve bytes of header, then the text.
    const std::string bytes = tests::bytesOf(tests::sample("TARIFA2007.MDB"));
    std::string text;
    for (const char c : std::string_view(" EJE TRANSMISI")) text += {c, '\0'};
    const std::size_t memo = bytes.find(text) - 12;
    const std::size_t firstPage = bytes.size() / 4096;
    ASSERT_LT(memo, bytes.size());

    // Two further pages of one row each: the first one holds 2,000 characters and says where the second one
    // is.
    const auto page = [](const std::string& row) {
        std::string result(4096, '\0');
        result[0] = result[12] = 1;
        put(result, 14, 4096 - row.size(), 2);
        return result.replace(4096 - row.size(), row.size(), row);
    };
    const auto repeated = [](std::string_view piece, int times) {
        std::string result;
        while (times-- > 0) result += piece;
        return result;
    };
    std::string link(4, '\0');
    put(link, 0, (firstPage + 1) << 8, 4);
    const std::string pages = page(link + repeated("\xF1\xF1", 2000)) + page(std::string(4, '\0') + "a");
    put(link, 0, firstPage << 8, 4);
    const std::string circle = page(link + "a");
    const std::string onePiece = page(repeated(std::string_view("z\0", 2), 1500));
    const std::string switched(
        "\xFF\xFE"
        "ab\0\xAC\x20\0c\xF1",
        10);

    const struct {
        std::size_t lengthAndFlags;
        std::string inRow;  ///< in place of the text
        std::string pages;
        Variant text;  ///< Empty for damage
    } cases[] = {
        {0x80000000 | 10, switched, "", "ab€cñ"},
        {0x80000000 | 0, "", "", ""},
        {0x80000000 | 4000, "", "", Empty()},
        {4000, "", pages, repeated("\uF1F1", 2000)},
        {0x40000000 | 3000, "", onePiece, std::string(1500, 'z')},
        {0x40000000 | 2998, "", onePiece, std::string(1499, 'z')},
        {0x40000000 | 3002, "", onePiece, Empty()},
        {0x40000000 | 3000, "", onePiece.substr(0, 4095), Empty()},
        {4002, "", pages, Empty()},
        {1000, "", circle, Empty()},
        {4000, "", "", Empty()},
    };
    const tests::TemporaryFolder folder;
    for (const auto& [lengthAndFlags, inRow, more, text] : cases) {
        std::string content = bytes + more;
        put(content, memo, lengthAndFlags, 4);
        put(content, memo + 4, firstPage << 8, 4);
        content.replace(memo + 12, inRow.size(), inRow);
        const auto rows = query(folder.write("list.mdb", content));
        rows->MoveNext();
        Variant read;
        for (int reading = 0; reading < 2; ++reading) {
            EXPECT_EQ(tests::errorOf([&] { read = rows->Fields("Descripcion"); }),
                      text.isEmpty() ? failure : 0);
        }
        EXPECT_EQ(read, text) << std::hex << lengthAndFlags;
    }
}

TEST(JetConnection, ReadsConnectionStringsAsOleDbDoes) {
    const tests::TemporaryFolder folder;
    const std::string bytes = tests::bytesOf(tests::sample("list-six-columns.mdb"));
    const std::string provider = "Provider=Microsoft.Jet.OLEDB.4.0;";
    const std::string odd = folder.write("a 'ñ\" ;=.mdb", bytes);
    const std::string plain = folder.write("it's a=list.mdb", bytes);
    std::string doubled = odd;
    doubled.insert(doubled.find('"'), 1, '"');

    const struct {
        std::string text;
        std::int32_t number;
    } cases[] = {
        {connectionString(plain), 0},
        {" ; provider = MICROSOFT.jet.oledb.4.0 ;DATA SOURCE= \"" + doubled + "\" ;", 0},
        {provider + "Data Source=x;Data Source=" + plain + "  ", 0},
        {connectionString(odd), -2147217805},
        {provider + "Data Source=\"" + plain, -2147217805},
        {provider + "Data Source='x'y", -2147217805},
        {provider + "=x", -2147217805},
        {provider + "Extended Properties=Excel 8.0;Data Source=" + plain, failure},
        {"Data Source=" + plain, 3706},
        {"Provider=SQLOLEDB;Data Source=" + plain, 3706},
    };
    for (const auto& [text, number] : cases) {
        const auto connection = makeObject<JetConnection>(DrivePaths());
        EXPECT_EQ(tests::errorOf([&, &text = text] {
                      connection->ConnectionString(text);
                      connection->Open("", "", adOptionUnspecified);
                  }),
                  number)
            << text;
        EXPECT_EQ(connection->State(), number == 0 ? adStateOpen : adStateClosed) << text;
    }
}

TEST(JetConnection, RefusesOtherStatementsAndMisplacedCalls) {
    const auto connection = connected("C:\\TARIFA2012.MDB");
    for (const char* statement :
         {"", "DELETE FROM List", "SELECT * FROM", "SELECT * FROM List WHERE Linea = 1",
          "SELECT * FROM [List", "SELECT Codigo FROM List", "SELECT *, * FROM List",
          "SELECT * FROM List; SELECT * FROM List", "SELECT count(* FROM List", "SELECT*FROM[]",
          "UPDATE List SET Linea = 1"}) {
        EXPECT_EQ(tests::errorOf([&] { connection->Execute(statement, adCmdText); }), -2147217900)
            << statement;
    }
    EXPECT_EQ(tests::errorOf([&] { connection->Open("", "", -1); }), 3705);
    EXPECT_EQ(tests::errorOf([&] { connection->CommitTrans(); }), -2147168242);
    connection->BeginTrans();
    EXPECT_EQ(tests::errorOf([&] { connection->BeginTrans(); }), -2147168237);
    connection->RollbackTrans();
    EXPECT_EQ(tests::errorOf([&] { connection->RollbackTrans(); }), -2147168242);

    const auto closed = makeObject<JetConnection>(DrivePaths(PXTARVO_SAMPLES_DIR));
    EXPECT_EQ(tests::errorOf([&] { closed->Execute("SELECT * FROM List", adCmdText); }), 3704);
    closed->ConnectionString(connectionString("C:\\TARIFA2012.MDB"));
    EXPECT_EQ(tests::errorOf([&] { closed->Open("sa", "", -1); }), -2147217843);
    closed->Open("admin", "", -1);
    EXPECT_EQ(closed->State(), adStateOpen);
}

TEST(JetConnection, TwoListsOfOneConnectionDoNotDisturbEachOther) {
    const auto connection = connected("C:\\TARIFA2012.MDB");
    const auto ahead = connection->Execute("SELECT * FROM List", adCmdText);
    for (int i = 0; i < 1000; ++i) ahead->MoveNext();
    const auto behind = connection->Execute("SELECT * FROM List", adCmdText);
    EXPECT_EQ(ahead->Fields(0), Variant(std::int32_t{1001}));
    EXPECT_EQ(behind->Fields(0), Variant(std::int32_t{1}));
}

}  // namespace
}  // namespace pxtarvo::portable
