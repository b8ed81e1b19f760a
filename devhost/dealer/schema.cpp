#include "devhost/dealer/schema.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

#include "platform/portable/dialect/sql_collation.h"
#include "platform/values/text.h"

namespace pxtarvo::devhost {

namespace {

constexpr int ordinaryTextSize = 60;

struct ColumnType {
    std::string_view column;
    std::string_view type;
};

/// What the kind in which a column is written does not tell.
constexpr ColumnType ownTypes[] = {
    {"Art_Estado", "INTEGER DEFAULT 0"}, {"Ubi_IdArt", "INTEGER"},       {"Ubi_Pasillo", "VARCHAR(20)"},
    {"ART_Cod", "VARCHAR(30)"},          {"Art_barCode", "VARCHAR(30)"}, {"ARP_Cop", "VARCHAR(30)"},
    {"Exis_CodArt", "VARCHAR(30)"},      {"lac_codart", "VARCHAR(30)"},  {"ART_DES", "VARCHAR(255)"},
    {"ARP_des", "VARCHAR(255)"},         {"Exis_Des", "VARCHAR(255)"},   {"Hexis_Com", "VARCHAR(255)"},
    {"Marca_CodAbrev", "VARCHAR(6)"},
};

/// Columns by which statements look rows up.
struct Index {
    std::string_view table;
    std::string_view columns;
    bool text;
};

constexpr Index indexes[] = {
    {"Art", "Art_Cod", true},           {"Art", "Art_barCode", true},          {"Exis", "Exis_Codart", true},
    {"Marcas", "Marca_CodAbrev", true}, {"ArtPro", "ARP_Ida, ARP_Idp", false}, {"ArtPro", "ARP_Idp", false},
    {"Exis", "Exis_IdArt", false},      {"Ubi", "Ubi_IdArt", false},           {"Pro", "Pro_COD", false},
    {"Lapr", "Lapr_IdArt", false},      {"Pedli", "PedLi_IdArt", false},       {"lav", "lav_idart", false},
    {"Lpc", "Lpc_IdArt", false},        {"Hexis", "Hexis_idArt", false},
};

std::string typeOf(const Columna& column) {
    if (column.papel == Papel::Identidad) return "INTEGER PRIMARY KEY AUTOINCREMENT";
    if (column.papel == Papel::Clave) return "INTEGER PRIMARY KEY";
    const auto* own = std::ranges::find(ownTypes, column.sNombre, &ColumnType::column);
    if (own != std::end(ownTypes)) return std::string(own->type);
    switch (column.nTipo) {
        case Tipo::Booleano:
            return "BIT";
        case Tipo::Entero:
            return "INTEGER";
        case Tipo::Decimal:
            return "FLOAT";
        case Tipo::Texto:
            return "VARCHAR(" + std::to_string(ordinaryTextSize) + ")";
        case Tipo::Fecha:
        case Tipo::Expresion:
            break;  // the expression of a written column is always the date and time
    }
    return "DATETIME";
}

/// A table of which this system knows no key has one all the same: only of rows with a key can changes be
/// kept.
std::string ownKey(const Tabla& table) {
    if (table.columnas.front().papel != Papel::Dato) return {};
    return std::string(table.sNombre) + "_Id INTEGER PRIMARY KEY";
}

std::string createTable(const Tabla& table) {
    std::string sql("CREATE TABLE ");
    sql.append(table.sNombre).append(" (");
    std::string_view separator;
    if (const std::string key = ownKey(table); !key.empty()) {
        sql.append(key);
        separator = ", ";
    }
    for (const Columna& column : table.columnas) {
        sql.append(std::exchange(separator, ", ")).append(column.sNombre).append(" ").append(typeOf(column));
    }
    return sql + ")";
}

/// An index of a text serves the statements that name its collation and no others: by its condition, any
/// SQLite tool, which does not know the collation, leaves it alone and can read the table.
std::string createIndex(const Index& index) {
    std::string key(index.columns);
    if (index.text) key.append(" COLLATE ").append(portable::dealerCollation);
    std::string sql("CREATE INDEX Idx_");
    sql.append(replaced(index.columns, ", ", "_")).append(" ON ").append(index.table);
    sql.append(" (").append(key).append(")");
    if (index.text) sql.append(" WHERE ").append(key).append(" IS NOT NULL");
    return sql;
}

}  // namespace

void createSchema(portable::SqliteConnection& connection) {
    std::string script;
    for (const Tabla& table : tablasHost) script.append(createTable(table)).append(";\n");
    for (const Index& index : indexes) script.append(createIndex(index)).append(";\n");
    connection.BeginTrans();
    try {
        connection.runNative(script);
        connection.CommitTrans();
    } catch (const RuntimeError&) {
        connection.RollbackTrans();
        throw;
    }
}

std::size_t textSize(const Columna& column) {
    constexpr std::string_view textType = "VARCHAR(";
    const std::string type = typeOf(column);
    return type.starts_with(textType) ? std::stoul(type.substr(textType.size())) : 0;
}

}  // namespace pxtarvo::devhost
