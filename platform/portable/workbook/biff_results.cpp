#include "platform/portable/workbook/biff_results.h"

#include <bit>
#include <cstring>
#include <fstream>
#include <iterator>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/portable/workbook/compound_file.h"
#include "platform/values/text.h"

// A workbook stream is a row of records: kind and length (2 bytes each), then that many bytes. Numbers are
// little-endian.

namespace pxtarvo::portable {

namespace {

enum RecordKind : std::uint32_t {
    recordFormula = 0x0006,
    recordEnd = 0x000A,
    recordContinue = 0x003C,
    recordSheet = 0x0085,
    recordBoolErr = 0x0205,
    recordString = 0x0207,
    recordFormulaOld = 0x0406,
    recordBegin = 0x0809,
};

constexpr std::uint32_t biff8 = 0x0600;
constexpr unsigned char wideCharacters = 1;  // flag before the characters of a BIFF8 text

// A formula's result: a double, unless its last two bytes are these; then its first byte tells the kind.
constexpr std::uint32_t notANumber = 0xFFFF;
enum FormulaResult : unsigned char { resultText = 0, resultLogical = 1, resultError = 2 };
constexpr std::size_t resultOffset = 6;

struct Record {
    std::uint32_t kind = recordEnd;
    std::string_view data;

    bool holds(std::size_t bytes) const { return data.size() >= bytes; }
    unsigned char byte(std::size_t offset) const { return static_cast<unsigned char>(data[offset]); }
    std::uint32_t word(std::size_t offset) const {
        return byte(offset) | std::uint32_t{byte(offset + 1)} << 8;
    }
    std::uint32_t doubleWord(std::size_t offset) const {
        return word(offset) | std::uint32_t{word(offset + 2)} << 16;
    }
};

class RecordReader {
  public:
    RecordReader(std::string_view stream, std::size_t position) : stream_(stream), position_(position) {}

    std::optional<Record> next() {
        if (position_ > stream_.size() || stream_.size() - position_ < 4) return std::nullopt;
        const Record header{.kind = recordEnd, .data = stream_.substr(position_, 4)};
        Record record{.kind = header.word(0), .data = stream_.substr(position_ + 4, header.word(2))};
        if (record.data.size() < header.word(2)) return std::nullopt;
        position_ += 4 + record.data.size();
        return record;
    }
    std::optional<Record> peek() const { return RecordReader(*this).next(); }

  private:
    std::string_view stream_;
    std::size_t position_;
};

/// Where the sheets begin, in their order, and how texts are written.
struct Globals {
    std::uint32_t version = 0;
    std::vector<std::size_t> sheets;
};

Globals readGlobals(std::string_view stream) {
    Globals globals;
    RecordReader reader(stream, 0);
    while (const auto record = reader.next()) {
        if (record->kind == recordBegin && record->holds(2)) globals.version = record->word(0);
        if (record->kind == recordSheet && record->holds(4)) globals.sheets.push_back(record->doubleWord(0));
        if (record->kind == recordEnd) break;
    }
    return globals;
}

ErrorValue errorValue(unsigned char code) {
    constexpr std::uint32_t firstError = 2000;
    return {static_cast<std::int32_t>(spreadsheetErrorBase + firstError + code)};
}

/// The text of a STRING record. A BIFF8 one goes on in CONTINUE records, each with a flag of its own.
std::string formulaText(Record record, RecordReader& reader, std::uint32_t version) {
    if (!record.holds(2)) return {};
    std::size_t left = record.word(0);
    record.data.remove_prefix(2);
    if (version < biff8) return fromWindows1252(record.data.substr(0, left));

    std::u16string text;
    while (record.holds(1)) {
        const std::size_t width = (record.byte(0) & wideCharacters) != 0 ? 2 : 1;
        for (std::size_t at = 1; left > 0 && record.holds(at + width); at += width, --left) {
            text.push_back(static_cast<char16_t>(width == 2 ? record.word(at) : record.byte(at)));
        }
        const auto more = reader.peek();
        if (left == 0 || !more || more->kind != recordContinue) break;
        record = *reader.next();
    }
    return toUtf8(text);
}

/// A formula's result; nothing where the file keeps none but a text that a STRING record brings.
std::optional<Variant> formulaResult(const Record& formula) {
    if (formula.word(resultOffset + 6) != notANumber) {
        const std::uint64_t high = formula.doubleWord(resultOffset + 4);
        return std::bit_cast<double>(high << 32 | formula.doubleWord(resultOffset));
    }
    const unsigned char value = formula.byte(resultOffset + 2);
    switch (formula.byte(resultOffset)) {
        case resultText:
            return std::nullopt;
        case resultLogical:
            return value != 0;
        case resultError:
            return errorValue(value);
        default:
            return "";
    }
}

std::string fileBytes(const std::string& place) {
    std::ifstream file(place, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace

BiffResults::BiffResults(const std::string& place) {
    const std::string file = fileBytes(place);
    std::string stream = compoundStream(file, "Workbook");
    if (stream.empty()) stream = compoundStream(file, "Book");

    const Globals globals = readGlobals(stream);
    for (std::size_t sheet = 0; sheet < globals.sheets.size(); ++sheet) {
        RecordReader reader(stream, globals.sheets[sheet]);
        Variant* awaitsText = nullptr;
        int depth = 0;  // charts lie within a sheet
        while (const auto record = reader.next()) {
            if (record->kind == recordBegin) ++depth;
            if (record->kind == recordEnd && --depth <= 0) break;
            if (record->kind == recordString && awaitsText != nullptr) {
                *awaitsText = formulaText(*record, reader, globals.version);
                awaitsText = nullptr;
            }
            const bool isFormula = record->kind == recordFormula || record->kind == recordFormulaOld;
            const bool isBoolErr = record->kind == recordBoolErr;
            if (!(isFormula && record->holds(resultOffset + 8)) && !(isBoolErr && record->holds(8))) continue;

            Variant& cell = cells_[{static_cast<std::int32_t>(sheet), record->word(0), record->word(2)}];
            if (isBoolErr) {
                cell = record->byte(7) != 0 ? Variant(errorValue(record->byte(6)))
                                            : Variant(record->byte(6) != 0);
                continue;
            }
            const auto result = formulaResult(*record);
            awaitsText = result ? nullptr : &cell;
            cell = result.value_or("");
        }
    }
}

const Variant* BiffResults::find(std::int32_t sheet, std::int32_t row, std::int32_t column) const {
    const auto found = cells_.find({sheet, row, column});
    return found == cells_.end() ? nullptr : &found->second;
}

}  // namespace pxtarvo::portable
