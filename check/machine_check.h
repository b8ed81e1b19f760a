#pragma once

// The check of what the plug-in needs of the machine beside the host.

#include "check/findings.h"

namespace pxtarvo::check {

/// The Access provider, the spreadsheet application, the folders under C:\TARVO. The application is not
/// started. Raises nothing.
void checkMachine(Findings& findings);

}  // namespace pxtarvo::check
