#pragma once

#include <string_view>

namespace pxtarvo::devhost {

/// What a command leaves the program with.
enum ExitStatus {
    exitDone = 0,          ///< it ended as its success message says
    exitFailed = 1,        ///< it ended otherwise
    exitWrongCommand = 2,  ///< the command line is wrong
    exitRefused = 3,       ///< it ended as its success message says, but the host refused some of its writes
};

/// Writes a line on standard error under the program's name.
void tell(std::string_view line);
/// Writes the reason as the last line on standard error; gives back `status`.
int leave(ExitStatus status, std::string_view reason);

}  // namespace pxtarvo::devhost
