#include "platform/portable/workbook/freexl_spreadsheet.h"

#include <freexl.h>

#include <charconv>
#include <filesystem>
#include <memory>
#include <system_error>
#include <utility>

#include "platform/portable/workbook/biff_results.h"
#include "platform/values/clock.h"
#include "platform/values/runtime_error.h"

namespace pxtarvo::portable {

namespace {

constexpr std::int32_t lastRow = 65536;
constexpr std::int32_t lastColumn = 256;

[[noreturn]] void raiseRefused(std::string description) {
    throw RuntimeError(spreadsheetRefused, std::move(description));
}

struct CloseWorkbook {
    void operator()(const void* handle) const { freexl_close(handle); }
};
using FreexlHandle = std::unique_ptr<const void, CloseWorkbook>;

/// The two digits (or four) of `text` at `offset`; -1 for anything else.
int digits(std::string_view text, std::size_t offset, std::size_t count) {
    int value = -1;
    if (text.size() < offset + count) return -1;
    const char* const end = text.data() + offset + count;
    return std::from_chars(text.data() + offset, end, value).ptr == end ? value : -1;
}

/// libfreexl writes a date as "YYYY-MM-DD", with " HH:MM:SS" or without, and a time of day as "HH:MM:SS". The
/// workbook counts a 29 February 1900, so its days before March of that year are one less than the date's
/// own.
Date dateOf(std::string_view text) {
    constexpr double falseLeapDay = 60;
    CalendarTime time;
    bool isDate = false;
    std::string_view timeOfDay = text;
    if (text.size() >= 10 && text[4] == '-') {
        isDate = true;
        time.year = digits(text, 0, 4);
        time.month = digits(text, 5, 2);
        time.day = digits(text, 8, 2);
        timeOfDay = text.size() > 11 ? text.substr(11) : std::string_view();
    }
    if (!timeOfDay.empty()) {
        time.hour = digits(timeOfDay, 0, 2);
        time.minute = digits(timeOfDay, 3, 2);
        time.second = digits(timeOfDay, 6, 2);
    }
    const bool onFalseLeapDay = time.year == 1900 && time.month == 2 && time.day == 29;
    if (onFalseLeapDay) time.day = 28;
    if (!isCalendarTime(time)) raiseRefused("La celda tiene una fecha que no existe: " + std::string(text));
    Date date = toDate(time);
    if (isDate && date.days < falseLeapDay + 1 && !onFalseLeapDay) date.days -= 1;
    return date;
}

/// An open workbook. libfreexl reads cells of one sheet at a time, the one selected last.
class FreexlFile {
  public:
    FreexlFile(const std::string& place, std::string_view path) {
        std::error_code unknown;
        if (!std::filesystem::exists(place, unknown)) {
            raiseRefused("No se encontró '" + std::string(path) +
                         "'. Compruebe la ortografía del nombre del archivo y verifique que la ubicación del "
                         "archivo es correcta.");
        }
        const void* handle = nullptr;
        const int result = std::filesystem::is_regular_file(place, unknown)
                               ? freexl_open(place.c_str(), &handle)
                               : FREEXL_FILE_NOT_FOUND;
        handle_.reset(handle);
        if (result != FREEXL_OK || info(FREEXL_BIFF_PASSWORD) == FREEXL_BIFF_OBFUSCATED) {
            raiseRefused("No se puede abrir '" + std::string(path) +
                         "': el formato del archivo no es válido o está protegido.");
        }
        results_ = std::make_unique<BiffResults>(place);
    }

    std::int32_t sheetCount() const { return static_cast<std::int32_t>(info(FREEXL_BIFF_SHEET_COUNT)); }

    Variant cell(std::int32_t sheet, std::int32_t row, std::int32_t column) {
        if (const Variant* result = results_->find(sheet, row, column)) return *result;
        if (selected_ != sheet) {
            if (freexl_select_active_worksheet(handle_.get(), static_cast<unsigned short>(sheet)) !=
                FREEXL_OK) {
                raiseRefused("No se puede leer la hoja " + std::to_string(sheet + 1) + ".");
            }
            selected_ = sheet;
        }
        FreeXL_CellValue value{};
        const int result = freexl_get_cell_value(handle_.get(), static_cast<unsigned>(row),
                                                 static_cast<unsigned short>(column), &value);
        if (result == FREEXL_ILLEGAL_CELL_ROW_COL) return Empty();  // beyond what is filled in
        if (result != FREEXL_OK) raiseRefused("No se puede leer la celda.");
        switch (value.type) {
            case FREEXL_CELL_INT:
                return static_cast<double>(value.value.int_value);
            case FREEXL_CELL_DOUBLE:
                return value.value.double_value;
            case FREEXL_CELL_TEXT:
            case FREEXL_CELL_SST_TEXT:
                return value.value.text_value;
            case FREEXL_CELL_DATE:
            case FREEXL_CELL_DATETIME:
            case FREEXL_CELL_TIME:
                return dateOf(value.value.text_value);
            default:
                return Empty();
        }
    }

  private:
    unsigned info(unsigned short what) const {
        unsigned value = FREEXL_UNKNOWN;
        freexl_get_info(handle_.get(), what, &value);
        return value;
    }

    FreexlHandle handle_;
    std::unique_ptr<const BiffResults> results_;
    std::int32_t selected_ = -1;
};

class FreexlWorksheet : public Worksheet {
  public:
    FreexlWorksheet(std::shared_ptr<FreexlFile> file, std::int32_t index)
        : file_(std::move(file)), index_(index) {}

    Variant Cells(std::int32_t row, std::int32_t column) const override {
        if (row < 1 || row > lastRow || column < 1 || column > lastColumn) {
            raiseRefused("Error definido por la aplicación o el objeto");
        }
        return file_->cell(index_, row - 1, column - 1);
    }

  private:
    std::shared_ptr<FreexlFile> file_;
    std::int32_t index_;
};

class FreexlWorkbook : public Workbook {
  public:
    explicit FreexlWorkbook(std::shared_ptr<FreexlFile> file) : file_(std::move(file)) {}

    std::int32_t SheetCount() const override { return file_->sheetCount(); }
    ObjectRef<Worksheet> Sheet(std::int32_t position) const override {
        if (position < 1 || position > SheetCount()) throw RuntimeError(ErrorNumber::SubscriptOutOfRange);
        return makeObject<FreexlWorksheet>(file_, position - 1);
    }

  private:
    std::shared_ptr<FreexlFile> file_;
};

}  // namespace

FreexlApplication::FreexlApplication(DrivePaths paths) : paths_(std::move(paths)) {}

ObjectRef<Workbook> FreexlApplication::OpenWorkbook(std::string_view path) {
    return makeObject<FreexlWorkbook>(std::make_shared<FreexlFile>(paths_.resolve(path), path));
}

}  // namespace pxtarvo::portable
