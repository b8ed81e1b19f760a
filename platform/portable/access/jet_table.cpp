#include "platform/portable/access/jet_table.h"

#include <algorithm>

namespace pxtarvo::portable {

namespace {

// Every page of a definition names the next one, 0 for none, and repeats the header in front of it.
constexpr std::size_t nextPageOffset = 4;
constexpr std::size_t pageHeaderBytes = 8;
// 255 columns with names of 64 characters take 10 pages; the indexes behind them are of no use here.
constexpr int mostPages = 16;

// Of the definition: what precedes the indexes' counts of rows, the columns and the columns' names.
constexpr std::size_t rowCountOffset = 16;
constexpr std::size_t variableColumnCountOffset = 43;
constexpr std::size_t columnCountOffset = 45;
constexpr std::size_t indexCountOffset = 51;
constexpr std::size_t pageMapOffset = 55;
constexpr std::size_t firstIndexOffset = 63;
constexpr std::size_t indexBytes = 12;

// Of a column.
constexpr std::size_t columnBytes = 25;
constexpr std::size_t numberOffset = 5;
constexpr std::size_t variableNumberOffset = 7;
constexpr std::size_t scaleOffset = 12;
constexpr std::size_t flagsOffset = 15;
constexpr std::size_t fixedOffsetOffset = 21;
constexpr std::size_t sizeOffset = 23;
constexpr unsigned char fixedFlag = 1;

class Definition {
  public:
    Definition(const JetFile& file, std::uint32_t number) : file_(file) {
        JetPage page;
        for (int pages = 0; number != 0 && pages < mostPages; ++pages) {
            file.readPage(number, page);
            if (!page.is(JetPageKind::Definition)) file.raiseDamaged();
            const JetBytes bytes = page.bytes();
            const JetBytes added = bytes_.empty() ? bytes : bytes.subspan(pageHeaderBytes);
            bytes_.insert(bytes_.end(), added.begin(), added.end());
            number = littleEndian32(&bytes[nextPageOffset]);
        }
    }

    JetBytes bytes(std::uint64_t offset, std::size_t size) const {
        if (offset + size > bytes_.size()) file_.raiseDamaged();
        return JetBytes(bytes_).subspan(static_cast<std::size_t>(offset), size);
    }
    std::uint32_t number16(std::uint64_t offset) const { return littleEndian16(bytes(offset, 2).data()); }
    std::uint32_t number32(std::uint64_t offset) const { return littleEndian32(bytes(offset, 4).data()); }

  private:
    const JetFile& file_;
    std::vector<unsigned char> bytes_;
};

}  // namespace

JetTable readJetTable(const JetFile& file, std::uint32_t definitionPage) {
    const Definition definition(file, definitionPage);
    JetTable table{.definitionPage = definitionPage,
                   .rowCount = definition.number32(rowCountOffset),
                   .hasVariableColumns = definition.number16(variableColumnCountOffset) > 0,
                   .columns = std::vector<JetColumn>(definition.number16(columnCountOffset)),
                   .pages = JetPageMap(
                       file, JetRowAddress(definition.bytes(pageMapOffset, JetRowAddress::size).data()))};

    std::uint64_t offset =
        firstIndexOffset + std::uint64_t{indexBytes} * definition.number32(indexCountOffset);
    for (JetColumn& column : table.columns) {
        const JetBytes bytes = definition.bytes(offset, columnBytes);
        column.type = static_cast<JetType>(bytes[0]);
        column.fixed = (bytes[flagsOffset] & fixedFlag) != 0;
        column.number = littleEndian16(&bytes[numberOffset]);
        column.fixedOffset = littleEndian16(&bytes[fixedOffsetOffset]);
        column.size = littleEndian16(&bytes[sizeOffset]);
        column.variableNumber = littleEndian16(&bytes[variableNumberOffset]);
        column.scale = bytes[scaleOffset];
        offset += columnBytes;
    }
    for (JetColumn& column : table.columns) {
        const std::size_t length = definition.number16(offset);
        auto name = jetText(definition.bytes(offset + 2, length));
        if (!name) file.raiseDamaged();
        column.name = *std::move(name);
        offset += 2 + length;
    }
    std::ranges::stable_sort(table.columns, {}, &JetColumn::number);
    return table;
}

}  // namespace pxtarvo::portable
