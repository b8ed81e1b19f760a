#pragma once

// The windows of the apartment's thread: the plug-in's, its dialogs, the host's own.

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "platform/windows/automation/com_headers.h"

namespace pxtarvo::devhost {

inline constexpr char16_t plugInClass[] = u"PXTarvoWindow";
inline constexpr char16_t dialogClass[] = u"#32770";

/// From the top, hidden ones too.
std::vector<HWND> threadWindows();
/// The topmost one of these classes that the user sees and can use, or nullptr.
HWND shownWindow(std::initializer_list<std::u16string_view> classes);

std::u16string classOf(HWND window);
std::string textOf(HWND window);

}  // namespace pxtarvo::devhost
