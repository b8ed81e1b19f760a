#pragma once

// What keeps the DLL in the process.

namespace pxtarvo::com {

/// Keeps the DLL loaded for as long as it lives: a class factory, a lock that a client holds.
class ServerLock {
  public:
    ServerLock() noexcept;
    ServerLock(const ServerLock&) = delete;
    ServerLock& operator=(const ServerLock&) = delete;
    ~ServerLock();
};

void lockServer() noexcept;
void unlockServer() noexcept;

/// The first instance was made. Instances are never given up, so the DLL stays from now on.
void keepServer() noexcept;

bool canUnload() noexcept;

}  // namespace pxtarvo::com
