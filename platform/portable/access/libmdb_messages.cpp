#include "platform/portable/access/libmdb_messages.h"

#include <sys/types.h>

#include <new>

namespace pxtarvo::portable {

namespace {

std::mutex& oneAtATime() {
    static std::mutex mutex;
    return mutex;
}

ssize_t discard(void*, const char*, std::size_t size) {
    return static_cast<ssize_t>(size);
}

/// Never closed: something may still print while the process ends.
std::FILE* nowhere() {
    static std::FILE* const stream = fopencookie(nullptr, "w", {nullptr, discard, nullptr, nullptr});
    if (stream == nullptr) throw std::bad_alloc();
    return stream;
}

}  // namespace

// glibc's stderr is a variable that the program may set.
LibmdbMessagesOff::LibmdbMessagesOff() : alone_(oneAtATime()), standardError_(stderr) {
    stderr = nowhere();
}

LibmdbMessagesOff::~LibmdbMessagesOff() {
    stderr = standardError_;
}

}  // namespace pxtarvo::portable
