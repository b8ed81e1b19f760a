#include "platform/portable/access/jet_page.h"

#include <algorithm>

#include "platform/values/text.h"

namespace pxtarvo::portable {

namespace {

// Of a data page: its kind, the table that it belongs to, the count of rows, then two bytes for each row.
constexpr std::size_t pageOwnerOffset = 4;
constexpr std::size_t pageRowCountOffset = 12;
constexpr std::size_t pageFirstRowOffset = 14;
// Of a row's two bytes: where it begins (it ends where the row before it begins) and what became of it.
constexpr std::uint32_t rowStartMask = 0x1FFF;
constexpr std::uint32_t rowPointerFlag = 0x4000;
constexpr std::uint32_t rowDeletedFlag = 0x8000;

// A text begins with this when characters below 256 take one byte.
constexpr unsigned char compressedTextMark[] = {0xFF, 0xFE};

}  // namespace

bool JetPage::belongsTo(std::uint32_t definitionPage) const {
    return is(JetPageKind::Data) && littleEndian32(&bytes_[pageOwnerOffset]) == definitionPage;
}

std::size_t JetPage::rowCount() const {
    return littleEndian16(&bytes_[pageRowCountOffset]);
}

std::optional<JetPage::Row> JetPage::row(std::size_t index) const {
    const std::size_t entryOffset = pageFirstRowOffset + 2 * index;
    if (index >= rowCount() || entryOffset + 2 > jetPageSize) return std::nullopt;
    const std::uint32_t entry = littleEndian16(&bytes_[entryOffset]);
    const std::size_t start = entry & rowStartMask;
    const std::size_t end =
        index == 0 ? jetPageSize : littleEndian16(&bytes_[entryOffset - 2]) & rowStartMask;
    if (start > end || end > jetPageSize) return std::nullopt;
    return Row{.bytes = bytes().subspan(start, end - start),
               .deleted = (entry & rowDeletedFlag) != 0,
               .pointer = (entry & rowPointerFlag) != 0};
}

/// UTF-16, or the compressed form: one byte a character, a zero byte switching to two bytes a character and
/// back.
std::optional<std::string> jetText(JetBytes bytes) {
    bool compressed = bytes.size() >= 2 && std::equal(bytes.begin(), bytes.begin() + 2, compressedTextMark);
    std::u16string characters;
    if (!compressed) {
        characters.reserve(bytes.size() / 2);
        for (std::size_t i = 0; i + 2 <= bytes.size(); i += 2) {
            characters.push_back(static_cast<char16_t>(littleEndian16(&bytes[i])));
        }
        return toUtf8(characters);
    }
    bytes = bytes.subspan(2);
    if (std::all_of(bytes.begin(), bytes.end(), [](unsigned char c) { return c != 0 && c < 0x80; })) {
        return std::string(bytes.begin(), bytes.end());
    }
    characters.reserve(bytes.size());
    while (!bytes.empty()) {
        if (bytes[0] == 0) {
            compressed = !compressed;
            bytes = bytes.subspan(1);
        } else if (compressed) {
            characters.push_back(bytes[0]);
            bytes = bytes.subspan(1);
        } else if (bytes.size() >= 2) {
            characters.push_back(static_cast<char16_t>(littleEndian16(bytes.data())));
            bytes = bytes.subspan(2);
        } else {
            return std::nullopt;
        }
    }
    return toUtf8(characters);
}

}  // namespace pxtarvo::portable
