#include "platform/portable/workbook/freexl_spreadsheet.h"

#include <gtest/gtest.h>

#include "tests/common/temporary_folder.h"

namespace pxtarvo::portable {
namespace {

ObjectRef<Workbook> opened(const std::string& path) {
    return FreexlApplication(DrivePaths(PXTARVO_SAMPLES_DIR)).OpenWorkbook(path);
}

TEST(FreexlSpreadsheet, GivesTheValuesOfAutomation) {
    const auto types = opened("C:\\barcodes-cell-types.xls")->Sheet(1);
    const auto list = opened("c:\\código de barras2008.XLS")->Sheet(1);
    const struct {
        ObjectRef<Worksheet> sheet;
        int row;
        int column;
        Variant value;
    } cases[] = {
        {types, 1, 1, "KIT-1"},
        {types, 1, 3, Date{39585}},
        {types, 2, 3, true},
        {types, 3, 3, 12.5},
        {types, 4, 1, 123456789012345.0},
        {types, 5, 3, "0008410000000024"},
        {types, 7, 3, -5.0},
        {types, 8, 3, Empty()},
        {types, 10, 1, Empty()},
        {types, 65536, 256, Empty()},
        {list, 3, 1, 50002.0},
        {list, 1, 3, 8410110920384.0},
        {list, 4, 1, " AMA-1003 "},
        {list, 11, 2, "  PIÑÓN 10 "},
        {list, 5, 3, Empty()},
    };
    for (const auto& [sheet, row, column, value] : cases) {
        EXPECT_EQ(sheet->Cells(row, column), value) << row << "," << column;
    }
    EXPECT_EQ(types->Cells(6, 2).get<std::string>()->size(), 9022U);
    EXPECT_EQ(tests::errorOf([&] { types->Cells(0, 1); }), spreadsheetRefused);
    EXPECT_EQ(tests::errorOf([&] { types->Cells(1, 257); }), spreadsheetRefused);
}

TEST(FreexlSpreadsheet, ReadsSheetsSideBySide) {
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

TEST(FreexlSpreadsheet, ReadsFormulaResultsAndEarlyDates) {
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
    };
    for (const auto& [content, row, value] : cases) {
        EXPECT_EQ(opened(folder.write("list.xls", content))->Sheet(1)->Cells(row, 3), value);
    }
}

TEST(FreexlSpreadsheet, RefusesWhatIsNoWorkbook) {
    const tests::TemporaryFolder folder;
    const std::string workbook = tests::bytesOf(tests::sample("barcodes-blank-row-21.xls"));
    for (const std::string& path :
         {std::string("C:\\no está.xls"), std::string("D:\\CÓDIGO DE BARRAS2008.xls"), std::string(),
          folder.file(""), tests::sample("TARIFA2012.MDB"), folder.write("empty.xls", ""),
          folder.write("header.xls", workbook.substr(0, 512)),
          folder.write("cut.xls", workbook.substr(0, 5000))}) {
        EXPECT_EQ(tests::errorOf([&] { opened(path); }), spreadsheetRefused) << path;
    }
}

}  // namespace
}  // namespace pxtarvo::portable
