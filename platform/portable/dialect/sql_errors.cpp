#include "platform/portable/dialect/sql_errors.h"

#include "platform/values/text.h"

namespace pxtarvo::portable {

RuntimeError noSuchTable(std::string_view name) {
    return {ErrorNumber::NoSuchTable, joined({"El nombre de objeto '", name, "' no es válido."})};
}

RuntimeError noSuchColumn(std::string_view name) {
    return {ErrorNumber::SqlSyntax, joined({"El nombre de columna '", name, "' no es válido."})};
}

RuntimeError wrongSyntaxNear(std::string_view word) {
    return {ErrorNumber::SqlSyntax, joined({"Sintaxis incorrecta cerca de '", word, "'."})};
}

}  // namespace pxtarvo::portable
