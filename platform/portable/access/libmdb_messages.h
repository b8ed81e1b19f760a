#pragma once

#include <cstdio>
#include <mutex>

namespace pxtarvo::portable {

/// Keeps what libmdb prints to the standard error stream away from the user's terminal: while one of these
/// lives, the C library's `stderr` is a stream that leads nowhere. One at a time in the process; libmdb calls
/// are short.
class LibmdbMessagesOff {
  public:
    LibmdbMessagesOff();
    ~LibmdbMessagesOff();
    LibmdbMessagesOff(const LibmdbMessagesOff&) = delete;
    LibmdbMessagesOff& operator=(const LibmdbMessagesOff&) = delete;

  private:
    std::lock_guard<std::mutex> alone_;
    std::FILE* standardError_;
};

}  // namespace pxtarvo::portable
