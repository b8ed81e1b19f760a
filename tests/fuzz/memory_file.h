#pragma once

// What a reader is given as a file.

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace pxtarvo::tests {

/// The path of the one file of this program, which holds these bytes until the next call.
inline std::string memoryFile(const std::uint8_t* data, std::size_t size) {
    static const int file = memfd_create("file", 0);
    if (file < 0 || ftruncate(file, 0) != 0 || pwrite(file, data, size, 0) != static_cast<ssize_t>(size)) {
        std::abort();
    }
    return "/proc/self/fd/" + std::to_string(file);
}

}  // namespace pxtarvo::tests
