// Any text as the script of a user's actions.

#include <cstddef>
#include <cstdint>
#include <sstream>
#include <stdexcept>
#include <string>

#include "devhost/user_script.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::istringstream text(std::string(reinterpret_cast<const char*>(data), size));
    try {
        pxtarvo::devhost::readScript(text);
    } catch (const std::runtime_error&) {  // names the line that says nothing
    }
    return 0;
}
