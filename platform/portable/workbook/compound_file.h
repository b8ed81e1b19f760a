#pragma once

#include <string>
#include <string_view>

namespace pxtarvo::portable {

/// The bytes of the stream `name` (ASCII) in the root of the compound file `file` (MS-CFB: a file system of
/// sectors in a file, as Office 97 to 2003 writes); empty when there is none or the file is malformed.
std::string compoundStream(std::string_view file, std::string_view name);

}  // namespace pxtarvo::portable
