#pragma once

#include <cstdint>
#include <vector>

#include "platform/portable/access/jet_file.h"

namespace pxtarvo::portable {

/// Which pages of a file are a table's own.
class JetPageMap {
  public:
    /// The map lies in the file as a row of a page. Raises -2147467259 when it is damaged.
    JetPageMap(const JetFile& file, JetRowAddress address);

    /// The next page after page `after` (0 to begin), or 0 after the last. Raises -2147467259 when a part of
    /// the map is not in the file.
    std::uint64_t next(const JetFile& file, std::uint64_t after);

  private:
    std::vector<unsigned char> map_;
    JetPage part_;  ///< of a map in several pages, the one at partNumber_
    std::uint32_t partNumber_ = 0;
};

}  // namespace pxtarvo::portable
