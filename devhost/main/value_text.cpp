#include "devhost/main/value_text.h"

#include "platform/portable/dialect/column_types.h"
#include "platform/values/clock.h"
#include "platform/values/decimal_number.h"
#include "platform/values/number_text.h"
#include "platform/values/text.h"

namespace pxtarvo::devhost {

namespace {

template <class... Functions>
struct Overloaded : Functions... {
    using Functions::operator()...;
};
template <class... Functions>
Overloaded(Functions...) -> Overloaded<Functions...>;

constexpr std::string_view point = ".";

}  // namespace

std::string inOneLine(std::string_view text) {
    constexpr std::string_view special = "\t\n\r\\";
    constexpr std::string_view letters = "tnr\\";
    std::string line;
    for (const char c : text) {
        const std::size_t which = special.find(c);
        if (which != special.npos) line += '\\';
        line += which != special.npos ? letters[which] : c;
    }
    return line;
}

std::string valueText(const Variant& value) {
    return value.visit(Overloaded{
        [](Empty) { return std::string(); },
        [](Null) { return std::string("NULL"); },
        [](bool yes) { return std::string(yes ? "1" : "0"); },
        [](float number) { return plainNumber(number); },
        [](double number) { return plainNumber(number); },
        [](Currency amount) { return decimalText(decimalOf(amount), point); },
        [](const Decimal& number) { return decimalText(number, point); },
        [](Date date) {
            const portable::StoredDate stored = portable::storedDate(toCalendar(date));
            return std::string(stored.data(), stored.size());
        },
        [](const std::string& text) { return inOneLine(text); },
        [](ErrorValue error) { return std::to_string(error.code); },
        [](auto whole) { return plainNumber(static_cast<std::int32_t>(whole)); },
    });
}

}  // namespace pxtarvo::devhost
