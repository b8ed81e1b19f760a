#include "devhost/report/report_tables.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <memory>
#include <utility>

#include "devhost/report/report_numbers.h"
#include "platform/values/number_text.h"

namespace pxtarvo::devhost {

namespace {

constexpr std::size_t largestChanges = 25;

/// A column of a table over rows of one type.
template <class Row>
struct Shown {
    std::string caption;
    bool number;
    std::string (*cell)(const Row& row, CellForm form);
};

template <class Row>
ReportTable table(std::string_view name, std::string title, std::vector<const Row*> rows,
                  std::vector<Shown<Row>> columns) {
    ReportTable made{.name = name, .title = std::move(title), .columns = {}, .cell = {}};
    for (const Shown<Row>& column : columns) made.columns.push_back({column.caption, column.number});
    made.rows = rows.size();
    made.cell = [rows = std::move(rows), columns = std::move(columns)](std::size_t row, std::size_t column,
                                                                       CellForm form) {
        return columns[column].cell(*rows[row], form);
    };
    return made;
}

template <class Row>
std::vector<const Row*> pointers(const std::vector<Row>& rows) {
    std::vector<const Row*> result;
    result.reserve(rows.size());
    for (const Row& row : rows) result.push_back(&row);
    return result;
}

std::string shown(const std::optional<double>& value, CellForm form) {
    return form == CellForm::Page ? amount(value) : plainAmount(value);
}

std::string shown(std::int32_t row, CellForm) {
    return row > 0 ? plainNumber(row) : std::string();
}

// The columns of articles.
const Shown<ArticleFact> articleCode{"Código", false,
                                     [](const ArticleFact& row, CellForm) { return row.code; }};
const Shown<ArticleFact> articleDescription{"Descripción", false,
                                            [](const ArticleFact& row, CellForm) { return row.description; }};
const Shown<ArticleFact> articleBefore{
    "Antes", true, [](const ArticleFact& row, CellForm form) { return shown(row.before, form); }};
const Shown<ArticleFact> articleAfter{
    "Después", true, [](const ArticleFact& row, CellForm form) { return shown(row.after, form); }};
const Shown<ArticleFact> articlePercentage{"Cambio", true, [](const ArticleFact& row, CellForm form) {
                                               const double before = row.before.value_or(0);
                                               const double after = row.after.value_or(0);
                                               return form == CellForm::Page ? percentage(before, after)
                                                                             : plainPercentage(before, after);
                                           }};
const Shown<ArticleFact> articleStock{"Existencias", true, [](const ArticleFact& row, CellForm form) {
                                          return form == CellForm::Page ? units(row.stock)
                                                                        : plainAmount(row.stock);
                                      }};
const Shown<ArticleFact> articlePrice{"Precio", true, [](const ArticleFact& row, CellForm form) {
                                          return shown(row.after ? row.after : row.before, form);
                                      }};
const Shown<ArticleFact> articleValue{"Valor", true, [](const ArticleFact& row, CellForm form) {
                                          const double price = row.after.value_or(row.before.value_or(0));
                                          return form == CellForm::Page ? money(row.stock * price)
                                                                        : plainAmount(row.stock * price);
                                      }};

double share(const ArticleFact& row) {
    return std::abs(row.after.value_or(0) - row.before.value_or(0)) / std::abs(row.before.value_or(1));
}

std::string_view warningTitle(WarningKind kind) {
    switch (kind) {
        case WarningKind::RepeatedCode:
            return "Código repetido";
        case WarningKind::BlanksAroundCode:
            return "Código con blancos alrededor";
        case WarningKind::ApostropheInCode:
            return "Código con apóstrofo";
        case WarningKind::UnknownGroup:
            return "Grupo desconocido";
        case WarningKind::PriceNotPositive:
            return "Precio cero o negativo";
        case WarningKind::LongText:
            return "Texto más largo que la columna";
    }
    return {};
}

std::string warningDetail(const ListWarning& warning, CellForm) {
    switch (warning.kind) {
        case WarningKind::RepeatedCode:
            return "También en la fila " + plainNumber(warning.otherRow) +
                   (warning.otherValue.empty() ? "" : ", con el precio " + warning.otherValue);
        case WarningKind::UnknownGroup:
            return warning.otherRow > 0 ? "Toma el texto de la fila " + plainNumber(warning.otherRow)
                                        : "Queda sin descuento";
        default:
            return {};
    }
}

ReportTable faultTable(const RunReport& report) {
    ReportTable made = table<ListFault>(
        "faltas", "Faltas de la lista", pointers(report.faults),
        {{"Fila", true, [](const ListFault& row, CellForm form) { return shown(row.row, form); }},
         {"Código", false, [](const ListFault& row, CellForm) { return row.code; }},
         {"Columna", false, [](const ListFault& row, CellForm) { return row.column; }},
         {"Valor", false, [](const ListFault& row, CellForm) { return row.value; }},
         {"Motivo", false, [](const ListFault& row, CellForm) { return row.reason; }},
         {"Qué hacer", false, [](const ListFault& row, CellForm) { return std::string(advice(row)); }}});
    made.note = "Cada una detiene la importación.";
    return made;
}

/// The list's own rows, as they stand in it.
ReportTable faultyRows(const RunReport& report) {
    ReportTable made{.name = "filas-con-faltas", .title = "Filas con faltas", .columns = {}, .cell = {}};
    made.onPage = false;
    if (!report.list) return made;
    made.columns.push_back({"Fila", true});
    for (const std::string& column : report.list->columns) made.columns.push_back({column, false});
    made.rows = report.faults.size();
    made.cell = [&faults = report.faults](std::size_t row, std::size_t column, CellForm) {
        const ListFault& fault = faults[row];
        if (column == 0) return plainNumber(fault.row);
        return column <= fault.values.size() ? fault.values[column - 1] : std::string();
    };
    return made;
}

std::vector<Shown<ListWarning>> warningColumns() {
    return {{"Aviso", false,
             [](const ListWarning& row, CellForm) { return std::string(warningTitle(row.kind)); }},
            {"Fila", true, [](const ListWarning& row, CellForm form) { return shown(row.row, form); }},
            {"Código", false, [](const ListWarning& row, CellForm) { return row.code; }},
            {"Valor", false, [](const ListWarning& row, CellForm) { return row.value; }},
            {"Detalle", false, &warningDetail}};
}

/// Every warning, a row each.
ReportTable warningFile(const RunReport& report) {
    ReportTable made =
        table<ListWarning>("avisos", "Avisos de la lista", pointers(report.warnings), warningColumns());
    made.onPage = false;
    return made;
}

/// On the page the unknown groups, which may be thousands of rows, have a table of their own.
ReportTable warningTable(const RunReport& report) {
    std::vector<const ListWarning*> rows = pointers(report.warnings);
    std::erase_if(rows, [](const ListWarning* row) { return row->kind == WarningKind::UnknownGroup; });
    ReportTable made = table<ListWarning>("avisos", "Avisos de la lista", std::move(rows), warningColumns());
    made.note = "Ninguno detiene la importación por sí mismo.";
    made.folded = made.rows > largestChanges;
    made.inFile = false;
    return made;
}

struct UnknownGroup {
    std::string group;
    std::int32_t rows = 0;
    const ListWarning* first = nullptr;
};

ReportTable groupTable(const RunReport& report) {
    std::map<std::string_view, UnknownGroup> groups;
    for (const ListWarning& warning : report.warnings) {
        if (warning.kind != WarningKind::UnknownGroup) continue;
        UnknownGroup& group = groups[warning.value];
        if (group.rows++ == 0) group.first = &warning;
        group.group = warning.value;
    }
    auto rows = std::make_shared<std::vector<UnknownGroup>>();
    for (auto& [name, group] : groups) rows->push_back(std::move(group));
    ReportTable made = table<UnknownGroup>(
        "avisos", "Grupos desconocidos", pointers(*rows),
        {{"Grupo", false,
          [](const UnknownGroup& row, CellForm) { return row.group.empty() ? "(vacío)" : row.group; }},
         {"Filas", true, [](const UnknownGroup& row, CellForm) { return wholeNumber(row.rows); }},
         {"La primera", true,
          [](const UnknownGroup& row, CellForm form) { return shown(row.first->row, form); }},
         {"Su texto", false,
          [](const UnknownGroup& row, CellForm form) { return warningDetail(*row.first, form); }}});
    made.cell = [rows, cell = std::move(made.cell)](std::size_t row, std::size_t column, CellForm form) {
        return cell(row, column, form);
    };
    made.note = "Con --csv están todas las filas.";
    made.inFile = false;
    return made;
}

ReportTable largest(const RunReport& report) {
    std::vector<const ArticleFact*> rows = pointers(report.facts.repriced);
    const std::size_t count = std::min(largestChanges, rows.size());
    std::ranges::partial_sort(rows, rows.begin() + static_cast<std::ptrdiff_t>(count), std::ranges::greater(),
                              [](const ArticleFact* row) { return share(*row); });
    rows.resize(count);
    ReportTable made =
        table<ArticleFact>("", "Los mayores cambios de precio", std::move(rows),
                           {articleCode, articleDescription, articleBefore, articleAfter, articlePercentage});
    made.inFile = false;
    return made;
}

ReportTable allPrices(const RunReport& report) {
    std::vector<const ArticleFact*> rows = pointers(report.facts.repriced);
    std::ranges::stable_sort(rows, std::ranges::greater(),
                             [](const ArticleFact* row) { return share(*row); });
    for (const ArticleFact& row : report.facts.firstPriced) rows.push_back(&row);
    ReportTable made =
        table<ArticleFact>("precios", "Todos los precios que cambian", std::move(rows),
                           {articleCode, articleDescription, articleBefore, articleAfter, articlePercentage});
    made.folded = true;
    return made;
}

ReportTable withStockFirst(std::string_view name, std::string title,
                           const std::vector<ArticleFact>& articles) {
    std::vector<const ArticleFact*> rows = pointers(articles);
    std::stable_partition(rows.begin(), rows.end(), [](const ArticleFact* row) { return row->stock > 0; });
    ReportTable made =
        table<ArticleFact>(name, std::move(title), std::move(rows),
                           {articleCode, articleDescription, articlePrice, articleStock, articleValue});
    made.folded = made.rows > largestChanges;
    return made;
}

ReportTable addedTable(const RunReport& report) {
    ReportTable made = table<ArticleFact>("nuevos", "Artículos nuevos", pointers(report.facts.added),
                                          {articleCode, articleDescription, articlePrice});
    made.folded = made.rows > largestChanges;
    return made;
}

ReportTable stockTable(const RunReport& report) {
    return table<StockFact>(
        "existencias", "Existencias que cambian", pointers(report.facts.stock),
        {{"Código", false, [](const StockFact& row, CellForm) { return row.code; }},
         {"Antes", true,
          [](const StockFact& row, CellForm form) { return shown(std::optional(row.before), form); }},
         {"Después", true,
          [](const StockFact& row, CellForm form) { return shown(std::optional(row.after), form); }}});
}

ReportTable placeTable(const RunReport& report) {
    ReportTable made =
        table<PlaceFact>("ubicaciones", "Ubicaciones", pointers(report.facts.places),
                         {{"Código", false, [](const PlaceFact& row, CellForm) { return row.code; }},
                          {"Antes", false, [](const PlaceFact& row, CellForm) { return row.before; }},
                          {"Después", false, [](const PlaceFact& row, CellForm) { return row.after; }}});
    made.folded = made.rows > largestChanges;
    return made;
}

}  // namespace

std::vector<ReportTable> reportTables(const RunReport& report) {
    std::vector<ReportTable> tables;
    const auto add = [&](ReportTable made) {
        if (made.rows > 0) tables.push_back(std::move(made));
    };
    add(faultTable(report));
    add(faultyRows(report));
    add(warningFile(report));
    add(warningTable(report));
    add(groupTable(report));
    add(largest(report));
    add(allPrices(report));
    add(withStockFirst("bajas", "Artículos dados de baja", report.facts.retired));
    add(addedTable(report));
    add(withStockFirst("borrados", "Artículos borrados", report.facts.deleted));
    add(stockTable(report));
    add(placeTable(report));
    return tables;
}

}  // namespace pxtarvo::devhost
