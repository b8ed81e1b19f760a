#include "tests/scenario/memory_workbook.h"

namespace pxtarvo::test {

namespace {

/// The application, its workbook and the sheet of it in one.
class MemoryWorkbook : public SpreadsheetApplication,
                       public Workbook,
                       public Worksheet,
                       public std::enable_shared_from_this<MemoryWorkbook> {
  public:
    explicit MemoryWorkbook(std::vector<SheetRow> rows) : rows_(std::move(rows)) {}

    ObjectRef<Workbook> OpenWorkbook(std::string_view) override { return shared_from_this(); }
    std::int32_t SheetCount() const override { return memoryWorkbookSheets; }
    ObjectRef<Worksheet> Sheet(std::int32_t position) const override {
        if (position != 1) return std::make_shared<MemoryWorkbook>(std::vector<SheetRow>());
        return std::const_pointer_cast<MemoryWorkbook>(shared_from_this());
    }
    Variant Cells(std::int32_t row, std::int32_t column) const override {
        const auto at = static_cast<std::size_t>(row - 1);
        const auto place = static_cast<std::size_t>(column - 1);
        return at < rows_.size() && place < rows_[at].size() ? rows_[at][place] : Variant();
    }

  private:
    std::vector<SheetRow> rows_;
};

}  // namespace

std::function<ObjectRef<SpreadsheetApplication>(const portable::DrivePaths&)> memoryWorkbook(
    std::vector<SheetRow> rows) {
    return [rows = std::move(rows)](const portable::DrivePaths&) -> ObjectRef<SpreadsheetApplication> {
        return std::make_shared<MemoryWorkbook>(rows);
    };
}

}  // namespace pxtarvo::test
