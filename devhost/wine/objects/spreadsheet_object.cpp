#include "devhost/wine/objects/automation_objects.h"
#include "devhost/wine/objects/counted_object.h"

namespace pxtarvo::devhost {

namespace {

using windows::CallArguments;

struct Cell {
    ObjectRef<Worksheet> sheet;
    std::int32_t row;
    std::int32_t column;
};
using Sheet = ObjectRef<Worksheet>;
using Book = ObjectRef<Workbook>;
using Application = ObjectRef<SpreadsheetApplication>;

KindOf<Cell> cellKind("SpreadsheetCell", u"Value",
                      {{u"Value", [](Cell& cell) { return cell.sheet->Cells(cell.row, cell.column); }}});

KindOf<Sheet> sheetKind("SpreadsheetSheet", u"Cells",
                        {{u"Cells", [](Sheet& sheet, const CallArguments& given) {
                              return made(cellKind, Cell{sheet, given.number(0), given.number(1)});
                          }}});

KindOf<Book> sheetsKind("SpreadsheetSheets", u"Item",
                        {{u"Item",
                          [](Book& workbook, const CallArguments& given) {
                              return made(sheetKind, workbook->Sheet(given.number(0)));
                          }},
                         {u"Count", &Workbook::SheetCount}});

KindOf<Book> workbookKind("SpreadsheetWorkbook", u"Sheets",
                          {{u"Sheets", [](Book& workbook) { return made(sheetsKind, workbook); }}});

KindOf<Application> workbooksKind("SpreadsheetWorkbooks", u"Open",
                                  {{u"Open", [](Application& application, const CallArguments& given) {
                                        return made(workbookKind, application->OpenWorkbook(given.text(0)));
                                    }}});

KindOf<Application> applicationKind("Spreadsheet", u"Workbooks",
                                    {{u"Workbooks", [](Application& application) {
                                          return made(workbooksKind, application);
                                      }}});

}  // namespace

windows::Reference<IDispatch> spreadsheetObject(ObjectRef<SpreadsheetApplication> application) {
    return made(applicationKind, std::move(application));
}

}  // namespace pxtarvo::devhost
