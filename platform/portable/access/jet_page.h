#pragma once

// A page of an Access file, and the numbers and texts that lie in it.

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace pxtarvo::portable {

inline constexpr std::size_t jetPageSize = 4096;

using JetBytes = std::span<const unsigned char>;

/// Little-endian numbers of the file; the caller has checked that the bytes are there.
inline std::uint32_t littleEndian16(const unsigned char* bytes) {
    return static_cast<std::uint32_t>(bytes[0]) | static_cast<std::uint32_t>(bytes[1]) << 8;
}
inline std::uint32_t littleEndian32(const unsigned char* bytes) {
    return littleEndian16(bytes) | littleEndian16(bytes + 2) << 16;
}
inline std::uint64_t littleEndian64(const unsigned char* bytes) {
    return littleEndian32(bytes) | static_cast<std::uint64_t>(littleEndian32(bytes + 4)) << 32;
}

/// A text of the file as UTF-8; nothing when it ends within a character.
std::optional<std::string> jetText(JetBytes bytes);

/// Where a row lies, in four bytes: one of row, three of page.
struct JetRowAddress {
    static constexpr std::size_t size = 4;

    explicit JetRowAddress(const unsigned char* bytes) : page(littleEndian32(bytes) >> 8), row(bytes[0]) {}

    std::uint32_t page;
    std::size_t row;
};

/// What a page is, by its first byte.
enum class JetPageKind : unsigned char { Data = 1, Definition = 2, UsageMap = 5 };

/// Every access to its rows is checked.
class JetPage {
  public:
    /// A row's bytes and what its entry in the page says of it.
    struct Row {
        JetBytes bytes;
        bool deleted = false;  ///< gone, or the body of a row that moved here, found through its pointer only
        bool pointer = false;  ///< moved: its bytes are the page and row where it is
    };

    std::span<unsigned char, jetPageSize> bytes() noexcept { return bytes_; }
    std::span<const unsigned char, jetPageSize> bytes() const noexcept { return bytes_; }
    bool is(JetPageKind kind) const noexcept { return bytes_[0] == static_cast<unsigned char>(kind); }
    /// Whether it is a data page of the table with this definition page.
    bool belongsTo(std::uint32_t definitionPage) const;
    std::size_t rowCount() const;
    /// Nothing when the page has no such row or its entry leaves the page.
    std::optional<Row> row(std::size_t index) const;

  private:
    std::array<unsigned char, jetPageSize> bytes_{};
};

}  // namespace pxtarvo::portable
