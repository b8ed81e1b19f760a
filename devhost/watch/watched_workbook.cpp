#include "devhost/watch/watched_workbook.h"

#include <utility>

#include "platform/portable/workbook/workbook_reader.h"
#include "platform/values/conversion.h"
#include "platform/values/text.h"

namespace pxtarvo::devhost {

namespace {

constexpr std::int32_t firstColumn = 1;
constexpr std::int32_t lastColumn = 3;

class WatchedSheet : public Worksheet {
  public:
    WatchedSheet(ObjectRef<Worksheet> sheet, std::shared_ptr<ListWatch> watch)
        : sheet_(std::move(sheet)), watch_(std::move(watch)), passed_(watch_->row()) {}
    ~WatchedSheet() override { watch_->endRow(true); }

    Variant Cells(std::int32_t row, std::int32_t column) const override {
        const std::int32_t ownRow = row + passed_;
        Variant value = sheet_->Cells(ownRow, column);
        if (column == firstColumn && ownRow > watch_->row() && !isBlank(value)) {
            watch_->beginRow([this, ownRow](std::int32_t position) {
                return position < firstColumn ? Variant() : sheet_->Cells(ownRow, position);
            });
        }
        if (ownRow == watch_->row()) {
            watch_->reading(column);
            watch_->seen(column, value);
        }
        return value;
    }

  private:
    static bool isBlank(const Variant& value) {
        return value.isEmpty() || value.isNull() ||
               (value.isText() && trimBlanks(*value.get<std::string>()).empty());
    }

    ObjectRef<Worksheet> sheet_;
    std::shared_ptr<ListWatch> watch_;
    std::int32_t passed_;  ///< rows that earlier runs have read
};

class WatchedWorkbook : public Workbook {
  public:
    WatchedWorkbook(ObjectRef<Workbook> workbook, std::shared_ptr<ListWatch> watch)
        : workbook_(std::move(workbook)), watch_(std::move(watch)) {}

    std::int32_t SheetCount() const override { return workbook_->SheetCount(); }
    ObjectRef<Worksheet> Sheet(std::int32_t position) const override {
        return makeObject<WatchedSheet>(workbook_->Sheet(position), watch_);
    }

  private:
    ObjectRef<Workbook> workbook_;
    std::shared_ptr<ListWatch> watch_;
};

class WatchedSpreadsheet : public SpreadsheetApplication {
  public:
    WatchedSpreadsheet(ObjectRef<SpreadsheetApplication> application, std::shared_ptr<ListWatch> watch)
        : application_(std::move(application)), watch_(std::move(watch)) {}

    ObjectRef<Workbook> OpenWorkbook(std::string_view path) override {
        ObjectRef<Workbook> workbook = application_->OpenWorkbook(path);
        if (watch_->columns().empty()) {
            std::vector<std::string> names(1);
            for (std::int32_t column = firstColumn; column <= lastColumn; ++column) {
                names.emplace_back(1, static_cast<char>('A' + column - firstColumn));
            }
            watch_->columns(std::move(names));
        }
        return makeObject<WatchedWorkbook>(std::move(workbook), watch_);
    }

  private:
    ObjectRef<SpreadsheetApplication> application_;
    std::shared_ptr<ListWatch> watch_;
};

}  // namespace

std::function<ObjectRef<SpreadsheetApplication>(const portable::DrivePaths&)> watchedSpreadsheet(
    std::shared_ptr<ListWatch> watch) {
    return
        [watch = std::move(watch)](const portable::DrivePaths& paths) -> ObjectRef<SpreadsheetApplication> {
            return makeObject<WatchedSpreadsheet>(makeObject<portable::WorkbookReader>(paths), watch);
        };
}

}  // namespace pxtarvo::devhost
