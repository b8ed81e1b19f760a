#pragma once

// Between the system's own texts (UTF-8) and what Windows takes and gives: UTF-16 and the ANSI code page.

#include <string>
#include <string_view>

#include "platform/windows/system/win32.h"

namespace pxtarvo::windows {

/// A UTF-8 text as Windows takes it, for as long as the object lives.
class WideText {
  public:
    explicit WideText(std::string_view utf8);
    const wchar_t* c_str() const noexcept { return reinterpret_cast<const wchar_t*>(text_.c_str()); }
    int length() const noexcept { return static_cast<int>(text_.size()); }

  private:
    std::u16string text_;
};

std::string utf8Of(const wchar_t* text, std::size_t length);

/// The text of a window or control.
std::string windowText(HWND window);

/// In the system's ANSI code page; characters of code 0 stay where they are, what the page lacks becomes "?".
std::string toAnsi(std::string_view utf8);
std::string fromAnsi(std::string_view bytes);

}  // namespace pxtarvo::windows
