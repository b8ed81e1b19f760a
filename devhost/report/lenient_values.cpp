#include "devhost/report/lenient_values.h"

#include "platform/values/conversion.h"
#include "platform/values/runtime_error.h"

namespace pxtarvo::devhost {

namespace {

template <class Result, class Convert>
Result unlessRaised(const Convert& convert) {
    try {
        return convert();
    } catch (const RuntimeError&) {
        return Result();
    }
}

}  // namespace

std::string textOf(const Variant& value) {
    return unlessRaised<std::string>([&] { return joinedText(value, spanishLocale()); });
}

std::optional<double> numberOf(const Variant& value) {
    return unlessRaised<std::optional<double>>(
        [&] { return std::optional(toDouble(value, spanishLocale())); });
}

}  // namespace pxtarvo::devhost
