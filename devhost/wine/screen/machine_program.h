#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace pxtarvo::devhost {

/// Starts a program of this machine by its name, the first of the arguments; 0 when it cannot be started. The
/// caller waits for its end.
pid_t startProgram(std::vector<std::string> arguments);

}  // namespace pxtarvo::devhost
