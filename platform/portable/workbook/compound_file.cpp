#include "platform/portable/workbook/compound_file.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace pxtarvo::portable {

namespace {

constexpr std::string_view signature = "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1";
constexpr std::size_t headerBytes = 512;
constexpr std::size_t directoryEntryBytes = 128;
constexpr std::uint32_t lastSectorNumber = 0xFFFFFFFA;  // above it: markers
constexpr unsigned char rootEntry = 5;

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
        const std::uint32_t miniShift = number(file, miniSectorShiftAt, 2);
        if (!file.starts_with(signature) || (shift != 9 && shift != 12) || miniShift != 6) return;
        sectorBytes_ = std::size_t{1} << shift;
        miniSectorBytes_ = std::size_t{1} << miniShift;
        readTable();
        directory_ = chain(number(file, directoryStartAt, 4));
    }

    std::string stream(std::string_view name) const {
        std::string miniStream;
        for (std::size_t at = 0; at + directoryEntryBytes <= directory_.size(); at += directoryEntryBytes) {
            const std::string_view entry = std::string_view(directory_).substr(at, directoryEntryBytes);
            const std::uint32_t start = number(entry, entryStartAt, 4);
            const std::size_t size = number(entry, entrySizeAt, 4);
            if (static_cast<unsigned char>(entry[entryKindAt]) == rootEntry) miniStream = chain(start);
            if (!isNamed(entry, name)) continue;
            std::string bytes = size < number(file_, smallestRegularStreamAt, 4)
                                    ? miniChain(miniStream, start)
                                    : chain(start);
            bytes.resize(std::min(bytes.size(), size));
            return bytes;
        }
        return {};
    }

  private:
    /// Names are UTF-16, a closing zero counted.
    static bool isNamed(std::string_view entry, std::string_view name) {
        if (number(entry, entryNameBytesAt, 2) != 2 * (name.size() + 1)) return false;
        for (std::size_t i = 0; i < name.size(); ++i) {
            if (number(entry, 2 * i, 2) != static_cast<unsigned char>(name[i])) return false;
        }
        return true;
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

    /// Small streams lie in small sectors of a stream of their own.
    std::string miniChain(std::string_view miniStream, std::uint32_t start) const {
        const std::string miniTable = chain(number(file_, miniTableStartAt, 4));
        std::string bytes;
        while (start < lastSectorNumber && bytes.size() <= miniStream.size()) {
            const std::size_t offset = std::size_t{start} * miniSectorBytes_;
            if (offset >= miniStream.size() || std::size_t{start} * 4 >= miniTable.size()) break;
            bytes.append(miniStream.substr(offset, miniSectorBytes_));
            start = number(miniTable, std::size_t{start} * 4, 4);
        }
        return bytes;
    }

    std::string_view file_;
    std::size_t sectorBytes_ = headerBytes;
    std::size_t miniSectorBytes_ = 0;
    std::string table_;
    std::string directory_;
};

}  // namespace

std::string compoundStream(std::string_view file, std::string_view name) {
    return CompoundFile(file).stream(name);
}

}  // namespace pxtarvo::portable
