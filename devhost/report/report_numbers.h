#pragma once

// Numbers as the dealer reads them: a comma before the decimals, points between the thousands.

#include <cstdint>
#include <optional>
#include <string>

namespace pxtarvo::devhost {

std::string wholeNumber(std::int64_t value);
/// With two decimals, or as many more, up to four, as the value has.
std::string amount(double value);
/// With two decimals, for sums of money.
std::string money(double value);
/// With as many decimals as it has, up to four: "12", "2,5".
std::string units(double value);
/// Empty where there is none.
std::string amount(const std::optional<double>& value);
/// From one price to the other: "+12,5 %"; empty where the first is zero.
std::string percentage(double from, double to);
/// The same without points between the thousands and without a unit, as a spreadsheet reads it.
std::string plainAmount(const std::optional<double>& value);
std::string plainPercentage(double from, double to);

}  // namespace pxtarvo::devhost
