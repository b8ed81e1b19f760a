#include "devhost/wine/screen/machine_program.h"

#include <spawn.h>

extern char** environ;

namespace pxtarvo::devhost {

pid_t startProgram(std::vector<std::string> arguments) {
    std::vector<char*> list;
    for (std::string& argument : arguments) list.push_back(argument.data());
    list.push_back(nullptr);
    pid_t child = 0;
    return posix_spawnp(&child, list.front(), nullptr, nullptr, list.data(), environ) == 0 ? child : 0;
}

}  // namespace pxtarvo::devhost
