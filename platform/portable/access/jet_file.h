#pragma once

// An Access file (Jet 4: Access 2000 to 2003) as its reader needs it: what tables there are, how their
// columns are stored, and pages. libmdb reads the file's structure; rows and values are decoded in jet_rows.

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace pxtarvo::portable {

inline constexpr std::size_t jetPageSize = 4096;

/// -2147467259 with a description of damage in the file that the user named `fileName`.
[[noreturn]] void raiseDamagedFile(std::string_view fileName);

/// A column, in the terms of the file format.
struct JetColumn {
    std::string name;
    int type = 0;                    ///< libmdb's MDB_TEXT and so on
    bool fixed = false;              ///< at fixedOffset in every row, not in the row's table of offsets
    std::size_t number = 0;          ///< its bit in a row's mask of values that are not null
    std::size_t fixedOffset = 0;     ///< bytes behind the row's count of columns
    std::size_t size = 0;            ///< bytes, of fixed columns
    std::size_t variableNumber = 0;  ///< its place in the row's table of offsets
    std::uint8_t scale = 0;          ///< decimal places, of decimal columns
};

struct JetTable {
    std::uint32_t definitionPage = 0;  ///< the pages of its rows name it
    std::uint32_t rowCount = 0;
    bool hasVariableColumns = false;
    std::vector<JetColumn> columns;
    std::vector<unsigned char> pageMap;  ///< which pages are its own
};

/// One page of rows or of pieces of long values, every access checked.
class JetPage {
  public:
    /// A row's bytes and what its entry in the page says of it.
    struct Row {
        std::span<const unsigned char> bytes;
        bool deleted = false;  ///< gone, or the body of a row that moved here, found through its pointer only
        bool pointer = false;  ///< moved: its bytes are the page and row where it is
    };

    unsigned char* data() noexcept { return bytes_.data(); }
    /// Whether it is a data page of the table with this definition page.
    bool belongsTo(std::uint32_t definitionPage) const;
    std::size_t rowCount() const;
    /// Nothing when the page has no such row or its entry leaves the page.
    std::optional<Row> row(std::size_t index) const;

  private:
    std::array<unsigned char, jetPageSize> bytes_{};
};

class JetFile {
  public:
    /// Opens the file at `place`, which the user named `fileName`. Raises -2147467259 when it is missing, a
    /// folder, unreadable, not a database or damaged.
    JetFile(const std::string& place, std::string_view fileName);
    ~JetFile();
    JetFile(const JetFile&) = delete;
    JetFile& operator=(const JetFile&) = delete;

    const std::string& fileName() const noexcept { return fileName_; }

    /// The table of this name, case ignored; -2147217865 when there is none.
    JetTable table(std::string_view name) const;
    /// The next page of `table` after page `after` (0 to begin), or 0 after the last.
    std::uint32_t nextPage(JetTable& table, std::uint32_t after) const;
    /// Raises -2147467259 when the file does not hold the whole page.
    void readPage(std::uint32_t number, JetPage& page) const;

  private:
    class Handle;

    bool holdsPage(std::uint32_t number) const;

    std::string place_;
    std::string fileName_;
    mutable std::uint64_t wholePages_ = 0;  ///< that the file had when it was last asked
    std::unique_ptr<Handle> handle_;
};

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

}  // namespace pxtarvo::portable
