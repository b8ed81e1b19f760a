#include "platform/portable/access/jet_rows.h"

// libmdb's header includes glib's inside extern "C", where glib's C++ parts do not compile.
#include <glib.h>
#include <mdbtools.h>

#include <algorithm>
#include <bit>
#include <utility>

#include "platform/values/runtime_error.h"
#include "platform/values/text.h"

// A row: its count of columns (2 bytes), the fixed columns, the variable ones, then backwards from its end: a
// bit for each column that is set when the value is not null (and is the value of a Boolean), the count of
// variable columns (2 bytes), and where each of them begins, one entry more than there are columns so that
// the next entry is where it ends. The format is described in libmdb's HACKING document.

namespace pxtarvo::portable {

namespace {

constexpr std::size_t columnCountBytes = 2;

// A moved row leaves where it is now, and pieces of long values lie at: one byte of row, three of page.
constexpr std::size_t rowAddressBytes = 4;
constexpr int longestPointerChain = 8;

// A long value's header: its length with two flags, the address of its (first) piece, four bytes unused.
constexpr std::size_t longValueHeaderBytes = 12;
constexpr std::uint32_t longValueLengthMask = 0x3FFFFFFF;
constexpr std::uint32_t longValueInline = 0x80000000;
constexpr std::uint32_t longValueOnePiece = 0x40000000;

// A text begins with this when characters below 256 take one byte.
constexpr unsigned char compressedTextMark[] = {0xFF, 0xFE};

// A decimal: its sign, then four 32-bit words, the highest one first.
constexpr std::size_t decimalBytes = 17;
constexpr std::uint8_t largestScale = 28;

std::size_t fixedSizeOf(int type) {
    switch (type) {
        case MDB_BYTE:
            return 1;
        case MDB_INT:
            return 2;
        case MDB_LONGINT:
        case MDB_FLOAT:
            return 4;
        case MDB_MONEY:
        case MDB_DOUBLE:
        case MDB_DATETIME:
            return 8;
        case MDB_NUMERIC:
            return decimalBytes;
        default:
            return 0;
    }
}

struct RowAddress {
    std::uint32_t page;
    std::size_t row;
};

RowAddress rowAddress(const unsigned char* bytes) {
    const std::uint32_t packed = littleEndian32(bytes);
    return {.page = packed >> 8, .row = packed & 0xFF};
}

}  // namespace

JetRows::JetRows(std::shared_ptr<const JetFile> file, std::string_view tableName)
    : file_(std::move(file)), table_(file_->table(tableName)) {}

std::int32_t JetRows::columnCount() const {
    return static_cast<std::int32_t>(table_.columns.size());
}

const std::string& JetRows::columnName(std::int32_t position) const {
    return table_.columns[static_cast<std::size_t>(position)].name;
}

void JetRows::rewind() {
    pageNumber_ = 0;
    rowOnPage_ = rowsOnPage_ = 0;
    rowsPassed_ = 0;
}

bool JetRows::next() {
    while (true) {
        if (rowOnPage_ == rowsOnPage_ && !nextDataPage()) {
            if (rowsPassed_ < table_.rowCount) raiseDamagedFile(file_->fileName());
            return false;
        }
        const auto row = page_.row(rowOnPage_++);
        if (!row) raiseDamagedFile(file_->fileName());
        if (row->deleted) continue;
        row_ = row->bytes;
        if (row->pointer) followPointer();
        readRowFrame();
        ++rowsPassed_;
        return true;
    }
}

bool JetRows::nextDataPage() {
    do {
        pageNumber_ = file_->nextPage(table_, pageNumber_);
        if (pageNumber_ == 0) {
            rowOnPage_ = rowsOnPage_ = 0;
            return false;
        }
        file_->readPage(pageNumber_, page_);
    } while (!page_.belongsTo(table_.definitionPage));
    rowOnPage_ = 0;
    rowsOnPage_ = page_.rowCount();
    return true;
}

/// From the pointer that a row left where it was to the row itself.
void JetRows::followPointer() {
    for (int hop = 0; hop < longestPointerChain; ++hop) {
        if (row_.size() < rowAddressBytes) break;
        const RowAddress address = rowAddress(row_.data());
        file_->readPage(address.page, movedRowPage_);
        const auto row = movedRowPage_.row(address.row);
        if (!row || !movedRowPage_.belongsTo(table_.definitionPage)) break;
        row_ = row->bytes;
        if (!row->pointer) return;
    }
    raiseDamagedFile(file_->fileName());
}

void JetRows::readRowFrame() {
    if (row_.size() < columnCountBytes) raiseDamagedFile(file_->fileName());
    columnsInRow_ = littleEndian16(row_.data());
    const std::size_t maskBytes = (columnsInRow_ + 7) / 8;
    std::size_t tail = maskBytes;
    if (columnsInRow_ == 0 || columnCountBytes + tail > row_.size()) raiseDamagedFile(file_->fileName());
    notNull_ = row_.last(maskBytes);

    variableColumnsInRow_ = 0;
    if (!table_.hasVariableColumns) return;
    tail += 2;
    if (columnCountBytes + tail > row_.size()) raiseDamagedFile(file_->fileName());
    variableColumnsInRow_ = littleEndian16(row_.data() + row_.size() - tail);
    variableOffsets_ = row_.data() + row_.size() - tail - 2;
    tail += 2 * (variableColumnsInRow_ + 1);
    if (columnCountBytes + tail > row_.size()) raiseDamagedFile(file_->fileName());
}

/// A column added to the table after the row was written is null in it.
bool JetRows::isNull(const JetColumn& column) const {
    return column.number >= columnsInRow_ || (notNull_[column.number / 8] >> column.number % 8 & 1) == 0;
}

JetRows::Bytes JetRows::fieldBytes(const JetColumn& column) const {
    std::size_t start = columnCountBytes + column.fixedOffset;
    std::size_t end = start + column.size;
    if (!column.fixed) {
        if (column.variableNumber >= variableColumnsInRow_) raiseDamagedFile(file_->fileName());
        const unsigned char* const entry = variableOffsets_ - 2 * column.variableNumber;
        start = littleEndian16(entry);
        end = littleEndian16(entry - 2);
    }
    if (start > end || end > row_.size()) raiseDamagedFile(file_->fileName());
    return row_.subspan(start, end - start);
}

Variant JetRows::value(std::int32_t position) const {
    const JetColumn& column = table_.columns[static_cast<std::size_t>(position)];
    if (column.type == MDB_BOOL) return !isNull(column);
    if (isNull(column)) return Null();
    return decoded(column, fieldBytes(column));
}

Variant JetRows::decoded(const JetColumn& column, Bytes bytes) const {
    if (bytes.size() < fixedSizeOf(column.type)) raiseDamagedFile(file_->fileName());
    const unsigned char* const data = bytes.data();
    switch (column.type) {
        case MDB_BYTE:
            return data[0];
        case MDB_INT:
            return static_cast<std::int16_t>(littleEndian16(data));
        case MDB_LONGINT:
            return static_cast<std::int32_t>(littleEndian32(data));
        case MDB_MONEY:
            return Currency{static_cast<std::int64_t>(littleEndian64(data))};
        case MDB_FLOAT:
            return std::bit_cast<float>(littleEndian32(data));
        case MDB_DOUBLE:
            return std::bit_cast<double>(littleEndian64(data));
        case MDB_DATETIME:
            return Date{std::bit_cast<double>(littleEndian64(data))};
        case MDB_NUMERIC:
            if (littleEndian32(data + 1) != 0 || column.scale > largestScale)
                raiseDamagedFile(file_->fileName());
            return Decimal{.low = littleEndian32(data + 13) | std::uint64_t{littleEndian32(data + 9)} << 32,
                           .high = littleEndian32(data + 5),
                           .scale = column.scale,
                           .negative = data[0] != 0};
        case MDB_TEXT:
            return text(bytes);
        case MDB_MEMO:
            return text(longValue(bytes));
        default:
            throw RuntimeError(ErrorNumber::ProviderFailure,
                               "El campo '" + column.name +
                                   "' es de un tipo de datos que el motor de base de datos Microsoft Jet "
                                   "no puede entregar aquí.");
    }
}

/// The bytes of a long value, put together from where its pieces are.
JetRows::Bytes JetRows::longValue(Bytes header) const {
    if (header.empty()) return header;
    if (header.size() < longValueHeaderBytes) raiseDamagedFile(file_->fileName());
    const std::uint32_t lengthAndFlags = littleEndian32(header.data());
    const std::size_t length = lengthAndFlags & longValueLengthMask;
    if ((lengthAndFlags & longValueInline) != 0) {
        const Bytes inlineBytes = header.subspan(longValueHeaderBytes);
        if (inlineBytes.size() < length) raiseDamagedFile(file_->fileName());
        return inlineBytes.first(length);
    }

    const bool onePiece = (lengthAndFlags & longValueOnePiece) != 0;
    const std::size_t linkBytes =
        onePiece ? 0 : rowAddressBytes;  // each of several pieces names the next one
    longValueBytes_.clear();
    RowAddress address = rowAddress(header.data() + 4);
    while (longValueBytes_.size() < length) {
        if (address.page == 0 || (onePiece && !longValueBytes_.empty())) raiseDamagedFile(file_->fileName());
        file_->readPage(address.page, longValuePage_);
        const auto piece = longValuePage_.row(address.row);
        if (!piece || piece->bytes.size() <= linkBytes) raiseDamagedFile(file_->fileName());
        if (!onePiece) address = rowAddress(piece->bytes.data());
        const Bytes content = piece->bytes.subspan(linkBytes);
        const std::size_t wanted = std::min(content.size(), length - longValueBytes_.size());
        longValueBytes_.insert(longValueBytes_.end(), content.begin(), content.begin() + wanted);
    }
    return longValueBytes_;
}

/// UTF-16, or the compressed form: one byte a character, a zero byte switching to two bytes a character and
/// back.
std::string JetRows::text(Bytes bytes) const {
    characters_.clear();
    bool compressed = bytes.size() >= 2 && std::equal(bytes.begin(), bytes.begin() + 2, compressedTextMark);
    if (!compressed) {
        for (std::size_t i = 0; i + 2 <= bytes.size(); i += 2) {
            characters_.push_back(static_cast<char16_t>(littleEndian16(&bytes[i])));
        }
        return toUtf8(characters_);
    }
    bytes = bytes.subspan(2);
    if (std::all_of(bytes.begin(), bytes.end(), [](unsigned char c) { return c != 0 && c < 0x80; })) {
        return {bytes.begin(), bytes.end()};
    }
    while (!bytes.empty()) {
        if (bytes[0] == 0) {
            compressed = !compressed;
            bytes = bytes.subspan(1);
        } else if (compressed) {
            characters_.push_back(bytes[0]);
            bytes = bytes.subspan(1);
        } else if (bytes.size() >= 2) {
            characters_.push_back(static_cast<char16_t>(littleEndian16(bytes.data())));
            bytes = bytes.subspan(2);
        } else {
            raiseDamagedFile(file_->fileName());
        }
    }
    return toUtf8(characters_);
}

JetRowCount::JetRowCount(const JetFile& file, std::string_view tableName)
    : count_(static_cast<std::int32_t>(file.table(tableName).rowCount)) {}

const std::string& JetRowCount::columnName(std::int32_t) const {
    static const std::string name = "Expr1000";  // what the engine calls the first unnamed column
    return name;
}

bool JetRowCount::next() {
    return !std::exchange(passed_, true);
}

Variant JetRowCount::value(std::int32_t) const {
    return count_;
}

}  // namespace pxtarvo::portable
