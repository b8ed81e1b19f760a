#include "platform/windows/system/wide_text.h"

#include "platform/values/text.h"

namespace pxtarvo::windows {

static_assert(sizeof(wchar_t) == sizeof(char16_t));

WideText::WideText(std::string_view utf8) : text_(toUtf16(utf8)) {}

std::string utf8Of(const wchar_t* text, std::size_t length) {
    return toUtf8({reinterpret_cast<const char16_t*>(text), length});
}

std::string windowText(HWND window) {
    std::u16string text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, u'\0');
    const int length =
        GetWindowTextW(window, reinterpret_cast<wchar_t*>(text.data()), static_cast<int>(text.size()));
    return toUtf8(std::u16string_view(text).substr(0, static_cast<std::size_t>(length)));
}

std::string toAnsi(std::string_view utf8) {
    const WideText wide(utf8);
    const int size =
        WideCharToMultiByte(CP_ACP, 0, wide.c_str(), wide.length(), nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_ACP, 0, wide.c_str(), wide.length(), bytes.data(), size, nullptr, nullptr);
    return bytes;
}

std::string fromAnsi(std::string_view bytes) {
    const int length = static_cast<int>(bytes.size());
    const int size = MultiByteToWideChar(CP_ACP, 0, bytes.data(), length, nullptr, 0);
    std::u16string wide(static_cast<std::size_t>(size), u'\0');
    MultiByteToWideChar(CP_ACP, 0, bytes.data(), length, reinterpret_cast<wchar_t*>(wide.data()), size);
    return toUtf8(wide);
}

}  // namespace pxtarvo::windows
