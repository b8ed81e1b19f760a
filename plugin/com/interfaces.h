#pragma once

// The interfaces and identifiers that the build makes of the interface description.

#include <windows.h>

#include <ole2.h>

#include "pxtarvo_interfaces.h"

namespace pxtarvo::com {

inline constexpr wchar_t className[] = L"PXTarvo.PXTarvor";
inline constexpr unsigned short libraryMajor = 1;
inline constexpr unsigned short libraryMinor = 0;

}  // namespace pxtarvo::com
