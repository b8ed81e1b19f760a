#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "platform/text_files.h"

namespace pxtarvo::windows {

/// Error numbers of the language run time that only files raise.
inline constexpr std::int32_t deviceInputOutputError = 57;
inline constexpr std::int32_t diskFullError = 61;

/// The language's sequential text files, in the system's ANSI code page. Not for more than one thread.
class AnsiTextFiles : public TextFiles {
  public:
    AnsiTextFiles();
    /// Closes what is open, losing what cannot be written.
    ~AnsiTextFiles() override;
    AnsiTextFiles(const AnsiTextFiles&) = delete;
    AnsiTextFiles& operator=(const AnsiTextFiles&) = delete;

    // Beside what the interface says: a number outside 1 to 511 is 52. A file open for output is open once:
    // opening it under a second number is 55, in either mode, and so is opening for output what is open for
    // input. A write that fails is 61 (disk full) or 57, at the print or, as writing is buffered, at the
    // close; a read that fails is 57.

    void openForInput(int number, std::string_view path) override;
    void openForOutput(int number, std::string_view path) override;
    bool atEnd(int number) override;
    /// Only CR ends a line, with the LF right after it; an LF elsewhere is a character of the line.
    std::string lineInput(int number) override;
    void print(int number, std::string_view text) override;
    /// The number is free afterwards, whatever it raises.
    void close(int number) override;

  private:
    class File;
    class InputFile;
    class OutputFile;

    void requireFree(int number) const;
    void requireUnshared(const File& opened) const;
    template <class Wanted>
    Wanted& open(int number) const;

    std::map<int, std::unique_ptr<File>> files_;
};

}  // namespace pxtarvo::windows
