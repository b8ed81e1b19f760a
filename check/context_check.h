#pragma once

// The check of a host's context object and connection.

#include "check/asked_object.h"

namespace pxtarvo::check {

/// Asks every member that the plug-in uses of a context, and of what it answers with, as the plug-in asks it.
/// Writes a trial article and a trial stock row through it inside a transaction, which is rolled back. What
/// is found goes into the findings; raises nothing. Answers with the connection, empty where there is none.
windows::Dispatch checkContext(const windows::Dispatch& context, Findings& findings);

}  // namespace pxtarvo::check
