#pragma once

// Sequential text files by file number, as the language run time has them. Open numbers belong to the module
// and outlive a window: a file that an error left open stays open, and opening its number again is error 55.
// Text is UTF-8 here and the system's ANSI code page in the file.

#include <string>
#include <string_view>

namespace pxtarvo {

class TextFiles {
  public:
    virtual ~TextFiles() = default;

    /// The lowest number that is not open, from `lowest` on; 67 where all are.
    virtual int freeFile(int lowest) const = 0;
    /// Raises 53 (no such file), 76 (no such folder), 55 (number in use), 70 or 75 (no access, a folder).
    virtual void openForInput(int number, std::string_view path) = 0;
    /// Creates or truncates; the folder must exist. Raises as openForInput, 75 for an empty path.
    virtual void openForOutput(int number, std::string_view path) = 0;
    /// 52 when the number is not open, 54 when it is open for the other mode (so all below).
    virtual bool atEnd(int number) = 0;
    /// The next line, ended by CR or CR LF (neither is returned) or by the end of the file; 62 past the end.
    virtual std::string lineInput(int number) = 0;
    /// Writes the text and CR LF.
    virtual void print(int number, std::string_view text) = 0;
    /// Closing a number that is not open does nothing.
    virtual void close(int number) = 0;
};

}  // namespace pxtarvo
