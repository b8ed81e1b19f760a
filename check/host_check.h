#pragma once

// The check of a host, whole and in its parts.

#include "check/findings.h"
#include "platform/windows/automation/dispatch.h"

namespace pxtarvo::check {

/// Checks a host's context (none where it is empty), its field helper and the machine, in the calling
/// thread's apartment. Raises nothing but what memory raises.
Findings checkHost(const windows::Dispatch& context);

// The parts. What each finds goes into the findings; none raises anything.

/// Asks every member that the plug-in uses of a context, and of what it answers with, as the plug-in asks it.
/// Writes a trial article and a trial stock row through it inside a transaction, which is rolled back.
/// Answers with the connection, empty where there is none.
windows::Dispatch checkContext(const windows::Dispatch& context, Findings& findings);

/// Creates the host's field helper as a window does and calls it with a text box of this program's own.
/// `connection` is the host's; without one the helper's is set to Nothing. Buscar, which waits for a user, is
/// only looked for.
void checkHelper(const windows::Dispatch& connection, Findings& findings);

/// What the plug-in needs of the machine beside the host: the Access provider, the spreadsheet application,
/// which is not started, and the folders under C:\TARVO.
void checkMachine(Findings& findings);

}  // namespace pxtarvo::check
