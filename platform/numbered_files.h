#pragma once

// The language's file numbers, lines and buffers, the same on every machine; a body opens the files
// themselves.

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "platform/text_files.h"

namespace pxtarvo {

/// One open file of the system. Raises 57 (a transfer that failed) or 61 (the disk is full).
class SystemFile {
  public:
    virtual ~SystemFile() = default;
    /// How many bytes were read, 0 at the end.
    virtual std::size_t read(char* to, std::size_t count) = 0;
    virtual void write(std::string_view bytes) = 0;
    virtual void truncate() = 0;
    /// Whether both are open on the same file, whatever paths led to it.
    virtual bool same(const SystemFile& other) const = 0;
};

/// Not for more than one thread.
class NumberedFiles : public TextFiles {
  public:
    NumberedFiles();
    /// Closes what is open, losing what cannot be written.
    ~NumberedFiles() override;
    NumberedFiles(const NumberedFiles&) = delete;
    NumberedFiles& operator=(const NumberedFiles&) = delete;

    // Beside what the interface says: a number outside 1 to 511 is 52. A file open for output is open once:
    // opening it under a second number is 55, in either mode, and so is opening for output what is open for
    // input. A write that fails is 61 (disk full) or 57, at the print or, as writing is buffered, at the
    // close; a read that fails is 57.

    int freeFile(int lowest) const final;
    void openForInput(int number, std::string_view path) final;
    void openForOutput(int number, std::string_view path) final;
    bool atEnd(int number) final;
    /// Only CR ends a line, with the LF right after it; an LF elsewhere is a character of the line.
    std::string lineInput(int number) final;
    void print(int number, std::string_view text) final;
    /// The number is free afterwards, whatever it raises.
    void close(int number) final;
    /// Lines read so far of a file that is open for input; 0 for any other number.
    std::int32_t linesRead(int number) const;

  private:
    class File;
    class InputFile;
    class OutputFile;

    /// Opens a file; for output creates it where it is missing, but leaves what it holds.
    virtual std::unique_ptr<SystemFile> openFile(std::string_view path, bool forOutput) = 0;
    virtual std::string encoded(std::string_view text) const = 0;
    virtual std::string decoded(std::string_view bytes) const = 0;

    std::unique_ptr<SystemFile> openUnder(int number, std::string_view path, bool forOutput);
    template <class Wanted>
    Wanted& open(int number) const;

    std::map<int, std::unique_ptr<File>> files_;
};

}  // namespace pxtarvo
