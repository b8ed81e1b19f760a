#pragma once

// What the host's server says of a statement that it cannot take.

#include <string_view>

#include "platform/values/runtime_error.h"

namespace pxtarvo::portable {

RuntimeError noSuchTable(std::string_view name);
RuntimeError noSuchColumn(std::string_view name);
RuntimeError wrongSyntaxNear(std::string_view word);

}  // namespace pxtarvo::portable
