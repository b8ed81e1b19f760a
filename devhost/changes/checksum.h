#pragma once

#include <string>
#include <string_view>

namespace pxtarvo::devhost {

/// The SHA-256 of the bytes, in hexadecimal digits.
std::string sha256(std::string_view bytes);

}  // namespace pxtarvo::devhost
