#pragma once

// What libfreexl passes over in a workbook: cells that hold a logical value, an error or a formula.

#include <cstdint>
#include <map>
#include <string>
#include <tuple>

#include "platform/values/variant.h"

namespace pxtarvo::portable {

/// Base of the SCODEs of spreadsheet errors; the error's number in automation (2042 for #N/A) is added.
inline constexpr std::uint32_t spreadsheetErrorBase = 0x800A0000;

class BiffResults {
  public:
    /// Reads the workbook stream (BIFF5 or BIFF8) of the compound file at `place`. What is malformed there
    /// ends the reading without an error: telling a workbook from anything else is left to libfreexl.
    explicit BiffResults(const std::string& place);

    /// The value of the cell at 0-based sheet, row and column, or nullptr when it is none of these.
    const Variant* find(std::int32_t sheet, std::int32_t row, std::int32_t column) const;

  private:
    std::map<std::tuple<std::int32_t, std::int32_t, std::int32_t>, Variant> cells_;
};

}  // namespace pxtarvo::portable
