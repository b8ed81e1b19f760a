#pragma once

// What the reader says of a file that it cannot read.

#include <cstdint>
#include <string>
#include <string_view>

namespace pxtarvo::portable {

/// The error number of everything that the spreadsheet application refuses.
inline constexpr std::int32_t spreadsheetRefused = 1004;

[[noreturn]] void raiseRefused(std::string description);
/// The workbook's own structure is broken or cut off.
[[noreturn]] void raiseDamaged();

/// What the bytes of a file without a workbook stream are, in Spanish, as the end of a sentence.
std::string_view foreignFormat(std::string_view file);

}  // namespace pxtarvo::portable
