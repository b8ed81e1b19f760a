#include "benchmarks/runs/workbook_writer.h"

#include <bit>
#include <fstream>
#include <stdexcept>

namespace pxtarvo::benchmarks {

namespace {

// Records of the workbook: kind and length (2 bytes each), then that many bytes.

enum RecordKind : std::uint32_t {
    recordEnd = 0x000A,
    recordSheet = 0x0085,
    recordNumber = 0x0203,
    recordLabel = 0x0204,
    recordBegin = 0x0809,
};
constexpr std::uint32_t biff8 = 0x0600;
constexpr std::uint32_t wholeWorkbook = 0x0005;
constexpr std::uint32_t worksheet = 0x0010;

// Sectors of the compound file.

constexpr std::size_t sectorSize = 512;
constexpr std::size_t entriesInSector = sectorSize / 4;
constexpr std::size_t tablesInHeader = 109;
constexpr std::uint32_t freeSector = 0xFFFFFFFF;
constexpr std::uint32_t endOfChain = 0xFFFFFFFE;
constexpr std::uint32_t tableSector = 0xFFFFFFFD;
/// A shorter stream would lie among the small ones.
constexpr std::size_t smallestStream = 4096;

/// Bytes, numbers little-endian.
class Bytes {
  public:
    Bytes& number(std::uint64_t value, int size) {
        for (; size > 0; --size, value >>= 8) bytes_.push_back(static_cast<char>(value & 0xFF));
        return *this;
    }
    Bytes& word(std::uint64_t value) { return number(value, 2); }
    Bytes& doubleWord(std::uint64_t value) { return number(value, 4); }
    Bytes& text(std::string_view value) {
        bytes_.append(value);
        return *this;
    }
    Bytes& wide(std::string_view ascii) {
        for (const char character : ascii) word(static_cast<unsigned char>(character));
        return *this;
    }
    Bytes& fill(std::size_t size, char with = '\0') {
        bytes_.resize(size, with);
        return *this;
    }
    const std::string& get() const { return bytes_; }

  private:
    std::string bytes_;
};

std::string record(RecordKind kind, const Bytes& data) {
    return Bytes().word(kind).word(data.get().size()).text(data.get()).get();
}

std::string begin(std::uint32_t what) {
    return record(recordBegin, Bytes().word(biff8).word(what).fill(16));
}

/// A directory entry of 128 bytes.
std::string entry(std::string_view name, int kind, std::uint32_t child, std::uint32_t start,
                  std::size_t size) {
    Bytes bytes;
    bytes.wide(name).fill(64).word(2 * (name.size() + 1)).number(kind, 1).number(1, 1);
    bytes.doubleWord(freeSector).doubleWord(freeSector).doubleWord(child);
    return bytes.fill(116).doubleWord(start).doubleWord(size).fill(128).get();
}

}  // namespace

WorkbookWriter::WorkbookWriter() {
    const std::string_view sheet = "Hoja1";
    const auto globals = [&](std::size_t sheetStart) {
        const Bytes place =
            Bytes().doubleWord(sheetStart).word(0).number(sheet.size(), 1).number(0, 1).text(sheet);
        return begin(wholeWorkbook) + record(recordSheet, place) + record(recordEnd, {});
    };
    stream_ = globals(globals(0).size()) + begin(worksheet);
}

void WorkbookWriter::number(std::uint32_t row, std::uint32_t column, double value) {
    stream_ += record(recordNumber,
                      Bytes().word(row).word(column).word(0).number(std::bit_cast<std::uint64_t>(value), 8));
}

void WorkbookWriter::text(std::uint32_t row, std::uint32_t column, std::string_view value) {
    const Bytes place = Bytes().word(row).word(column).word(0).word(value.size()).number(0, 1).text(value);
    stream_ += record(recordLabel, place);
}

void WorkbookWriter::save(const std::string& path) {
    std::string stream = stream_ + record(recordEnd, {});
    const std::size_t size = std::max(stream.size(), smallestStream);
    const std::size_t sectors = (size + sectorSize - 1) / sectorSize;
    stream.resize(sectors * sectorSize);

    // The file: header, tables of sectors, one sector of directory, the stream.
    std::size_t tables = 1;
    while (tables * entriesInSector < tables + 1 + sectors) ++tables;
    if (tables > tablesInHeader) throw std::runtime_error("the workbook is too large");
    const std::uint32_t directory = static_cast<std::uint32_t>(tables);

    Bytes header;
    header.number(0xE11AB1A1E011CFD0, 8).fill(24).word(0x3E).word(3).word(0xFFFE).word(9).word(6).fill(44);
    header.doubleWord(tables).doubleWord(directory).doubleWord(0).doubleWord(smallestStream);
    header.doubleWord(endOfChain).doubleWord(0).doubleWord(endOfChain).doubleWord(0);
    for (std::size_t table = 0; table < tables; ++table) header.doubleWord(table);
    header.fill(sectorSize, '\xFF');

    Bytes table;
    for (std::size_t at = 0; at < tables; ++at) table.doubleWord(tableSector);
    table.doubleWord(endOfChain);
    for (std::size_t at = 1; at < sectors; ++at) table.doubleWord(directory + 1 + at);
    table.doubleWord(endOfChain).fill(tables * sectorSize, '\xFF');

    Bytes entries;
    entries.text(entry("Root Entry", 5, 1, endOfChain, 0));
    entries.text(entry("Workbook", 2, freeSector, directory + 1, size)).fill(sectorSize);

    std::ofstream file(path, std::ios::binary);
    file << header.get() << table.get() << entries.get() << stream;
    if (!file.flush()) throw std::runtime_error("the workbook cannot be written");
}

}  // namespace pxtarvo::benchmarks
