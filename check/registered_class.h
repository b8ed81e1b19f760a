#pragma once

// What the registry knows of a class, for when it cannot be created.

#include <string>

#include "check/findings.h"
#include "platform/values/runtime_error.h"
#include "platform/windows/automation/dispatch.h"

namespace pxtarvo::check {

/// Why a class of this programmatic identifier cannot be created: not registered, for programs of the other
/// bitness only, or the error itself.
std::string whyNotCreated(const std::string& name, const RuntimeError& error);

/// A new object of the class; empty, and a fault, where it cannot be created.
windows::Dispatch created(const std::string& name, Findings& findings);

}  // namespace pxtarvo::check
