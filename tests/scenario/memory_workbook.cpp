#include "tests/scenario/memory_workbook.h"

namespace pxtarvo::test {

namespace {

/// The application, its workbook and the sheet of it in one.
class MemoryWorkbook : public SpreadsheetApplication,
                       public Workbook,
                       public Worksheet,
                       public std::enable_shared_from_this<MemoryWorkbook> {
  public:
    MemoryWorkbook(std::vector<SheetRow> rows, std::function<void(const char*)> called)
        : rows_(std::move(rows)), called_(std::move(called)) {}

    ObjectRef<Workbook> OpenWorkbook(std::string_view) override {
        called_("spreadsheet.OpenWorkbook");
        return shared_from_this();
    }
    std::int32_t SheetCount() const override {
        called_("workbook.SheetCount");
        return memoryWorkbookSheets;
    }
    ObjectRef<Worksheet> Sheet(std::int32_t position) const override {
        called_("workbook.Sheet");
        if (position != 1) return std::make_shared<MemoryWorkbook>(std::vector<SheetRow>(), called_);
        return std::const_pointer_cast<MemoryWorkbook>(shared_from_this());
    }
    Variant Cells(std::int32_t row, std::int32_t column) const override {
        called_(std::exchange(row_, row) != row ? "sheet.row" : "sheet.Cells");
        const auto at = static_cast<std::size_t>(row - 1);
        const auto place = static_cast<std::size_t>(column - 1);
        return at < rows_.size() && place < rows_[at].size() ? rows_[at][place] : Variant();
    }

  private:
    std::vector<SheetRow> rows_;
    std::function<void(const char*)> called_;
    mutable std::int32_t row_ = 0;
};

}  // namespace

std::function<ObjectRef<SpreadsheetApplication>(const portable::DrivePaths&)> memoryWorkbook(
    std::vector<SheetRow> rows, std::function<void(const char*)> called) {
    return [rows = std::move(rows),
            called = std::move(called)](const portable::DrivePaths&) -> ObjectRef<SpreadsheetApplication> {
        return std::make_shared<MemoryWorkbook>(rows, called);
    };
}

}  // namespace pxtarvo::test
