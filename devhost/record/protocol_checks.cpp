#include "devhost/record/protocol_checks.h"

#include <algorithm>
#include <span>

#include "host/tables.h"
#include "platform/database.h"
#include "platform/values/text.h"

namespace pxtarvo::devhost {

namespace {

constexpr std::size_t maximumViolations = 100;

/// A set of the types that a value may have.
using Types = std::uint16_t;

constexpr Types one(Variant::Type type) {
    return static_cast<Types>(1u << static_cast<unsigned>(type));
}

constexpr Types constant = one(Variant::Type::Integer);  ///< a constant of the code
constexpr Types identifier = one(Variant::Type::Long);   ///< an identifier that the code keeps
/// An identifier passed on as the database gave it.
constexpr Types foreign = identifier | one(Variant::Type::Decimal);
constexpr Types number = one(Variant::Type::Double);  ///< a price or quantity that the code computed
constexpr Types text = one(Variant::Type::Text);
constexpr Types null = one(Variant::Type::Null);  ///< of a column or list cell passed on
constexpr Types never = 0;

/// What a column may be given when a row is inserted and when it is updated.
struct ColumnRule {
    std::string_view column;
    Types inserted;
    Types updated;
};

// In the order of the writes, which makes the search for a column short.

constexpr ColumnRule artRules[] = {
    {Art::PVE.sNombre, number | constant, number},  // the barcode list inserts the constant 0
    {Art::Estado.sNombre, constant, constant},
    {Art::FechaEstado.sNombre, text, text},
    {Art::Cal.sNombre, constant, constant},
    {Art::Marca.sNombre, identifier, identifier},
    {Art::Cod.sNombre, text | null, never},
    {Art::Des.sNombre, text | null, never},
    {Art::PCO.sNombre, number | constant, number},
    {Art::Rod.sNombre, constant, never},
    {Art::Pas.sNombre, constant, never},
    {Art::Mat.sNombre, constant, never},
    {Art::TIPO.sNombre, constant, never},
    {Art::Alma.sNombre, constant, never},
    {Art::Mar.sNombre, constant | identifier, never},  // brand 1, or the chosen one
    {Art::barCode.sNombre, text, never},
};

constexpr ColumnRule aatRules[] = {
    {Aat::Id.sNombre, identifier, never},
    {Aat::C01.sNombre, text, text},
};

constexpr ColumnRule artProRules[] = {
    {ArtPro::des.sNombre, text | null, text | null},
    {ArtPro::Precio.sNombre, number | constant, number},
    {ArtPro::Descuento.sNombre, constant | number, constant | number},  // a percentage in the list of 2006
    {ArtPro::Cop.sNombre, text | null, never},
    {ArtPro::Idp.sNombre, identifier, never},
    {ArtPro::Ida.sNombre, identifier, never},
};

constexpr ColumnRule exisRules[] = {
    {Exis::alma.sNombre, identifier | null, never},
    {Exis::CodArt.sNombre, text, never},
    {Exis::Des.sNombre, text | null, never},
    {Exis::For.sNombre, constant, never},
    {Exis::Fentrada.sNombre, text, text},
    {Exis::Pro.sNombre, constant, never},
    {Exis::Cantidad.sNombre, number | null, number | null | constant},
    {Exis::Largo.sNombre, constant, never},
    {Exis::Ancho.sNombre, constant, never},
    {Exis::Espesor.sNombre, constant, never},
    {Exis::DMext.sNombre, constant, never},
    {Exis::DMint.sNombre, constant, never},
    {Exis::Lpc.sNombre, constant, never},
    {Exis::Lac.sNombre, constant, never},
    {Exis::Kg.sNombre, number | null, number | null | constant},
    {Exis::Kill.sNombre, constant, never},
    {Exis::IdArt.sNombre, foreign, never},
    {Exis::Lote.sNombre, text, never},
    {Exis::KgReal.sNombre, constant, never},
};

constexpr ColumnRule hexisRules[] = {
    {Hexis::Tipo.sNombre, text, never},
    {Hexis::alma.sNombre, identifier | null, never},
    {Hexis::idArt.sNombre, foreign, never},
    {Hexis::Fecha.sNombre, text, never},
    {Hexis::Cantidad.sNombre, number | null, never},
    {Hexis::Unidades.sNombre, number | null, never},
    {Hexis::Importe.sNombre, constant, never},
    {Hexis::Lac.sNombre, constant, never},
    {Hexis::Lav.sNombre, constant, never},
    {Hexis::Com.sNombre, text, never},
    {Hexis::For.sNombre, constant, never},
    {Hexis::Fac.sNombre, constant, never},
    {Hexis::Largo.sNombre, constant, never},
    {Hexis::Ancho.sNombre, constant, never},
    {Hexis::Espesor.sNombre, constant, never},
    {Hexis::DMext.sNombre, constant, never},
    {Hexis::DMint.sNombre, constant, never},
    {Hexis::Precio.sNombre, constant, never},
    {Hexis::Usu.sNombre, identifier, never},
    {Hexis::Exis.sNombre, foreign, never},
    {Hexis::Lma.sNombre, constant, never},
};

constexpr ColumnRule ubiRules[] = {
    {Ubi::IdArt.sNombre, identifier, never},
    {Ubi::IdAlm.sNombre, constant, never},
    {Ubi::Pasillo.sNombre, text, text},
    {Ubi::ExMin.sNombre, text, text},
};

/// Which context a write may come from.
enum class Origin {
    Fresh,     ///< one that was not used before
    OfTheRow,  ///< that of the row's article write; a fresh one where the row has no such write
};

struct TableRule {
    std::string_view table;
    std::span<const ColumnRule> columns;
    bool limpiarFirst;  ///< in insertions and updates; a deletion sets the table first
    Origin origin;
    Origin originOfDeletion;
};

constexpr TableRule tableRules[] = {
    {Art::tabla.sNombre, artRules, false, Origin::Fresh, Origin::Fresh},
    {Aat::tabla.sNombre, aatRules, false, Origin::OfTheRow, Origin::Fresh},
    {ArtPro::tabla.sNombre, artProRules, false, Origin::OfTheRow, Origin::Fresh},
    {Exis::tabla.sNombre, exisRules, true, Origin::Fresh, Origin::OfTheRow},
    {Hexis::tabla.sNombre, hexisRules, true, Origin::Fresh, Origin::Fresh},
    {Ubi::tabla.sNombre, ubiRules, false, Origin::Fresh, Origin::Fresh},
};

constexpr std::string_view typeNames[] = {"Empty", "Null",   "Boolean", "Byte",     "Integer",
                                          "Long",  "Single", "Double",  "Currency", "Decimal",
                                          "Date",  "Text",   "Error"};

const TableRule* ruleOf(std::string_view table) {
    const auto* found = std::ranges::find(tableRules, table, &TableRule::table);
    return found == std::end(tableRules) ? nullptr : found;
}

/// "insert Art: "
std::string prefix(const HostWrite& write) {
    return joined({writeNames[static_cast<std::size_t>(write.kind)], " ", write.table, ": "});
}

}  // namespace

void ProtocolChecks::report(std::string text) {
    if (violations_.size() >= maximumViolations) return;
    if (std::ranges::find(violations_, text) == violations_.end()) violations_.push_back(std::move(text));
}

void ProtocolChecks::staleContext(std::string_view member) {
    report(joined({member, " asked of a context that was kept"}));
}

void ProtocolChecks::connectionKept(std::string_view member) {
    report(joined({member, " called on a connection that was kept"}));
}

void ProtocolChecks::options(std::string_view member, std::int32_t options) {
    if (options != adOptionUnspecified) {
        report(joined({member, " called with options ", std::to_string(options)}));
    }
}

void ProtocolChecks::limpiar(std::int32_t nOpcion) {
    if (nOpcion != 0) report("Limpiar called with " + std::to_string(nOpcion));
}

void ProtocolChecks::agregar(std::string_view column, std::int32_t nModo, bool camposReadAfresh) {
    constexpr std::int32_t onlyMode = 2;
    if (nModo != onlyMode) report(joined({column, " added with mode ", std::to_string(nModo)}));
    if (!camposReadAfresh) report(joined({column, " added without reading Campos afresh"}));
}

bool ProtocolChecks::write(const HostWrite& write, const WriteConduct& conduct, bool rotating) {
    const TableRule* rule = ruleOf(write.table);
    if (!rule) {
        report(prefix(write) + "no such table is written");
        return false;
    }
    if (!conduct.tablaSet) report(prefix(write) + "Tabla not set");
    if (!conduct.limpiarCalled) report(prefix(write) + "Limpiar not called");
    const bool limpiarFirst = rule->limpiarFirst && write.kind != WriteKind::Delete;
    if (conduct.tablaSet && conduct.limpiarCalled && conduct.limpiarFirst != limpiarFirst) {
        report(prefix(write) + (limpiarFirst ? "Tabla set before Limpiar" : "Limpiar called before Tabla"));
    }
    if (write.kind == WriteKind::Insert && !write.condition.empty()) {
        report(prefix(write) + "the condition is not empty");
    }
    columnTypes(write);
    return rotating && origin(write, conduct);
}

void ProtocolChecks::columnTypes(const HostWrite& write) {
    const std::span<const ColumnRule> rules = ruleOf(write.table)->columns;
    std::size_t at = 0;
    for (const WrittenColumn& column : write.columns) {
        std::size_t tried = 0;
        while (tried < rules.size() && rules[at].column != column.name) {
            at = (at + 1) % rules.size();
            ++tried;
        }
        const ColumnRule& rule = rules[at];
        const Types allowed = tried == rules.size()             ? never
                              : write.kind == WriteKind::Insert ? rule.inserted
                                                                : rule.updated;
        const Variant::Type type = column.value.type();
        if ((allowed & one(type)) == 0) {
            report(joined({prefix(write), column.name,
                           allowed == never ? " is never written, not even as " : " given as ",
                           typeNames[static_cast<std::size_t>(type)]}));
        }
    }
}

bool ProtocolChecks::origin(const HostWrite& write, const WriteConduct& conduct) {
    const TableRule& rule = *ruleOf(write.table);
    const Origin origin = write.kind == WriteKind::Delete ? rule.originOfDeletion : rule.origin;
    if (origin == Origin::OfTheRow && rowContext_ != 0) {
        if (conduct.context != rowContext_)
            report(prefix(write) + "not from the context of the row's article");
    } else if (conduct.stale) {
        report(prefix(write) + "from a context that was kept");
    }
    if (write.table == Art::tabla.sNombre) {
        rowContext_ = conduct.context;
        return false;
    }
    if (write.table == Aat::tabla.sNombre) return false;
    rowContext_ = 0;
    return true;
}

}  // namespace pxtarvo::devhost
