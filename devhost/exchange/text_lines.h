#pragma once

// The lines of a text file in whatever encoding a database tool has written it.

#include <cstddef>
#include <string>
#include <string_view>

namespace pxtarvo::devhost {

/// Whether every byte belongs to a well-formed sequence.
bool isUtf8(std::string_view bytes) noexcept;

/// Lines as UTF-8. The encoding is told from the whole file: by its byte order mark, by the zero bytes of
/// UTF-16, else UTF-8 where all of it is well-formed, else Windows-1252.
class TextLines {
  public:
    explicit TextLines(std::string bytes);
    TextLines(const TextLines&) = delete;
    TextLines& operator=(const TextLines&) = delete;

    /// To the next line, its end ("\n") included; false past the last. The text is there until the next call.
    /// Raises std::runtime_error for a line that is malformed in the file's encoding.
    bool next(std::string_view& line);
    std::size_t number() const noexcept { return number_; }  ///< of the line that was read last, from 1
    std::size_t bytesRead() const noexcept { return at_; }

  private:
    enum class Encoding { Utf8, Windows1252, Utf16LittleEndian, Utf16BigEndian };

    void findEncoding();
    void takeUtf16Line();
    char16_t unitAt(std::size_t at) const noexcept;

    std::string bytes_;
    Encoding encoding_ = Encoding::Utf8;
    bool checked_ = false;  ///< all of the file is known to be well-formed
    std::size_t at_ = 0;
    std::size_t number_ = 0;
    std::string line_;
};

}  // namespace pxtarvo::devhost
