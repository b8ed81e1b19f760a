#pragma once

namespace pxtarvo::portable {

/// Whether standard error is a terminal, on which a line can be written over.
bool standardErrorIsTerminal();

}  // namespace pxtarvo::portable
