#include "devhost/report/report_numbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>

namespace pxtarvo::devhost {

namespace {

constexpr std::size_t groupSize = 3;

std::string fixed(double value, int decimals) {
    char digits[400];
    const auto end =
        std::to_chars(std::begin(digits), std::end(digits), value, std::chars_format::fixed, decimals).ptr;
    std::string text(digits, end);
    std::ranges::replace(text, '.', ',');
    return text;
}

/// Puts points between the thousands of the whole part.
std::string grouped(std::string text) {
    const std::size_t sign = text.starts_with('-') ? 1 : 0;
    std::size_t at = std::min(text.find(','), text.size());
    while (at > sign + groupSize) {
        at -= groupSize;
        text.insert(at, 1, '.');
    }
    return text;
}

std::string plain(double value) {
    constexpr int fewest = 2;
    constexpr int most = 4;
    std::string text = fixed(value, most);
    for (int decimals = most; decimals > fewest && text.ends_with('0'); --decimals) text.pop_back();
    return text;
}

}  // namespace

std::string wholeNumber(std::int64_t value) {
    return grouped(std::to_string(value));
}

std::string amount(double value) {
    return grouped(plain(value));
}

std::string money(double value) {
    constexpr int cents = 2;
    return grouped(fixed(value, cents));
}

std::string units(double value) {
    std::string text = plain(value);
    constexpr std::string_view noFraction = ",00";
    if (text.ends_with(noFraction)) text.resize(text.size() - noFraction.size());
    return grouped(text);
}

std::string amount(const std::optional<double>& value) {
    return value ? amount(*value) : std::string();
}

std::string plainAmount(const std::optional<double>& value) {
    return value ? plain(*value) : std::string();
}

std::string plainPercentage(double from, double to) {
    if (from == 0) return {};
    const std::string text = fixed((to - from) / std::abs(from) * 100, 1);
    return text == "-0,0" ? "0,0" : text;
}

std::string percentage(double from, double to) {
    std::string text = grouped(plainPercentage(from, to));
    if (text.empty()) return text;
    if (to > from) text.insert(0, 1, '+');
    return text + " %";
}

}  // namespace pxtarvo::devhost
