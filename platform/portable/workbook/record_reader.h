#pragma once

// The records of a workbook stream: kind and length (2 bytes each), then that many bytes; numbers are
// little-endian. A record longer than 8 KB goes on in CONTINUE records.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace pxtarvo::portable {

enum class BiffVersion { Excel5, Excel97 };

/// Reads records one behind the other. What would be read beyond a record and its continuations, or beyond
/// the stream, is 1004.
class RecordReader {
  public:
    RecordReader(std::string_view stream, std::size_t position) : stream_(stream), next_(position) {}

    /// Goes to the next record, whatever is left of this one, and returns its kind.
    std::uint32_t next();

    // What the record holds, in order.

    std::uint32_t byte();
    std::uint32_t word();
    std::uint32_t doubleWord();
    double number();
    void skip(std::size_t bytes);
    /// How many bytes are left, continuations not counted.
    std::size_t left() const { return end_ - at_; }
    /// Whether a byte is left, in a continuation too.
    bool holdsMore() const;

    /// A text of `length` characters behind its length: of the ANSI code page in Excel 5, else with flags,
    /// and with marks of its formatting, which are passed over.
    std::string text(std::size_t length, BiffVersion version);
    /// A text behind its length of two bytes.
    std::string longText(BiffVersion version);

  private:
    bool isContinued() const;
    void goOn();
    std::string_view take(std::size_t bytes);

    std::string_view stream_;
    std::size_t next_;     ///< where the record behind this part begins
    std::size_t at_ = 0;   ///< the next byte of this part
    std::size_t end_ = 0;  ///< the end of this part
};

}  // namespace pxtarvo::portable
