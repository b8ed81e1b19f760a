#include "platform/portable/workbook/workbook_reader.h"

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <system_error>
#include <utility>

#include "platform/portable/workbook/compound_file.h"
#include "platform/portable/workbook/workbook_contents.h"
#include "platform/values/runtime_error.h"
#include "platform/values/text.h"

namespace pxtarvo::portable {

namespace {

constexpr std::int32_t lastRow = 65536;
constexpr std::int32_t lastColumn = 256;

std::string fileBytes(const std::string& place, std::string_view path) {
    std::error_code unknown;
    if (!std::filesystem::exists(place, unknown)) {
        raiseRefused(joined({"No se encontró '", path,
                             "'. Compruebe la ortografía del nombre del archivo y verifique que la ubicación "
                             "del archivo es correcta."}));
    }
    std::string bytes;
    const bool isFile = std::filesystem::is_regular_file(place, unknown);
    if (isFile) bytes.resize(std::filesystem::file_size(place));
    std::ifstream file(place, std::ios::binary);
    if (!isFile || !file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()))) {
        raiseRefused(joined({"No se puede abrir '", path, "': el archivo no se puede leer."}));
    }
    return bytes;
}

WorkbookContents contents(const std::string& place, std::string_view path) {
    const std::string file = fileBytes(place, path);
    for (const std::string_view name : {"Workbook", "Book"}) {  // of Excel 97 and of Excel 5
        if (auto stream = compoundStream(file, name)) return WorkbookContents(std::move(*stream));
    }
    raiseRefused(joined({"No se puede abrir '", path, "': ", foreignFormat(file)}));
}

class SheetOfFile : public Worksheet {
  public:
    SheetOfFile(std::shared_ptr<const WorkbookContents> contents, std::size_t position)
        : contents_(std::move(contents)), cells_(contents_->sheet(position)) {}

    Variant Cells(std::int32_t row, std::int32_t column) const override {
        if (row < 1 || row > lastRow || column < 1 || column > lastColumn) {
            raiseRefused("Error definido por la aplicación o el objeto");
        }
        return cells_.at(static_cast<std::uint32_t>(row - 1), static_cast<std::uint32_t>(column - 1));
    }

  private:
    std::shared_ptr<const WorkbookContents> contents_;
    SheetCells cells_;
};

class WorkbookOfFile : public Workbook {
  public:
    explicit WorkbookOfFile(std::shared_ptr<const WorkbookContents> contents)
        : contents_(std::move(contents)) {}

    std::int32_t SheetCount() const override { return static_cast<std::int32_t>(contents_->sheetCount()); }
    ObjectRef<Worksheet> Sheet(std::int32_t position) const override {
        if (position < 1 || position > SheetCount()) throw RuntimeError(ErrorNumber::SubscriptOutOfRange);
        return makeObject<SheetOfFile>(contents_, static_cast<std::size_t>(position - 1));
    }

  private:
    std::shared_ptr<const WorkbookContents> contents_;
};

}  // namespace

WorkbookReader::WorkbookReader(DrivePaths paths) : paths_(std::move(paths)) {}

ObjectRef<Workbook> WorkbookReader::OpenWorkbook(std::string_view path) {
    return makeObject<WorkbookOfFile>(
        std::make_shared<const WorkbookContents>(contents(paths_.resolve(path), path)));
}

}  // namespace pxtarvo::portable
