#pragma once

// The rows of a CSV file.

#include <csv.h>

#include <cstddef>
#include <exception>
#include <string>
#include <string_view>
#include <vector>

#include "devhost/exchange/text_lines.h"

namespace pxtarvo::devhost {

/// Stands for Null where it is not in quotes.
inline constexpr std::string_view nullWord = "NULL";

struct CsvCell {
    std::string_view text;
    bool null = false;  ///< empty or nullWord, and not in quotes
};

/// Cells may be in quotes, in which a quote is doubled; blanks count. The separator (comma, semicolon or tab)
/// is the one that the first line has most of. Lines without a character are no rows.
class CsvRows {
  public:
    /// Takes the bytes of the whole file.
    explicit CsvRows(std::string bytes);
    ~CsvRows();
    CsvRows(const CsvRows&) = delete;
    CsvRows& operator=(const CsvRows&) = delete;

    /// To the next row; false past the last. Raises std::runtime_error for one that is malformed; line() is
    /// then the one where it shows.
    bool next();
    /// Of the current row; there until the next call of next().
    const std::vector<CsvCell>& cells() const noexcept { return cells_; }
    std::size_t line() const noexcept { return line_; }  ///< in which the current row begins, from 1
    std::size_t bytesRead() const noexcept { return lines_.bytesRead(); }

  private:
    struct Piece {
        std::size_t begin;  ///< in texts_
        std::size_t length;
        bool null;
    };
    struct Row {
        std::size_t endPiece;  ///< behind its last one
        std::size_t line;
    };

    static void takeCell(void* text, std::size_t length, void* self);
    static void takeRowEnd(int character, void* self);
    /// Reads on until a row is whole; false past the last.
    bool readRow();
    void readLine(std::string_view line);
    void parse(std::string_view text);
    void finish();
    [[noreturn]] void raise(std::size_t line, const char* reason);

    TextLines lines_;
    csv_parser parser_;
    bool finished_ = false;
    bool mayBeQuotedNull_ = false;  ///< the line at hand has a NULL in quotes
    std::size_t beginLine_ = 1;     ///< of the row that is being read
    std::string texts_;
    std::vector<Piece> pieces_;
    std::vector<Row> rows_;  ///< whole ones; most lines have one
    std::size_t nextRow_ = 0;
    std::size_t nextPiece_ = 0;
    std::exception_ptr failure_;  ///< of a callback
    std::vector<CsvCell> cells_;
    std::size_t line_ = 1;
};

}  // namespace pxtarvo::devhost
