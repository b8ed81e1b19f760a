#include "platform/portable/workbook/number_format.h"

namespace pxtarvo::portable {

bool isBuiltInDateFormat(std::uint32_t index) {
    return (index >= 14 && index <= 22) || (index >= 27 && index <= 36) || (index >= 45 && index <= 47) ||
           (index >= 50 && index <= 58);
}

bool isDateFormat(std::string_view format) {
    for (std::size_t at = 0; at < format.size(); ++at) {
        switch (format[at]) {
            case '\\':  // the next character as it stands, its width or repeated
            case '_':
            case '*':
                ++at;
                break;
            case '"':
                at = format.find('"', at + 1);
                if (at == std::string_view::npos) return false;
                break;
            case '[': {
                const std::size_t end = format.find(']', at);
                if (end == std::string_view::npos) return false;
                const std::string_view inside = format.substr(at + 1, end - at - 1);
                if (!inside.empty() && inside.find_first_not_of("hHmMsS") == std::string_view::npos)
                    return true;
                at = end;
                break;
            }
            default:
                if (std::string_view("dDmMyYhHsS").find(format[at]) != std::string_view::npos) return true;
        }
    }
    return false;
}

}  // namespace pxtarvo::portable
