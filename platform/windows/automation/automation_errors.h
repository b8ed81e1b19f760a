#pragma once

// The one place where the errors of COM and the system's RuntimeError turn into each other.

#include "platform/values/runtime_error.h"
#include "platform/windows/automation/com_headers.h"

namespace pxtarvo::windows {

/// 0x800Axxxx gives its low 16 bits, the usual automation codes their platform numbers (type mismatch 13, no
/// such member 438, class not registered 429, ...), anything else the signed HRESULT.
std::int32_t numberOf(HRESULT result) noexcept;

/// Small positive numbers become 0x800A0000 + number, negative ones are an HRESULT already.
HRESULT resultOf(const RuntimeError& error) noexcept;

/// The error that a late-bound call came back with: DISP_E_EXCEPTION is what the record says, filled in first
/// when that was deferred. Frees the record's texts. Without a description it is the platform's own.
RuntimeError errorOf(HRESULT result, EXCEPINFO& record);
RuntimeError errorOf(HRESULT result);

/// Raises what errorOf() makes of a failure.
inline void check(HRESULT result) {
    if (FAILED(result)) throw errorOf(result);
}

// For members that a COM caller calls. Both are to be called in a handler, handle the exception that is there
// and raise nothing.

/// Describes the exception in the thread's error information and gives its HRESULT.
HRESULT raisedResult(REFIID raisedBy) noexcept;
/// Describes the exception in `record` (may be null) and gives DISP_E_EXCEPTION.
HRESULT raisedRecord(EXCEPINFO* record) noexcept;

}  // namespace pxtarvo::windows
