#include "devhost/exchange/text_lines.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "platform/values/text.h"

namespace pxtarvo::devhost {

namespace {

constexpr std::size_t unitBytes = sizeof(char16_t);

[[noreturn]] void raiseMalformed(const char* encoding) {
    throw std::runtime_error(joined({"the text is no well-formed ", encoding}));
}

}  // namespace

bool isUtf8(std::string_view bytes) noexcept {
    constexpr std::string_view replacement = "\xEF\xBF\xBD";  // well-formed, if it stands there itself
    while (!bytes.empty()) {
        const auto* const beyondAscii = std::ranges::find_if(bytes, [](char c) { return (c & 0x80) != 0; });
        bytes.remove_prefix(static_cast<std::size_t>(beyondAscii - bytes.begin()));
        if (bytes.empty()) break;
        const bool replaced = bytes.starts_with(replacement);
        if (takeCodePoint(bytes) == replacementCharacter && !replaced) return false;
    }
    return true;
}

TextLines::TextLines(std::string bytes) : bytes_(std::move(bytes)) {
    findEncoding();
}

void TextLines::findEncoding() {
    const std::string_view all = bytes_;
    struct Mark {
        std::string_view bytes;
        Encoding encoding;
    };
    constexpr Mark marks[] = {{"\xEF\xBB\xBF", Encoding::Utf8},
                              {"\xFF\xFE", Encoding::Utf16LittleEndian},
                              {"\xFE\xFF", Encoding::Utf16BigEndian}};
    for (const Mark& mark : marks) {
        if (!all.starts_with(mark.bytes)) continue;
        encoding_ = mark.encoding;
        at_ = mark.bytes.size();
        return;
    }
    if (all.size() >= unitBytes && (all[0] == '\0') != (all[1] == '\0')) {
        encoding_ = all[0] == '\0' ? Encoding::Utf16BigEndian : Encoding::Utf16LittleEndian;
        return;
    }
    checked_ = true;
    encoding_ = isUtf8(all) ? Encoding::Utf8 : Encoding::Windows1252;
}

char16_t TextLines::unitAt(std::size_t at) const noexcept {
    const auto first = static_cast<unsigned char>(bytes_[at]);
    const auto second = static_cast<unsigned char>(bytes_[at + 1]);
    return static_cast<char16_t>(encoding_ == Encoding::Utf16LittleEndian ? first | second << 8
                                                                          : second | first << 8);
}

void TextLines::takeUtf16Line() {
    std::u16string units;
    while (at_ + unitBytes <= bytes_.size() && !units.ends_with(u'\n')) {
        units += unitAt(at_);
        at_ += unitBytes;
    }
    line_ = toUtf8(units);
    // Half a unit is left over, a lone surrogate does not come back.
    const bool half = !units.ends_with(u'\n') && at_ < bytes_.size();
    if (half || toUtf16(line_) != units) raiseMalformed("UTF-16");
}

bool TextLines::next(std::string_view& line) {
    if (at_ >= bytes_.size()) return false;
    ++number_;
    if (encoding_ == Encoding::Utf16LittleEndian || encoding_ == Encoding::Utf16BigEndian) {
        takeUtf16Line();
        line = line_;
        return true;
    }
    const std::size_t end = std::min(bytes_.find('\n', at_), bytes_.size() - 1) + 1;
    line = std::string_view(bytes_).substr(at_, end - at_);
    at_ = end;
    if (encoding_ == Encoding::Windows1252) {
        line_ = fromWindows1252(line);
        line = line_;
    } else if (!checked_ && !isUtf8(line)) {
        raiseMalformed("UTF-8");
    }
    return true;
}

}  // namespace pxtarvo::devhost
