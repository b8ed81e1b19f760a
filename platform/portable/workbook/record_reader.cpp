#include "platform/portable/workbook/record_reader.h"

#include <algorithm>
#include <bit>

#include "platform/portable/workbook/refusals.h"
#include "platform/values/text.h"

namespace pxtarvo::portable {

namespace {

constexpr std::uint32_t recordContinue = 0x003C;
constexpr std::size_t recordHeaderBytes = 4;

enum TextFlag : std::uint32_t { textWide = 1, textExtended = 4, textRich = 8 };
constexpr std::size_t formattingRunBytes = 4;

/// Two bytes of `bytes`, which holds them.
std::uint32_t wordAt(std::string_view bytes, std::size_t at) {
    return static_cast<unsigned char>(bytes[at]) | std::uint32_t{static_cast<unsigned char>(bytes[at + 1])}
                                                       << 8;
}

}  // namespace

std::uint32_t RecordReader::next() {
    if (next_ > stream_.size() || stream_.size() - next_ < recordHeaderBytes) raiseDamaged();
    at_ = next_ + recordHeaderBytes;
    const std::size_t length = wordAt(stream_, next_ + 2);
    if (stream_.size() - at_ < length) raiseDamaged();
    const std::uint32_t kind = wordAt(stream_, next_);
    next_ = end_ = at_ + length;
    return kind;
}

bool RecordReader::isContinued() const {
    return stream_.size() - next_ >= recordHeaderBytes && wordAt(stream_, next_) == recordContinue;
}

void RecordReader::goOn() {
    if (!isContinued()) raiseDamaged();
    next();
}

bool RecordReader::holdsMore() const {
    return left() > 0 || isContinued();
}

std::string_view RecordReader::take(std::size_t bytes) {
    const std::string_view taken = stream_.substr(at_, std::min(bytes, left()));
    at_ += taken.size();
    return taken;
}

std::uint32_t RecordReader::byte() {
    while (left() == 0) goOn();
    return static_cast<unsigned char>(stream_[at_++]);
}

std::uint32_t RecordReader::word() {
    const std::uint32_t low = byte();
    return low | byte() << 8;
}

std::uint32_t RecordReader::doubleWord() {
    const std::uint32_t low = word();
    return low | word() << 16;
}

double RecordReader::number() {
    const std::uint64_t low = doubleWord();
    return std::bit_cast<double>(low | std::uint64_t{doubleWord()} << 32);
}

void RecordReader::skip(std::size_t bytes) {
    for (bytes -= take(bytes).size(); bytes > 0; bytes -= take(bytes).size()) goOn();
}

std::string RecordReader::text(std::size_t length, BiffVersion version) {
    if (version == BiffVersion::Excel5) {
        if (left() < length) raiseDamaged();
        return fromWindows1252(take(length));
    }
    std::uint32_t flags = byte();
    const std::size_t runs = (flags & textRich) != 0 ? word() : 0;
    const std::size_t extension = (flags & textExtended) != 0 ? doubleWord() : 0;
    std::u16string units;
    while (units.size() < length) {
        // Only the characters have flags of their own again in a continuation.
        while (left() == 0) {
            goOn();
            flags = byte();
        }
        const std::size_t width = (flags & textWide) != 0 ? 2 : 1;
        if (left() < width) raiseDamaged();
        const std::string_view part = take(std::min(left() / width, length - units.size()) * width);
        for (std::size_t at = 0; at < part.size(); at += width) {
            units.push_back(
                static_cast<char16_t>(width == 2 ? wordAt(part, at) : static_cast<unsigned char>(part[at])));
        }
    }
    skip(runs * formattingRunBytes);
    skip(extension);
    return toUtf8(units);
}

std::string RecordReader::longText(BiffVersion version) {
    const std::size_t length = word();
    return length > 0 ? text(length, version) : "";
}

}  // namespace pxtarvo::portable
