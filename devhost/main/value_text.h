#pragma once

#include <string>
#include <string_view>

#include "platform/values/variant.h"

namespace pxtarvo::devhost {

/// The text with "\t", "\n", "\r" and "\\" in place of the characters that end a cell or a line, and of the
/// backslash.
std::string inOneLine(std::string_view text);

/// A value for other programs to read: NULL, numbers with a point, 0 or 1, dates as YYYY-MM-DD HH:MM:SS,
/// texts in one line.
std::string valueText(const Variant& value);

}  // namespace pxtarvo::devhost
