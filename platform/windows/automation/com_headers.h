#pragma once

// The Windows headers that COM and automation need, included in one way by both compilers: wineg++ defines
// the macros min and max where it is not told otherwise.

#ifndef NOMINMAX
#define NOMINMAX
#endif

#include <windows.h>

#include <objbase.h>
#include <oleauto.h>
