#include "platform/portable/workbook/compound_file.h"

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/portable/workbook/refusals.h"
#include "platform/values/text.h"

namespace pxtarvo::portable {

namespace {

constexpr std::string_view signature = "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1";
constexpr std::size_t headerBytes = 512;
constexpr std::size_t directoryEntryBytes = 128;
constexpr std::uint32_t lastSectorNumber = 0xFFFFFFFA;  // above it: markers
constexpr std::size_t miniSectorBytes = 64;
constexpr unsigned char streamEntry = 2;

// Offsets in the header.
constexpr std::size_t sectorShiftAt = 30;
constexpr std::size_t miniSectorShiftAt = 32;
constexpr std::size_t directoryStartAt = 48;
constexpr std::size_t smallestRegularStreamAt = 56;
constexpr std::size_t miniTableStartAt = 60;
constexpr std::size_t tableListStartAt = 68;
constexpr std::size_t tableListAt = 76;

// Offsets in a directory entry.
constexpr std::size_t entryNameBytesAt = 64;
constexpr std::size_t entryKindAt = 66;
constexpr std::size_t entryLeftAt = 68;
constexpr std::size_t entryRightAt = 72;
constexpr std::size_t entryChildAt = 76;
constexpr std::size_t entryStartAt = 116;
constexpr std::size_t entrySizeAt = 120;

/// 0 beyond the end.
std::uint32_t number(std::string_view bytes, std::size_t offset, std::size_t width) {
    std::uint32_t result = 0;
    for (std::size_t i = 0; i < width && offset + i < bytes.size(); ++i) {
        result |= static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[offset + i])) << 8 * i;
    }
    return result;
}

class CompoundFile {
  public:
    explicit CompoundFile(std::string_view file) : file_(file) {
        const std::uint32_t shift = number(file, sectorShiftAt, 2);
        if (file.size() < headerBytes || !isCompoundFile(file) || (shift != 9 && shift != 12) ||
            number(file, miniSectorShiftAt, 2) != 6) {
            return;
        }
        sectorBytes_ = std::size_t{1} << shift;
        readTable();
        directory_ = chain(number(file, directoryStartAt, 4));
    }

    std::optional<std::string> stream(std::string_view name) const {
        // The entries of the root make up a tree of siblings.
        std::vector<bool> seen(directory_.size() / directoryEntryBytes);
        std::vector<std::uint32_t> ahead;
        if (!seen.empty()) ahead.push_back(number(entry(0), entryChildAt, 4));
        while (!ahead.empty()) {
            const std::uint32_t index = ahead.back();
            ahead.pop_back();
            if (index >= seen.size() || seen[index]) continue;
            seen[index] = true;
            if (isStreamNamed(entry(index), name)) return content(entry(index));
            ahead.push_back(number(entry(index), entryLeftAt, 4));
            ahead.push_back(number(entry(index), entryRightAt, 4));
        }
        return std::nullopt;
    }

  private:
    std::string_view entry(std::size_t index) const {
        return std::string_view(directory_).substr(index * directoryEntryBytes, directoryEntryBytes);
    }

    /// Names are UTF-16, a closing zero counted.
    static bool isStreamNamed(std::string_view entry, std::string_view name) {
        if (static_cast<unsigned char>(entry[entryKindAt]) != streamEntry) return false;
        if (number(entry, entryNameBytesAt, 2) != 2 * (name.size() + 1)) return false;
        std::string ascii;
        for (std::size_t i = 0; i < name.size(); ++i) {
            const std::uint32_t unit = number(entry, 2 * i, 2);
            ascii.push_back(unit < 0x80 ? static_cast<char>(unit) : '?');
        }
        return equalIgnoringAsciiCase(ascii, name);
    }

    std::string content(std::string_view entry) const {
        const std::uint32_t start = number(entry, entryStartAt, 4);
        const std::size_t size = number(entry, entrySizeAt, 4);
        std::string bytes =
            size < number(file_, smallestRegularStreamAt, 4) ? miniChain(start) : chain(start);
        if (bytes.size() < size) raiseDamaged();
        bytes.resize(size);
        return bytes;
    }

    std::string_view sector(std::uint32_t index) const {
        const std::uint64_t offset = (std::uint64_t{index} + 1) * sectorBytes_;
        return offset < file_.size() ? file_.substr(static_cast<std::size_t>(offset), sectorBytes_)
                                     : std::string_view();
    }

    /// Which sector follows each one: the sectors that hold this table are listed in the header and, in
    /// larger files, in a chain of sectors whose last number is the next one.
    void readTable() {
        std::string list(file_.substr(tableListAt, headerBytes - tableListAt));
        std::uint32_t next = number(file_, tableListStartAt, 4);
        for (std::size_t left = file_.size() / sectorBytes_; next < lastSectorNumber && left > 0; --left) {
            const std::string_view more = sector(next);
            if (more.size() < sectorBytes_) break;
            list.append(more.substr(0, sectorBytes_ - 4));
            next = number(more, sectorBytes_ - 4, 4);
        }
        for (std::size_t at = 0; at + 4 <= list.size(); at += 4) {
            const std::uint32_t index = number(list, at, 4);
            if (index < lastSectorNumber && table_.size() <= file_.size()) table_.append(sector(index));
        }
    }

    /// The sectors from `start` on, at most as many as there are.
    std::string chain(std::uint32_t start) const {
        std::string bytes;
        while (start < lastSectorNumber && bytes.size() <= file_.size()) {
            const std::string_view next = sector(start);
            if (next.empty() || std::size_t{start} * 4 >= table_.size()) break;
            bytes.append(next);
            start = number(table_, std::size_t{start} * 4, 4);
        }
        return bytes;
    }

    /// Small streams lie in small sectors of a stream of their own, which is the root's.
    std::string miniChain(std::uint32_t start) const {
        const std::string miniStream = chain(number(entry(0), entryStartAt, 4));
        const std::string miniTable = chain(number(file_, miniTableStartAt, 4));
        std::string bytes;
        while (start < lastSectorNumber && bytes.size() <= miniStream.size()) {
            const std::size_t offset = std::size_t{start} * miniSectorBytes;
            if (offset >= miniStream.size() || std::size_t{start} * 4 >= miniTable.size()) break;
            bytes.append(miniStream, offset, miniSectorBytes);
            start = number(miniTable, std::size_t{start} * 4, 4);
        }
        return bytes;
    }

    std::string_view file_;
    std::size_t sectorBytes_ = headerBytes;
    std::string table_;
    std::string directory_;
};

}  // namespace

bool isCompoundFile(std::string_view file) {
    return file.starts_with(signature);
}

std::optional<std::string> compoundStream(std::string_view file, std::string_view name) {
    return CompoundFile(file).stream(name);
}

}  // namespace pxtarvo::portable
