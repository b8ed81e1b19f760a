#pragma once

// The error trap of a long procedure, and the steps behind it that must not be lost.

#include <new>
#include <optional>

#include "platform/values/runtime_error.h"

namespace pxtarvo {

/// Runs `steps`; gives back the error that ended them, if any: whatever was raised (see caughtError).
/// Catching it takes no memory.
template <class Steps>
std::optional<RuntimeError> trapped(Steps&& steps) {
    try {
        steps();
    } catch (...) {
        return caughtError();
    }
    return std::nullopt;
}

/// Runs `step`, again and again where memory runs out in it, a hundred times at most; the last failure
/// leaves. For what has to follow a run that memory ended: what the run held was given back meanwhile. A step
/// must leave nothing done where it fails so.
template <class Step>
decltype(auto) insisted(Step&& step) {
    for (int left = 99; left > 0; --left) {
        try {
            return step();
        } catch (const std::bad_alloc&) {
        } catch (const RuntimeError& error) {
            if (!error.is(ErrorNumber::OutOfMemory)) throw;
        }
    }
    return step();
}

}  // namespace pxtarvo
