#include "platform/portable/workbook/workbook_contents.h"

#include <algorithm>
#include <bit>
#include <utility>

#include "platform/portable/workbook/number_format.h"
#include "platform/portable/workbook/refusals.h"
#include "platform/values/runtime_error.h"

namespace pxtarvo::portable {

namespace {

enum RecordKind : std::uint32_t {
    recordFormula = 0x0006,
    recordEnd = 0x000A,
    recordDateMode = 0x0022,
    recordFilePass = 0x002F,
    recordCodePage = 0x0042,
    recordSheetOptions = 0x0081,
    recordSheet = 0x0085,
    recordMulRk = 0x00BD,
    recordRichText = 0x00D6,
    recordStyle = 0x00E0,
    recordSharedTexts = 0x00FC,
    recordLabelShared = 0x00FD,
    recordNumber = 0x0203,
    recordLabel = 0x0204,
    recordBoolErr = 0x0205,
    recordString = 0x0207,
    recordRk = 0x027E,
    recordFormulaOfExcel4 = 0x0406,
    recordFormat = 0x041E,
    recordBegin = 0x0809,
};

enum Stream : std::uint32_t { streamGlobals = 0x0005, streamWorksheet = 0x0010, streamMacroSheet = 0x0040 };
constexpr std::uint32_t excel5 = 0x0500;
constexpr std::uint32_t excel97 = 0x0600;
constexpr std::uint32_t codeModule = 6;  // among the kinds of sheets; none since Excel 97
constexpr std::uint32_t windows1252 = 1252;
constexpr std::uint32_t ascii = 367;
constexpr std::uint32_t isDialog = 0x0010;  // among the options of a sheet
constexpr std::uint32_t columnLimit = 256;

// A formula's result is a double, unless its last two bytes are these; then its first byte tells the kind.
constexpr std::uint32_t notANumber = 0xFFFF;
enum FormulaResult : std::uint32_t { resultText = 0, resultLogical = 1, resultError = 2 };

ErrorValue errorValue(std::uint32_t code) {
    constexpr std::uint32_t base = 0x800A0000 + 2000;  // automation's number of #NULL!
    return {static_cast<std::int32_t>(base + code)};
}

/// A number in 30 bits: the upper part of a double or a whole number, perhaps of hundredths.
double rkNumber(std::uint32_t bits) {
    enum RkFlag : std::uint32_t { rkHundredths = 1, rkWhole = 2, rkFlags = 3 };
    const double number = (bits & rkWhole) != 0
                              ? static_cast<std::int32_t>(bits) >> 2
                              : std::bit_cast<double>(std::uint64_t{bits & ~std::uint32_t{rkFlags}} << 32);
    return (bits & rkHundredths) != 0 ? number / 100 : number;
}

}  // namespace

void SheetCells::add(std::uint32_t row, std::uint32_t column, Variant value, const std::string* shared) {
    if (column >= columnLimit) raiseDamaged();
    cells_.push_back({row * columnLimit + column, shared, std::move(value)});
}

void SheetCells::sort() {
    if (!std::ranges::is_sorted(cells_, {}, &Cell::place)) std::ranges::stable_sort(cells_, {}, &Cell::place);
}

Variant SheetCells::at(std::uint32_t row, std::uint32_t column) const {
    const std::uint32_t place = row * columnLimit + column;
    const auto behind = std::ranges::upper_bound(cells_, place, {}, &Cell::place);
    if (behind == cells_.begin() || std::prev(behind)->place != place) return Empty();
    const Cell& cell = *std::prev(behind);
    return cell.shared != nullptr ? Variant(*cell.shared) : cell.value;
}

WorkbookContents::WorkbookContents(std::string stream) : stream_(std::move(stream)) {
    RecordReader reader(stream_, 0);
    if (reader.next() != recordBegin) raiseDamaged();
    const std::uint32_t version = reader.word();
    if ((version != excel5 && version != excel97) || reader.word() != streamGlobals) raiseDamaged();
    if (version == excel5) version_ = BiffVersion::Excel5;
    for (std::uint32_t kind = reader.next(); kind != recordEnd; kind = reader.next()) {
        switch (kind) {
            case recordFilePass:
                raiseRefused("No se puede leer el libro: está protegido con contraseña.");
            case recordCodePage:
                if (const std::uint32_t page = reader.word();
                    version_ == BiffVersion::Excel5 && page != windows1252 && page != ascii) {
                    raiseRefused("No se puede leer el libro: sus textos usan la página de códigos " +
                                 std::to_string(page) + "; guárdelo como libro de Excel 97-2003.");
                }
                break;
            case recordDateMode:
                since1904_ = reader.word() != 0;
                break;
            case recordSheet:
                readSheetEntry(reader);
                break;
            case recordFormat: {
                const std::uint32_t index = reader.word();
                dateFormats_[index] =
                    isDateFormat(version_ == BiffVersion::Excel5 ? reader.text(reader.byte(), version_)
                                                                 : reader.longText(version_));
                break;
            }
            case recordStyle:
                reader.skip(2);  // the font
                styles_.push_back(reader.word());
                break;
            case recordSharedTexts:
                readSharedTexts(reader);
                break;
            default:
                break;
        }
    }
    if (sheets_.empty()) raiseDamaged();
}

void WorkbookContents::readSheetEntry(RecordReader& reader) {
    const std::uint32_t start = reader.doubleWord();
    reader.skip(1);  // whether it is hidden
    if (reader.byte() != codeModule) sheets_.push_back(start);
}

void WorkbookContents::readSharedTexts(RecordReader& reader) {
    reader.skip(4);  // how often cells use them
    // Some writers count more than there are.
    for (std::uint32_t left = reader.doubleWord(); left > 0 && reader.holdsMore(); --left) {
        const std::uint32_t length = reader.word();
        texts_.push_back(reader.text(length, version_));
    }
}

SheetCells WorkbookContents::sheet(std::size_t position) const {
    RecordReader reader(stream_, sheets_[position]);
    if (reader.next() != recordBegin) raiseDamaged();
    reader.skip(2);  // the version
    const std::uint32_t what = reader.word();
    if (what != streamWorksheet && what != streamMacroSheet) throw RuntimeError(ErrorNumber::TypeMismatch);
    SheetCells cells;
    bool awaitsText = false;
    for (int depth = 1; depth > 0;) {  // charts lie within the sheet, with cells of their own
        const std::uint32_t kind = reader.next();
        if (kind == recordBegin) ++depth;
        if (kind == recordEnd) --depth;
        if (depth > 1) continue;
        if (kind == recordSheetOptions && (reader.word() & isDialog) != 0) {
            throw RuntimeError(ErrorNumber::TypeMismatch);
        }
        if (kind == recordString && awaitsText) cells.cells_.back().value = reader.longText(version_);
        if (kind == recordString || readCells(kind, reader, cells)) {
            awaitsText = kind == recordFormula || kind == recordFormulaOfExcel4;
        }
    }
    cells.sort();
    return cells;
}

/// The cells of one record; false for a record of another kind.
bool WorkbookContents::readCells(std::uint32_t kind, RecordReader& reader, SheetCells& cells) const {
    constexpr RecordKind kinds[] = {recordFormula,     recordMulRk,  recordRichText,
                                    recordLabelShared, recordNumber, recordLabel,
                                    recordBoolErr,     recordRk,     recordFormulaOfExcel4};
    if (std::ranges::find(kinds, kind) == std::end(kinds)) return false;
    const std::uint32_t row = reader.word();
    std::uint32_t column = reader.word();
    if (kind == recordMulRk) {
        for (; reader.left() > 2; ++column) {  // the last two bytes are the last column
            const std::uint32_t style = reader.word();
            cells.add(row, column, numberCell(rkNumber(reader.doubleWord()), style));
        }
        return true;
    }
    const std::uint32_t style = reader.word();
    switch (kind) {
        case recordNumber:
            cells.add(row, column, numberCell(reader.number(), style));
            break;
        case recordRk:
            cells.add(row, column, numberCell(rkNumber(reader.doubleWord()), style));
            break;
        case recordLabelShared: {
            const std::uint32_t index = reader.doubleWord();
            if (index >= texts_.size()) raiseDamaged();
            cells.add(row, column, Empty(), &texts_[index]);
            break;
        }
        case recordLabel:
        case recordRichText:
            cells.add(row, column, reader.longText(version_));
            break;
        case recordBoolErr: {
            const std::uint32_t value = reader.byte();
            const bool isError = reader.byte() != 0;
            cells.add(row, column, isError ? Variant(errorValue(value)) : Variant(value != 0));
            break;
        }
        default:
            cells.add(row, column, formulaResult(reader, style));
    }
    return true;
}

/// Empty text where a STRING record may bring another.
Variant WorkbookContents::formulaResult(RecordReader& reader, std::uint32_t style) const {
    const std::uint64_t low = reader.doubleWord();
    const std::uint64_t high = reader.doubleWord();
    if (high >> 16 != notANumber) return numberCell(std::bit_cast<double>(high << 32 | low), style);
    const auto value = static_cast<std::uint32_t>(low >> 16 & 0xFF);
    switch (low & 0xFF) {
        case resultLogical:
            return value != 0;
        case resultError:
            return errorValue(value);
        default:
            return "";
    }
}

bool WorkbookContents::isDate(std::uint32_t style) const {
    if (style >= styles_.size()) return false;
    const std::uint32_t format = styles_[style];
    const auto described = dateFormats_.find(format);
    return described != dateFormats_.end() ? described->second : isBuiltInDateFormat(format);
}

Variant WorkbookContents::numberCell(double number, std::uint32_t style) const {
    if (!isDate(style)) return number;
    // The workbook's own 29 February 1900 puts each earlier day at the number that automation gives the day
    // before it; the number itself is handed over.
    constexpr double daysTo1904 = 1462;
    constexpr double year10000 = 2958466;
    const double days = since1904_ ? number + daysTo1904 : number;
    return days >= 0 && days < year10000 ? Variant(Date{days}) : Variant(number);
}

}  // namespace pxtarvo::portable
