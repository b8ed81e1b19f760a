#include "platform/portable/workbook/refusals.h"

#include <utility>

#include "platform/portable/workbook/compound_file.h"
#include "platform/values/runtime_error.h"
#include "platform/values/text.h"

namespace pxtarvo::portable {

namespace {

/// Whether `name` stands among the first bytes, whatever the case of its ASCII letters.
bool mentions(std::string_view file, std::string_view name) {
    const std::string_view start = file.substr(0, 1024);
    for (std::size_t at = 0; at + name.size() <= start.size(); ++at) {
        if (equalIgnoringAsciiCase(start.substr(at, name.size()), name)) return true;
    }
    return false;
}

}  // namespace

void raiseRefused(std::string description) {
    throw RuntimeError(spreadsheetRefused, std::move(description));
}

void raiseDamaged() {
    raiseRefused("No se puede leer el libro: el archivo está dañado.");
}

std::string_view foreignFormat(std::string_view file) {
    using namespace std::string_view_literals;
    constexpr std::string_view invalid = "el formato del archivo no es válido.";
    if (file.empty()) return "el archivo está vacío.";
    if (isCompoundFile(file)) {
        return compoundStream(file, "EncryptedPackage") ? "el libro está protegido con contraseña." : invalid;
    }
    if (file.starts_with("PK\x03\x04"sv)) {
        return mentions(file, "opendocument")
                   ? "es una hoja de cálculo de OpenDocument (.ods); guárdela como libro de Excel 97-2003."
                   : "es un libro de Excel 2007 o posterior (.xlsx); guárdelo como libro de Excel 97-2003.";
    }
    for (const std::string_view begin : {"\x09\0\x04\0"sv, "\x09\x02\x06\0"sv, "\x09\x04\x06\0"sv}) {
        if (file.starts_with(begin)) {
            return "es una hoja de Excel 4.0 o anterior; guárdela como libro de Excel 97-2003.";
        }
    }
    const bool isUtf16 = file.starts_with("\xFF\xFE"sv) || file.starts_with("\xFE\xFF"sv);
    if (!isUtf16 && file.substr(0, 1024).find('\0') != std::string_view::npos) return invalid;
    if (mentions(file, "<?xml")) return "es un documento XML; guárdelo como libro de Excel 97-2003.";
    for (const std::string_view tag : {"<html", "<!doctype html", "<table"}) {
        if (mentions(file, tag)) return "es una página web (HTML); guárdela como libro de Excel 97-2003.";
    }
    return "es un archivo de texto, como CSV; guárdelo como libro de Excel 97-2003.";
}

}  // namespace pxtarvo::portable
