#include "plugin/com/server_life.h"

#include <atomic>

namespace pxtarvo::com {

namespace {

std::atomic<long> locks = 0;
std::atomic<bool> kept = false;

}  // namespace

ServerLock::ServerLock() noexcept {
    lockServer();
}

ServerLock::~ServerLock() {
    unlockServer();
}

void lockServer() noexcept {
    ++locks;
}

void unlockServer() noexcept {
    --locks;
}

void keepServer() noexcept {
    kept = true;
}

bool canUnload() noexcept {
    return !kept && locks == 0;
}

}  // namespace pxtarvo::com
