#pragma once

#include <cstdint>
#include <string_view>

namespace pxtarvo::portable {

/// Whether a cell with the built-in number format `index` shows a date or a time.
bool isBuiltInDateFormat(std::uint32_t index);

/// The same of a format as the user wrote it: it has a letter of dates outside quotes, escapes and brackets,
/// or counts hours, minutes or seconds in brackets.
bool isDateFormat(std::string_view format);

}  // namespace pxtarvo::portable
