#pragma once

// The sum of two values.

#include "platform/values/locale.h"
#include "platform/values/variant.h"

namespace pxtarvo {

/// The sum by the platform's rules: Null with anything is Null, two texts join, else a number of the wider
/// type (Byte, Integer, Long, Single, Double, Currency, Decimal, Date; a text counts as Double), or of the
/// next that holds the sum. Empty beside a text gives the text.
Variant sum(const Variant& a, const Variant& b, const Locale& locale);

}  // namespace pxtarvo
