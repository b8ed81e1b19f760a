#pragma once

// What keeps the DLL in the process.

#include <atomic>

namespace pxtarvo::com {

/// Class factories, and locks that clients hold.
inline std::atomic<long> serverLocks = 0;
/// The first instance was made. Instances are never given up, so the DLL stays from then on.
inline std::atomic<bool> serverKept = false;

}  // namespace pxtarvo::com
