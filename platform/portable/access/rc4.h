#pragma once

#include <span>

namespace pxtarvo::portable {

/// The RC4 stream of `key` (not empty) over `bytes`: encodes them, and decodes them again.
void applyRc4(std::span<const unsigned char> key, std::span<unsigned char> bytes);

}  // namespace pxtarvo::portable
