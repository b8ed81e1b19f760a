#pragma once

// What the registry knows of a class, for when it cannot be created.

#include <string>

#include "platform/values/runtime_error.h"

namespace pxtarvo::check {

/// Why a class of this programmatic identifier cannot be created: not registered, for programs of the other
/// bitness only, or the error itself.
std::string whyNotCreated(const std::string& name, const RuntimeError& error);

}  // namespace pxtarvo::check
