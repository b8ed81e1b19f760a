#include "platform/portable/access/jet_page_map.h"

#include <algorithm>

// A map begins with its kind. A short one goes on with the number of its first page (4 bytes) and a bit for
// each page from that one on, set for the table's own; a long one with the numbers of pages (4 bytes each, 0
// for none) which hold such bits behind a header, from page 0 on.

namespace pxtarvo::portable {

namespace {

enum Kind : unsigned char { Short, Long };
constexpr std::size_t kindBytes = 1;
constexpr std::size_t numberBytes = 4;
constexpr std::size_t partHeaderBytes = 4;
constexpr std::uint64_t pagesInPart = (jetPageSize - partHeaderBytes) * 8;

/// The first page from `from` on whose bit is set, 0 for none. The first bit is that of page `first`.
std::uint64_t search(JetBytes bits, std::uint64_t first, std::uint64_t from) {
    for (std::uint64_t bit = std::max(first, from) - first; bit < 8 * bits.size(); ++bit) {
        const unsigned char byte = bits[bit / 8];
        if (byte == 0) {
            bit |= 7;
        } else if ((byte >> bit % 8 & 1) != 0) {
            return first + bit;
        }
    }
    return 0;
}

}  // namespace

JetPageMap::JetPageMap(const JetFile& file, JetRowAddress address) {
    file.readPage(address.page, part_);
    const auto row = part_.row(address.row);
    if (!row || row->bytes.size() < kindBytes + numberBytes || row->bytes[0] > Long) file.raiseDamaged();
    map_.assign(row->bytes.begin(), row->bytes.end());
}

std::uint64_t JetPageMap::next(const JetFile& file, std::uint64_t after) {
    const std::uint64_t from = after + 1;
    const JetBytes content = JetBytes(map_).subspan(kindBytes);
    if (map_[0] == Short) return search(content.subspan(numberBytes), littleEndian32(content.data()), from);
    for (std::uint64_t part = from / pagesInPart; part < content.size() / numberBytes; ++part) {
        const std::uint32_t number = littleEndian32(&content[part * numberBytes]);
        if (number == 0) continue;
        if (number != partNumber_) {
            partNumber_ = 0;
            file.readPage(number, part_);
            if (!part_.is(JetPageKind::UsageMap)) file.raiseDamaged();
            partNumber_ = number;
        }
        const std::uint64_t page = search(part_.bytes().subspan(partHeaderBytes), part * pagesInPart, from);
        if (page != 0) return page;
    }
    return 0;
}

}  // namespace pxtarvo::portable
