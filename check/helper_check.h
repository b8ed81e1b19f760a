#pragma once

// The check of the host's field helper.

#include "check/asked_object.h"

namespace pxtarvo::check {

/// Creates the helper as a window does and calls it with a text box of this program's own. `connection` is
/// the host's; without one the helper's is set to Nothing. Buscar, which waits for a user, is only looked
/// for. Raises nothing.
void checkHelper(const windows::Dispatch& connection, Findings& findings);

}  // namespace pxtarvo::check
