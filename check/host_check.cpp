#include "check/host_check.h"

namespace pxtarvo::check {

Findings checkHost(const windows::Dispatch& context) {
    Findings findings;
    windows::Dispatch connection;
    if (context) connection = checkContext(context, findings);
    checkHelper(connection, findings);
    checkMachine(findings);
    return findings;
}

}  // namespace pxtarvo::check
