#include "platform/windows/data/spreadsheet_automation.h"

namespace pxtarvo::windows {

namespace {

constexpr LCID usEnglish = 1033;

class SheetAutomation : public Worksheet {
  public:
    explicit SheetAutomation(Dispatch sheet) : sheet_(std::move(sheet)) {}
    Variant Cells(std::int32_t row, std::int32_t column) const override {
        return sheet_.object(u"Cells", OwnedVariant(row), OwnedVariant(column)).value(u"Value");
    }

  private:
    Dispatch sheet_;
};

class WorkbookAutomation : public Workbook {
  public:
    explicit WorkbookAutomation(Dispatch workbook) : workbook_(std::move(workbook)) {}
    std::int32_t SheetCount() const override { return workbook_.object(u"Sheets").number(u"Count"); }
    ObjectRef<Worksheet> Sheet(std::int32_t position) const override {
        Dispatch sheet = workbook_.object(u"Sheets").object(u"Item", OwnedVariant(position));
        if (!sheet.has(u"Cells")) throw RuntimeError(ErrorNumber::TypeMismatch);
        return makeObject<SheetAutomation>(std::move(sheet));
    }

  private:
    Dispatch workbook_;
};

}  // namespace

ObjectRef<SpreadsheetApplication> SpreadsheetAutomation::create() {
    return makeObject<SpreadsheetAutomation>(Dispatch::create("Excel.Application", usEnglish));
}

ObjectRef<Workbook> SpreadsheetAutomation::OpenWorkbook(std::string_view path) {
    return makeObject<WorkbookAutomation>(
        application_.object(u"Workbooks").object(u"Open", OwnedVariant(path)));
}

}  // namespace pxtarvo::windows
