#include "platform/portable/access/jet_rows.h"

#include <algorithm>
#include <bit>
#include <utility>

#include "platform/values/runtime_error.h"
#include "platform/values/text.h"

// A row: its count of columns (2 bytes), the fixed columns, the variable ones, then backwards from its end: a
// bit for each column that is set when the value is not null (and is the value of a Boolean), the count of
// variable columns (2 bytes), and where each of them begins, one entry more than there are columns so that
// the next entry is where it ends.

namespace pxtarvo::portable {

namespace {

constexpr std::size_t columnCountBytes = 2;

constexpr int longestPointerChain = 8;

// A long value's header: its length with two flags, the address of its (first) piece, four bytes unused.
constexpr std::size_t longValueHeaderBytes = 12;
constexpr std::uint32_t longValueLengthMask = 0x3FFFFFFF;
constexpr std::uint32_t longValueInline = 0x80000000;
constexpr std::uint32_t longValueOnePiece = 0x40000000;

// A decimal: its sign, then four 32-bit words, the highest one first.
constexpr std::size_t decimalBytes = 17;
constexpr std::uint8_t largestScale = 28;

std::size_t fixedSizeOf(JetType type) {
    switch (type) {
        case JetType::Byte:
            return 1;
        case JetType::Integer:
            return 2;
        case JetType::LongInteger:
        case JetType::Single:
            return 4;
        case JetType::Currency:
        case JetType::Double:
        case JetType::DateTime:
            return 8;
        case JetType::Decimal:
            return decimalBytes;
        default:
            return 0;
    }
}

}  // namespace

JetRows::JetRows(std::shared_ptr<const JetFile> file, JetTable table)
    : file_(std::move(file)), table_(std::move(table)) {}

void JetRows::rewind() {
    pageNumber_ = 0;
    rowOnPage_ = rowsOnPage_ = 0;
    rowsPassed_ = 0;
}

bool JetRows::next() {
    while (true) {
        if (rowOnPage_ == rowsOnPage_ && !nextDataPage()) {
            if (rowsPassed_ < table_.rowCount) file_->raiseDamaged();
            return false;
        }
        const auto row = page_.row(rowOnPage_++);
        if (!row) file_->raiseDamaged();
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
        pageNumber_ = table_.pages.next(*file_, pageNumber_);
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
        if (row_.size() < JetRowAddress::size) break;
        const JetRowAddress address(row_.data());
        file_->readPage(address.page, movedRowPage_);
        const auto row = movedRowPage_.row(address.row);
        if (!row || !movedRowPage_.belongsTo(table_.definitionPage)) break;
        row_ = row->bytes;
        if (!row->pointer) return;
    }
    file_->raiseDamaged();
}

void JetRows::readRowFrame() {
    if (row_.size() < columnCountBytes) file_->raiseDamaged();
    columnsInRow_ = littleEndian16(row_.data());
    const std::size_t maskBytes = (columnsInRow_ + 7) / 8;
    std::size_t tail = maskBytes;
    if (columnsInRow_ == 0 || columnCountBytes + tail > row_.size()) file_->raiseDamaged();
    notNull_ = row_.last(maskBytes);

    variableColumnsInRow_ = 0;
    if (!table_.hasVariableColumns) return;
    tail += 2;
    if (columnCountBytes + tail > row_.size()) file_->raiseDamaged();
    variableColumnsInRow_ = littleEndian16(row_.data() + row_.size() - tail);
    variableOffsets_ = row_.data() + row_.size() - tail - 2;
    tail += 2 * (variableColumnsInRow_ + 1);
    if (columnCountBytes + tail > row_.size()) file_->raiseDamaged();
}

/// A column added to the table after the row was written is null in it.
bool JetRows::isNull(const JetColumn& column) const {
    return column.number >= columnsInRow_ || (notNull_[column.number / 8] >> column.number % 8 & 1) == 0;
}

JetBytes JetRows::fieldBytes(const JetColumn& column) const {
    std::size_t start = columnCountBytes + column.fixedOffset;
    std::size_t end = start + column.size;
    if (!column.fixed) {
        if (column.variableNumber >= variableColumnsInRow_) file_->raiseDamaged();
        const unsigned char* const entry = variableOffsets_ - 2 * column.variableNumber;
        start = littleEndian16(entry);
        end = littleEndian16(entry - 2);
    }
    if (start > end || end > row_.size()) file_->raiseDamaged();
    return row_.subspan(start, end - start);
}

Variant JetRows::value(std::int32_t position) const {
    const JetColumn& column = table_.columns[static_cast<std::size_t>(position)];
    if (column.type == JetType::Boolean) return !isNull(column);
    if (isNull(column)) return Null();
    return decoded(column, fieldBytes(column));
}

Variant JetRows::decoded(const JetColumn& column, JetBytes bytes) const {
    if (bytes.size() < fixedSizeOf(column.type)) file_->raiseDamaged();
    const unsigned char* const data = bytes.data();
    switch (column.type) {
        case JetType::Byte:
            return data[0];
        case JetType::Integer:
            return static_cast<std::int16_t>(littleEndian16(data));
        case JetType::LongInteger:
            return static_cast<std::int32_t>(littleEndian32(data));
        case JetType::Currency:
            return Currency{static_cast<std::int64_t>(littleEndian64(data))};
        case JetType::Single:
            return std::bit_cast<float>(littleEndian32(data));
        case JetType::Double:
            return std::bit_cast<double>(littleEndian64(data));
        case JetType::DateTime:
            return Date{std::bit_cast<double>(littleEndian64(data))};
        case JetType::Decimal:
            if (littleEndian32(data + 1) != 0 || column.scale > largestScale) file_->raiseDamaged();
            return Decimal{.low = littleEndian32(data + 13) | std::uint64_t{littleEndian32(data + 9)} << 32,
                           .high = littleEndian32(data + 5),
                           .scale = column.scale,
                           .negative = data[0] != 0};
        case JetType::Text:
            return text(bytes);
        case JetType::Memo:
            return text(longValue(bytes));
        default:
            throw RuntimeError(ErrorNumber::ProviderFailure,
                               "El campo '" + column.name +
                                   "' es de un tipo de datos que el motor de base de datos Microsoft Jet "
                                   "no puede entregar aquí.");
    }
}

/// The bytes of a long value, put together from where its pieces are.
JetBytes JetRows::longValue(JetBytes header) const {
    if (header.empty()) return header;
    if (header.size() < longValueHeaderBytes) file_->raiseDamaged();
    const std::uint32_t lengthAndFlags = littleEndian32(header.data());
    const std::size_t length = lengthAndFlags & longValueLengthMask;
    if ((lengthAndFlags & longValueInline) != 0) {
        const JetBytes inlineBytes = header.subspan(longValueHeaderBytes);
        if (inlineBytes.size() < length) file_->raiseDamaged();
        return inlineBytes.first(length);
    }

    const bool onePiece = (lengthAndFlags & longValueOnePiece) != 0;
    const std::size_t linkBytes =
        onePiece ? 0 : JetRowAddress::size;  // each of several pieces names the next one
    longValueBytes_.clear();
    JetRowAddress address(header.data() + 4);
    // No two pieces of a value share a page.
    std::uint64_t piecesLeft = onePiece ? 1 : file_->pageCount();
    while (longValueBytes_.size() < length) {
        if (address.page == 0 || piecesLeft-- == 0) file_->raiseDamaged();
        file_->readPage(address.page, longValuePage_);
        const auto piece = longValuePage_.row(address.row);
        if (!piece || piece->bytes.size() <= linkBytes) file_->raiseDamaged();
        if (!onePiece) address = JetRowAddress(piece->bytes.data());
        const JetBytes content = piece->bytes.subspan(linkBytes);
        const std::size_t wanted = std::min(content.size(), length - longValueBytes_.size());
        longValueBytes_.insert(longValueBytes_.end(), content.begin(), content.begin() + wanted);
    }
    return longValueBytes_;
}

std::string JetRows::text(JetBytes bytes) const {
    auto result = jetText(bytes);
    if (!result) file_->raiseDamaged();
    return *std::move(result);
}

const std::string& JetRowCount::columnName(std::int32_t) const {
    static const std::string name = "Expr1000";  // what the engine calls the first unnamed column
    return name;
}

}  // namespace pxtarvo::portable
