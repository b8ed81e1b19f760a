#include "devhost/wine/objects/spreadsheet_object.h"

#include <functional>

#include "platform/values/runtime_error.h"

namespace pxtarvo::devhost {

namespace {

using windows::CallArguments;
using windows::makeCounted;
using windows::OwnedVariant;
using windows::Reference;

using Names = std::vector<std::u16string_view>;

/// One object of the application's tree; every level answers to a few members.
class TreeObject : public CountedObject {
  public:
    using Answer = std::function<OwnedVariant(int place, const CallArguments&)>;
    TreeObject(ObjectKind& kind, Answer answer) : CountedObject(kind), answer_(std::move(answer)) {}

  protected:
    OwnedVariant member(int place, const CallArguments& arguments) override {
        return answer_(place, arguments);
    }

  private:
    Answer answer_;
};

OwnedVariant cell(const ObjectRef<Worksheet>& sheet, std::int32_t row, std::int32_t column) {
    static const Names names{u"Value"};
    static ObjectKind kind("SpreadsheetCell", {names, 0});
    return asValue(makeCounted<TreeObject>(
        kind, [=](int, const CallArguments&) { return OwnedVariant(sheet->Cells(row, column)); }));
}

OwnedVariant worksheet(const ObjectRef<Worksheet>& sheet) {
    static const Names names{u"Cells"};
    static ObjectKind kind("SpreadsheetSheet", {names, 0});
    return asValue(makeCounted<TreeObject>(kind, [=](int, const CallArguments& arguments) {
        return cell(sheet, arguments.number(0), arguments.number(1));
    }));
}

OwnedVariant sheets(const ObjectRef<Workbook>& workbook) {
    static const Names names{u"Item", u"Count"};
    static ObjectKind kind("SpreadsheetSheets", {names, 0});
    return asValue(makeCounted<TreeObject>(kind, [=](int place, const CallArguments& arguments) {
        return place == 1 ? OwnedVariant(workbook->SheetCount())
                          : worksheet(workbook->Sheet(arguments.number(0)));
    }));
}

OwnedVariant opened(const ObjectRef<Workbook>& workbook) {
    static const Names names{u"Sheets"};
    static ObjectKind kind("SpreadsheetWorkbook", {names, 0});
    return asValue(
        makeCounted<TreeObject>(kind, [=](int, const CallArguments&) { return sheets(workbook); }));
}

OwnedVariant workbooks(const ObjectRef<SpreadsheetApplication>& application) {
    static const Names names{u"Open"};
    static ObjectKind kind("SpreadsheetWorkbooks", {names, 0});
    return asValue(makeCounted<TreeObject>(kind, [=](int, const CallArguments& arguments) {
        return opened(application->OpenWorkbook(arguments.text(0)));
    }));
}

}  // namespace

Reference<IDispatch> spreadsheetObject(const ObjectRef<SpreadsheetApplication>& application) {
    static const Names names{u"Workbooks"};
    static ObjectKind kind("Spreadsheet", {names, 0});
    return windows::makeDispatch<TreeObject>(
        kind, [=](int, const CallArguments&) { return workbooks(application); });
}

}  // namespace pxtarvo::devhost
