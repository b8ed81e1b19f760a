#pragma once

// The error trap of a long procedure.

#include <new>
#include <optional>

#include "platform/values/runtime_error.h"

namespace pxtarvo {

/// Runs `steps`; gives back the error that ended them, if any. Memory that runs out is an error like others
/// (7).
template <class Steps>
std::optional<RuntimeError> trapped(Steps&& steps) {
    try {
        steps();
    } catch (const RuntimeError& error) {
        return error;
    } catch (const std::bad_alloc&) {
        return RuntimeError(ErrorNumber::OutOfMemory);
    }
    return std::nullopt;
}

}  // namespace pxtarvo
