#include "devhost/changes/changeset_writer.h"

#include <bit>
#include <cstdint>

namespace pxtarvo::devhost {

namespace {

constexpr char tableFollows = 'T';
constexpr char notIndirect = 0;  // no trigger's doing
/// In place of a value that an update leaves as it was.
constexpr char unchanged = 0;

void appendBigEndian(std::string& bytes, std::uint64_t value) {
    char encoded[sizeof value];
    for (std::size_t at = sizeof value; at-- > 0; value >>= 8U)
        encoded[at] = static_cast<char>(value & 0xFFU);
    bytes.append(encoded, sizeof encoded);
}

/// Seven bits a byte, the highest first, all but the last with the eighth bit set; below 2^56.
void appendVarint(std::string& bytes, std::uint64_t value) {
    constexpr unsigned bits = 7;
    constexpr std::uint64_t more = 0x80;
    unsigned shift = 0;
    while (value >> (shift + bits) != 0) shift += bits;
    for (; shift > 0; shift -= bits) bytes += static_cast<char>((value >> shift & (more - 1)) | more);
    bytes += static_cast<char>(value & (more - 1));
}

void appendValue(std::string& bytes, const RowValue& value) {
    const int type = value.type();
    bytes += static_cast<char>(type);
    switch (type) {
        case SQLITE_NULL:
            break;
        case SQLITE_INTEGER:
            appendBigEndian(bytes, static_cast<std::uint64_t>(value.whole()));
            break;
        case SQLITE_FLOAT:
            appendBigEndian(bytes, std::bit_cast<std::uint64_t>(value.number()));
            break;
        default: {
            const std::string_view text = value.bytes();
            appendVarint(bytes, text.size());
            bytes += text;
        }
    }
}

}  // namespace

void ChangesetWriter::header(int columns) {
    bytes_ += tableFollows;
    appendVarint(bytes_, static_cast<std::uint64_t>(columns));
    for (int column = 0; column < columns; ++column) bytes_ += column == key_ ? '\1' : '\0';
    bytes_.append(table_).append(1, '\0');
}

void ChangesetWriter::row(const RowPair& pair) {
    if (pair.change() == RowChange::None) return;
    if (bytes_.empty()) header(pair.columnCount());
    const auto append = [&](auto side, const auto& wanted) {
        for (int column = 0; column < pair.columnCount(); ++column)
            wanted(column) ? appendValue(bytes_, (pair.*side)(column)) : void(bytes_ += unchanged);
    };
    const auto all = [](int) { return true; };
    switch (pair.change()) {
        case RowChange::None:
            break;
        case RowChange::Inserted:
            bytes_.append({SQLITE_INSERT, notIndirect});
            append(&RowPair::after, all);
            break;
        case RowChange::Deleted:
            bytes_.append({SQLITE_DELETE, notIndirect});
            append(&RowPair::before, all);
            break;
        case RowChange::Updated:
            bytes_.append({SQLITE_UPDATE, notIndirect});
            append(&RowPair::before, [&](int column) { return column == key_ || pair.changed(column); });
            append(&RowPair::after, [&](int column) { return pair.changed(column); });
            break;
    }
}

}  // namespace pxtarvo::devhost
