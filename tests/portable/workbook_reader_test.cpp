#include "platform/portable/workbook/workbook_reader.h"

#include <gtest/gtest.h>

#include "platform/portable/workbook/number_format.h"
#include "tests/common/temporary_folder.h"

namespace pxtarvo::portable {
namespace {

ObjectRef<Workbook> opened(const std::string& path) {
    return WorkbookReader(DrivePaths(PXTARVO_SAMPLES_DIR)).OpenWorkbook(path);
}

TEST(WorkbookReader, GivesTheValuesOfAutomation) {
    const auto types = opened("C:\\barcodes-cell-types.xls")->Sheet(1);
    const auto list = opened("c:\\código de barras2008.XLS")->Sheet(1);
    const auto excel97 = opened("C:\\barcodes-javascript-excel97.xls")->Sheet(1);
    const auto excel5 = opened("C:\\barcodes-javascript-excel5.xls")->Sheet(1);
    using Row = std::initializer_list<std::pair<int, Variant>>;
    const auto expect = [](const ObjectRef<Worksheet>& sheet, int row, Row cells) {
        for (const auto& [column, value] : cells)
            EXPECT_EQ(sheet->Cells(row, column), value) << row << "," << column;
    };
    expect(types, 1, {{1, "KIT-1"}, {3, Date{39585}}});
    expect(types, 2, {{3, true}});
    expect(types, 3, {{3, 12.5}});
    expect(types, 4, {{1, 123456789012345.0}});
    expect(types, 5, {{3, "0008410000000024"}});
    expect(types, 7, {{3, -5.0}});
    expect(types, 8, {{3, Empty()}});
    expect(types, 65536, {{256, Empty()}});
    expect(list, 1, {{3, 8410110920384.0}});
    expect(list, 3, {{1, 50002.0}});
    expect(list, 4, {{1, " AMA-1003 "}});
    expect(list, 11, {{2, "  PIÑÓN 10 "}});
    // A number in a format with the text "días".
    expect(excel97, 1, {{2, "PIÑÓN 20 €"}, {5, ErrorValue{static_cast<std::int32_t>(0x800A07D7U)}}});
    expect(excel97, 2, {{3, Date{39555.4375}}, {5, 12.5}});
    expect(excel97, 3, {{3, Date{0.25}}});
    expect(excel97, 5, {{3, true}, {4, Date{39555}}});
    expect(excel5, 1, {{2, "PIÑÓN 20 €"}});
    expect(excel5, 2, {{3, Date{39555.4375}}});
    expect(excel5, 4, {{3, -12.34}});
    EXPECT_EQ(types->Cells(6, 2).get<std::string>()->size(), 9022U);
    EXPECT_EQ(tests::errorOf([&] { types->Cells(0, 1); }), spreadsheetRefused);
    EXPECT_EQ(tests::errorOf([&] { types->Cells(1, 257); }), spreadsheetRefused);
}

TEST(WorkbookReader, TellsFormatsOfDatesFromTheLettersThatTheyOnlyQuote) {
    for (const char* date : {"dd/mm/yyyy", "[h]:mm", "[Red]yy", "0\\d d"})
        EXPECT_TRUE(isDateFormat(date)) << date;
    for (const char* other :
         {"0.00", "[Red]0", "[$-40A]0", "0 \"días\"", "0\\d", "0_d", "*d0", "\"d", "[h"}) {
        EXPECT_FALSE(isDateFormat(other)) << other;
    }
}

TEST(WorkbookReader, ReadsSheetsSideBySide) {
    const auto workbook = opened("C:\\CÓDIGO DE BARRAS2008.xls");
    ASSERT_EQ(workbook->SheetCount(), 2);
    const auto first = workbook->Sheet(1);
    const auto second = workbook->Sheet(2);
    EXPECT_EQ(first->Cells(1, 1), Variant("AMA10000"));
    EXPECT_EQ(second->Cells(1, 1), Variant("otra hoja"));
    EXPECT_EQ(first->Cells(2, 1), Variant("AMA10001"));
    for (const int unknown : {0, 3}) EXPECT_EQ(tests::errorOf([&] { workbook->Sheet(unknown); }), 9);
}

std::string patched(std::string bytes, std::string_view where, std::size_t offset, std::string_view with) {
    const std::size_t at = bytes.find(where);
    EXPECT_NE(at, std::string::npos);
    return bytes.replace(at + offset, with.size(), with);
}

TEST(WorkbookReader, ReadsFormulaResultsAndEarlyDates) {
    using namespace std::string_view_literals;
    const tests::TemporaryFolder folder;
    const std::string bytes = tests::bytesOf(tests::sample("barcodes-cell-types.xls"));
    // Row 2, column 3: a formula record, whose result of eight bytes begins at byte 10 of the record with its
    // header.
    constexpr auto formula = "\x06\0\x18\0\x01\0\x02\0"sv;
    // Row 1, column 3: a number of 30 bits in date format, two more bits telling that it is whole.
    constexpr auto date = "\x7E\x02\x0A\0\0\0\x02\0\x15\0"sv;
    const struct {
        std::string content;
        int row;
        Variant value;
    } cases[] = {
        {patched(bytes, formula, 10, "\x02\0\x2A\0\0\0\xFF\xFF"sv), 2,
         ErrorValue{static_cast<std::int32_t>(0x800A07FAU)}},
        {patched(bytes, formula, 10, "\0\0\0\0\0\0\x29\x40"sv), 2, 12.5},
        {patched(bytes, formula, 10, "\x01\0\0\0\0\0\xFF\xFF"sv), 2, false},
        {patched(bytes, formula, 10, "\x03\0\0\0\0\0\xFF\xFF"sv), 2, ""},
        {patched(bytes, date, 10, "\xF6\0\0\0"sv), 1, Date{61}},
        {patched(bytes, date, 10, "\xF2\0\0\0"sv), 1, Date{60}},
        {patched(bytes, date, 10, "\xEE\0\0\0"sv), 1, Date{59}},
        {patched(bytes, date, 10, "\xF3\0\0\0"sv), 1, Date{0.6}},
        {patched(bytes, date, 10, "\xFE\xFF\xFF\xFF"sv), 1, -1.0},
        {patched(patched(bytes, date, 10, "\xEE\0\0\0"sv), "\x22\0\x02\0"sv, 4, "\x01"), 1, Date{1521}},
        // The date's style on the formula.
        {patched(patched(bytes, formula, 10, "\0\0\0\0\0\0\x29\x40"sv), formula, 8, "\x15\0"sv), 2,
         Date{12.5}},
    };
    for (const auto& [content, row, value] : cases) {
        EXPECT_EQ(opened(folder.write("list.xls", content))->Sheet(1)->Cells(row, 3), value);
    }
}

std::string word(std::size_t value) {
    return {static_cast<char>(value & 0xFF), static_cast<char>(value >> 8)};
}

std::string record(std::size_t kind, const std::string& data) {
    return word(kind) + word(data.size()) + data;
}

/// A workbook of one sheet with these records before the sheet and in it.
std::string workbookOf(const std::string& globals, const std::string& cells) {
    const auto begin = [](std::size_t what) { return record(0x809, word(0x600) + word(what)); };
    const std::size_t start = begin(5).size() + 4 + 8 + globals.size() + 4;
    const std::string stream = begin(5) + record(0x85, word(start) + word(0) + word(0) + word(1)) + globals +
                               record(0x0A, "") + begin(0x10) + cells + record(0x0A, "");
    std::string bytes = tests::bytesOf(tests::sample("barcodes-javascript-excel97.xls"));
    return bytes.replace(bytes.find("\x09\x08\x10"), stream.size(), stream);
}

TEST(WorkbookReader, ReadsContinuedTextsAndSkipsTheirMarks) {
    using namespace std::string_literals;
    const tests::TemporaryFolder folder;
    const auto cell = [](std::size_t kind, std::size_t row, std::size_t column, const std::string& data) {
        return record(kind, word(row) + word(column) + word(0) + data);
    };
    const std::string marked = word(3) + "\x0D"s + word(1) + word(2) + word(0) + "\x41\0\xAC\x20"s;
    const std::string texts = record(0xFC, word(9) + word(0) + word(2) + word(0) + marked) +
                              record(0x3C, "\0B"s + "runs") + record(0x3C, "12" + word(2) + "\0hi"s);
    const std::string chart =
        record(0x809, word(0x600) + word(0x20)) + cell(0x204, 0, 0, word(5) + "\0chart"s) + record(0x0A, "");
    const std::string result = std::string(6, '\0') + "\xFF\xFF"s;
    const auto sheet =
        opened(
            folder.write(
                "list.xls",
                workbookOf(texts, cell(0xFD, 0, 0, word(0) + word(0)) + cell(0xFD, 1, 0, word(1) + word(0)) +
                                      chart + cell(0x06, 2, 0, result) + record(0x4BC, "shared") +
                                      record(0x207, word(4) + "\1a\0b\0"s) + record(0x3C, "\0cd"s) +
                                      cell(0x06, 3, 0, result) + cell(0xD6, 4, 0, word(4) + "\0rich"s) +
                                      record(0xBD, word(1) + word(1) + word(0) + "\x0B\0\0\0"s + word(0) +
                                                       "\0\0\xF8\x3F"s + word(2)) +
                                      cell(0x207, 5, 0, ""))))
            ->Sheet(1);
    const struct {
        int row;
        int column;
        Variant value;
    } cases[] = {{1, 1, "A€B"},  {2, 1, "hi"}, {3, 1, "abcd"}, {4, 1, ""},
                 {5, 1, "rich"}, {2, 2, 0.02}, {2, 3, 1.5},    {2, 4, Empty()}};
    for (const auto& [row, column, value] : cases) {
        EXPECT_EQ(sheet->Cells(row, column), value) << row << "," << column;
    }
    for (const std::string& cells :
         {cell(0xFD, 0, 0, word(2) + word(0)), cell(0x203, 0, 0, "short"), cell(0x203, 0, 256, result),
          cell(0x204, 0, 0, word(9) + "\0short"s), word(0x203) + word(0xFFFF)}) {
        const auto damaged = opened(folder.write("damaged.xls", workbookOf(texts, cells)));
        EXPECT_EQ(tests::errorOf([&] { damaged->Sheet(1); }), spreadsheetRefused) << cells;
    }
}

TEST(WorkbookReader, TakesNoChartOrDialogForAWorksheet) {
    using namespace std::string_view_literals;
    const tests::TemporaryFolder folder;
    const std::string bytes = tests::bytesOf(tests::sample("CÓDIGO DE BARRAS2008.xls"));
    constexpr auto worksheet = "\x09\x08\x10\0\0\x06\x10\0"sv;
    const auto chart = opened(folder.write("chart.xls", patched(bytes, worksheet, 6, "\x20")));
    EXPECT_EQ(chart->SheetCount(), 2);
    EXPECT_EQ(tests::errorOf([&] { chart->Sheet(1); }), 13);
    EXPECT_EQ(chart->Sheet(2)->Cells(1, 1), Variant("otra hoja"));
    const auto dialog = opened(folder.write("dialog.xls", workbookOf("", record(0x81, word(0x10)))));
    EXPECT_EQ(tests::errorOf([&] { dialog->Sheet(1); }), 13);
}

TEST(WorkbookReader, NamesWhatItRefuses) {
    using namespace std::string_literals;
    const tests::TemporaryFolder folder;
    const std::string excel5 = tests::bytesOf(tests::sample("barcodes-javascript-excel5.xls"));
    const struct {
        std::string content;
        std::string_view named;
    } cases[] = {
        {"", "vacío"},
        {"PK\3\4\x14\0\6\0"s, ".xlsx"},
        {"PK\3\4mimetypeapplication/vnd.oasis.opendocument.spreadsheet", ".ods"},
        {"\xEF\xBB\xBF\r\n<HTML>", "HTML"},
        {"<?xml version=\"1.0\"?><Workbook><html:b/>", "XML"},
        {"AMA-1;Piñón;8410\r\n", "texto"},
        {"\xFF\xFE"
         "A\0"s,
         "texto"},
        {"\x09\4\6\0\0\4\x10\0"s, "4.0"},
        {"\x7F"
         "ELF\0"s,
         "no es válido"},
        {workbookOf(record(0x2F, "key"), ""), "contraseña"},
        {patched(excel5, "\x42\0\x02\0\xE4\x04"s, 4, "\x52\3"), "850"},
    };
    for (const auto& [content, named] : cases) {
        try {
            opened(folder.write("list.xls", content));
            ADD_FAILURE() << named;
        } catch (const RuntimeError& error) {
            EXPECT_EQ(error.number(), spreadsheetRefused);
            EXPECT_NE(error.description().find(named), std::string::npos) << error.description();
        }
    }
}

TEST(WorkbookReader, RefusesWhatIsNoWorkbook) {
    const tests::TemporaryFolder folder;
    const std::string workbook = tests::bytesOf(tests::sample("barcodes-blank-row-21.xls"));
    for (const std::string& path :
         {std::string("C:\\no está.xls"), std::string("D:\\CÓDIGO DE BARRAS2008.xls"), std::string(),
          folder.file(""), tests::sample("TARIFA2012.MDB"), folder.write("empty.xls", ""),
          folder.write("header.xls", workbook.substr(0, 512)),
          folder.write("begin.xls", workbook.substr(0, 60)),
          folder.write("cut.xls", workbook.substr(0, 5000))}) {
        EXPECT_EQ(tests::errorOf([&] { opened(path); }), spreadsheetRefused) << path;
    }
}

}  // namespace
}  // namespace pxtarvo::portable
