#include "benchmarks/runs/workbook_writer.h"

#include <bit>
#include <cstdint>
#include <fstream>
#include <stdexcept>

namespace pxtarvo::benchmarks {

namespace {

enum RecordKind {
    recordEnd = 0x000A,
    recordSheet = 0x0085,
    recordNumber = 0x0203,
    recordLabel = 0x0204,
    recordBegin = 0x0809,
};
constexpr int biff8 = 0x0600;
constexpr int wholeWorkbook = 0x0005;
constexpr int worksheet = 0x0010;

// Sectors of the compound file.

constexpr std::size_t sectorSize = 512;
constexpr std::size_t entriesInSector = sectorSize / 4;
constexpr std::size_t tablesInHeader = 109;
constexpr std::uint32_t freeSector = 0xFFFFFFFF;
constexpr std::uint32_t endOfChain = 0xFFFFFFFE;
constexpr std::uint32_t tableSector = 0xFFFFFFFD;
/// A shorter stream would lie among the small ones.
constexpr std::size_t smallestStream = 4096;

/// The bytes of a number, the lowest first.
std::string bytes(std::uint64_t value, int size) {
    std::string text;
    for (; size > 0; --size, value >>= 8) text += static_cast<char>(value & 0xFF);
    return text;
}
template <class... Values>
std::string words(Values... values) {
    return (bytes(static_cast<std::uint64_t>(values), 2) + ...);
}
template <class... Values>
std::string doubleWords(Values... values) {
    return (bytes(static_cast<std::uint64_t>(values), 4) + ...);
}
/// Made as long as `size`.
std::string filled(std::string text, std::size_t size, char with = '\0') {
    text.resize(size, with);
    return text;
}

std::string record(RecordKind kind, const std::string& data) {
    return words(kind, data.size()) + data;
}
std::string begin(int what) {
    return record(recordBegin, filled(words(biff8, what), 16));
}
std::string end() {
    return record(recordEnd, {});
}

/// The records of the workbook up to its sheet, which begins at this place.
std::string globals(std::size_t sheetStart) {
    const std::string_view name = "Hoja1";
    return begin(wholeWorkbook) +
           record(recordSheet, doubleWords(sheetStart) + words(0, name.size()).append(name)) + end();
}

/// A directory entry.
std::string entry(std::string_view name, int kind, std::uint32_t child, std::uint32_t start,
                  std::size_t size) {
    std::string text;
    for (const char character : name) text += words(character);
    text = filled(text, 64) + words(2 * (name.size() + 1)) + bytes(kind, 1) + bytes(1, 1);
    text = filled(text + doubleWords(freeSector, freeSector, child), 116);
    return filled(text + doubleWords(start, size), 128);
}

}  // namespace

std::string numberCell(int row, int column, double value) {
    return record(recordNumber, words(row, column, 0) + bytes(std::bit_cast<std::uint64_t>(value), 8));
}

std::string textCell(int row, int column, std::string_view value) {
    return record(recordLabel, (words(row, column, 0, value.size()) + bytes(0, 1)).append(value));
}

void saveWorkbook(const std::string& path, std::string_view cells) {
    std::string stream = globals(globals(0).size()) + begin(worksheet).append(cells) + end();
    const std::size_t size = std::max(stream.size(), smallestStream);
    const std::size_t sectors = (size + sectorSize - 1) / sectorSize;
    stream.resize(sectors * sectorSize);

    // The file: header, tables of sectors, one sector of directory, the stream.
    std::size_t tables = 1;
    while (tables * entriesInSector < tables + 1 + sectors) ++tables;
    if (tables > tablesInHeader) throw std::runtime_error("the workbook is too large");

    std::string header = filled(bytes(0xE11AB1A1E011CFD0, 8), 24) + words(0x3E, 3, 0xFFFE, 9, 6);
    header =
        filled(header, 44) + doubleWords(tables, tables, 0, smallestStream, endOfChain, 0, endOfChain, 0);
    std::string table;
    for (std::size_t at = 0; at < tables; ++at) {
        header += doubleWords(at);
        table += doubleWords(tableSector);
    }
    table += doubleWords(endOfChain);
    for (std::size_t at = 1; at < sectors; ++at) table += doubleWords(tables + 1 + at);
    table += doubleWords(endOfChain);

    std::ofstream file(path, std::ios::binary);
    file << filled(header, sectorSize, '\xFF') << filled(table, tables * sectorSize, '\xFF')
         << filled(
                entry("Root Entry", 5, 1, endOfChain, 0) + entry("Workbook", 2, freeSector, tables + 1, size),
                sectorSize)
         << stream;
    if (!file.flush()) throw std::runtime_error("the workbook cannot be written");
}

}  // namespace pxtarvo::benchmarks
