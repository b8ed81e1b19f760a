#pragma once

// Values as a report shows and weighs them: where the import would raise, these give nothing.

#include <optional>
#include <string>

#include "platform/values/variant.h"

namespace pxtarvo::devhost {

/// As the import would join it to a text; empty for a value that has no text, such as a spreadsheet's error.
std::string textOf(const Variant& value);
/// As the import would convert it.
std::optional<double> numberOf(const Variant& value);

}  // namespace pxtarvo::devhost
