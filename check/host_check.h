#pragma once

// The whole check.

#include "check/findings.h"
#include "platform/windows/automation/dispatch.h"

namespace pxtarvo::check {

/// Checks a host's context (none where it is empty), its field helper and the machine, in the calling
/// thread's apartment. Raises nothing but what memory raises.
Findings checkHost(const windows::Dispatch& context);

}  // namespace pxtarvo::check
