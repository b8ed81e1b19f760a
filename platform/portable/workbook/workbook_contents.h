#pragma once

// What a workbook stream (Excel 5 to 2003) says of the values of its cells.

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "platform/portable/workbook/record_reader.h"
#include "platform/values/variant.h"

namespace pxtarvo::portable {

/// The filled cells of one sheet.
class SheetCells {
  public:
    /// The value of the cell at 0-based row and column; Empty for one without.
    Variant at(std::uint32_t row, std::uint32_t column) const;

  private:
    friend class WorkbookContents;
    struct Cell {
        std::uint32_t place;        ///< row and column in one number
        const std::string* shared;  ///< a text of the workbook's own, or nullptr
        Variant value;
    };
    void add(std::uint32_t row, std::uint32_t column, Variant value, const std::string* shared = nullptr);
    void sort();

    std::vector<Cell> cells_;
};

class WorkbookContents {
  public:
    /// Reads what stands before the sheets. 1004 where the stream is damaged, encrypted or in a code page
    /// other than Windows-1252.
    explicit WorkbookContents(std::string stream);

    /// Chart and macro sheets included.
    std::size_t sheetCount() const { return sheets_.size(); }
    /// Reads the sheet at the 0-based position; valid as long as this object. 13 where it has no cells: a
    /// chart or a dialog; 1004 where it is damaged.
    SheetCells sheet(std::size_t position) const;

  private:
    void readSheetEntry(RecordReader& reader);
    void readSharedTexts(RecordReader& reader);
    bool isDate(std::uint32_t style) const;
    Variant numberCell(double number, std::uint32_t style) const;
    bool readCells(std::uint32_t kind, RecordReader& reader, SheetCells& cells) const;
    Variant formulaResult(RecordReader& reader, std::uint32_t style) const;

    std::string stream_;
    BiffVersion version_ = BiffVersion::Excel97;
    bool since1904_ = false;
    std::vector<std::size_t> sheets_;            ///< where each begins, in their order
    std::vector<std::string> texts_;             ///< those that cells share
    std::vector<std::uint32_t> styles_;          ///< the number format of each
    std::map<std::uint32_t, bool> dateFormats_;  ///< of the formats that the workbook describes
};

}  // namespace pxtarvo::portable
