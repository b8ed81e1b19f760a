#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace pxtarvo::portable {

/// Whether `file` begins as a compound file does (MS-CFB: a file system of sectors in a file, as Office 97 to
/// 2003 writes).
bool isCompoundFile(std::string_view file);

/// The bytes of the stream `name` (ASCII, its case ignored) in the root of the compound file `file`; nothing
/// when there is none, 1004 when its sectors do not hold it whole.
std::optional<std::string> compoundStream(std::string_view file, std::string_view name);

}  // namespace pxtarvo::portable
