#include "platform/portable/terminal.h"

#include <unistd.h>

namespace pxtarvo::portable {

bool standardErrorIsTerminal() {
    return isatty(STDERR_FILENO) == 1;
}

}  // namespace pxtarvo::portable
