#include "devhost/report/report_page.h"

#include <string_view>
#include <utility>

#include "devhost/report/report_charts.h"
#include "devhost/report/report_numbers.h"
#include "devhost/report/report_style.h"
#include "devhost/report/report_tables.h"
#include "platform/values/text.h"

namespace pxtarvo::devhost {

namespace {

/// What stands in a page for a character that is not itself there; empty for one that is.
std::string_view escaped(char character) {
    switch (character) {
        case '&':
            return "&amp;";
        case '<':
            return "&lt;";
        case '>':
            return "&gt;";
        case '"':
            return "&quot;";
        case '\'':
            return "&#39;";
        default:
            // HTML knows no other control characters.
            return static_cast<unsigned char>(character) < ' ' && character != '\t' && character != '\n' ? " "
                                                                                                         : "";
    }
}

void appendEscaped(std::string& page, std::string_view text) {
    std::size_t copied = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const std::string_view instead = escaped(text[at]);
        if (instead.empty()) continue;
        page.append(text, copied, at - copied).append(instead);
        copied = at + 1;
    }
    page.append(text, copied);
}

class Page {
  public:
    explicit Page(const RunReport& report) : report_(report) {}

    std::string made() {
        page_ =
            "<!DOCTYPE html>\n<html lang=\"es\">\n<head>\n<meta charset=\"utf-8\">\n"
            "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n<title>";
        text(title());
        page_.append("</title>\n<style>\n").append(reportStyle).append("</style>\n</head>\n<body>\n<main>\n");
        head();
        listSection();
        totals();
        const std::vector<ReportTable> tables = reportTables(report_);
        // The pictures stand between what is wrong with the list and what the run changes.
        bool drawn = false;
        for (const ReportTable& table : tables) {
            if (!table.onPage) continue;
            if (table.name != "faltas" && table.name != "avisos" && !std::exchange(drawn, true)) pictures();
            addTable(table);
        }
        if (!drawn) pictures();
        messages();
        page_ += "</main>\n</body>\n</html>\n";
        return std::move(page_);
    }

  private:
    void text(std::string_view words) { appendEscaped(page_, words); }
    void element(std::string_view name, std::string_view words) {
        page_.append("<").append(name).append(">");
        text(words);
        page_.append("</").append(name.substr(0, name.find(' '))).append(">\n");
    }

    std::string title() const {
        std::string words(report_.words.title);
        if (report_.list && !report_.list->year.empty()) words.append(" de ").append(report_.list->year);
        return words;
    }

    void head() {
        page_ += "<header>\n";
        element("h1", title());
        page_.append("<p class=\"veredicto ").append(report_.endedWell ? "bien" : "mal").append("\">");
        text(verdict(report_));
        page_ += "</p>\n";
        if (!report_.endedWell && !report_.reason.empty()) element("p", report_.reason);
        if (report_.refusedWrites > 0) {
            element("p", joined({"El anfitrión rechazó ",
                                 wholeNumber(static_cast<std::int64_t>(report_.refusedWrites)),
                                 " escrituras; la primera: ", report_.firstRefused}));
        }
        std::string line = report_.when;
        if (report_.rehearsal && !report_.database.empty()) line += " · Ensayo: no se ha guardado nada";
        if (!report_.database.empty()) line.append(" · Base de datos: ").append(report_.database);
        element("p class=\"pie\"", line);
        page_ += "</header>\n";
    }

    void row(std::string_view label, std::string_view value) {
        if (value.empty()) return;
        page_ += "<dt>";
        text(label);
        page_ += "</dt><dd>";
        text(value);
        page_ += "</dd>\n";
    }

    void listSection() {
        if (!report_.list && report_.supplier.empty() && report_.brand.empty()) return;
        page_ += "<section>\n<h2>La lista</h2>\n<dl>\n";
        if (report_.list) {
            const ListFile& list = *report_.list;
            row("Fichero", list.path);
            row("Tamaño", wholeNumber(static_cast<std::int64_t>(list.bytes)) + " bytes");
            row("Fecha", list.modified);
            row("SHA-256", list.sha256);
            row("Tabla", list.table);
            row("Filas leídas", wholeNumber(list.rows));
            row("Año", list.year);
        }
        row("Proveedor", report_.supplier);
        row("Marca", report_.brand);
        if (report_.list && report_.list->look) {
            const std::vector<std::string> sentences = lookSentences(*report_.list);
            std::string look = sentences.empty() ? "Parecen las de ese año" : "No parecen las de ese año.";
            for (const std::string& sentence : sentences) look.append(" ").append(sentence);
            row("Columnas", look);
        }
        page_ += "</dl>\n</section>\n";
    }

    void total(std::string_view label, std::size_t count, std::string_view detail = {}) {
        if (count == 0) return;
        page_.append("<tr><td>");
        text(label);
        page_.append("</td><td class=\"n\">")
            .append(wholeNumber(static_cast<std::int64_t>(count)))
            .append("</td><td>");
        text(detail);
        page_ += "</td></tr>\n";
    }

    void totals() {
        const RunFacts& facts = report_.facts;
        if (report_.database.empty()) return;
        page_ += "<section>\n<h2>Totales</h2>\n";
        if (!facts.changed) {
            element("p", report_.rehearsal ? "No cambiaría nada." : "No ha cambiado nada.");
            page_ += "</section>\n";
            return;
        }
        page_ += "<table class=\"totales\">\n";
        total("Artículos nuevos", facts.added.size());
        total("Con otro precio", facts.repriced.size());
        total("Con su primer precio", facts.firstPriced.size());
        total("Conservan su precio, más alto que el de la lista", facts.keptHigher);
        total("Vuelven a estar activos", facts.reactivated);
        total("Dados de baja", facts.retired.size(), retiredDetail());
        total("Borrados", facts.deleted.size());
        total("Filas de proveedor nuevas", facts.supplierRowsNew);
        total("Filas de proveedor cambiadas", facts.supplierRowsChanged);
        total("Textos de descuento", facts.discountTexts);
        total("Ubicaciones", facts.places.size());
        total("Existencias cambiadas", facts.stock.size());
        total("Movimientos de existencias", facts.historyRows);
        page_ += "</table>\n</section>\n";
    }

    std::string retiredDetail() const {
        std::size_t withStock = 0;
        double unitCount = 0;
        double value = 0;
        for (const ArticleFact& article : report_.facts.retired) {
            if (article.stock <= 0) continue;
            ++withStock;
            unitCount += article.stock;
            value += article.stock * article.after.value_or(0);
        }
        std::string detail =
            joined({wholeNumber(static_cast<std::int64_t>(withStock)), " con existencias: ", units(unitCount),
                    " unidades, por valor de ", money(value)});
        if (const std::size_t listed = report_.facts.retiredThoughListed; listed > 0) {
            detail.append("; ").append(wholeNumber(static_cast<std::int64_t>(listed)));
            detail += " están en la lista, pero el formato de ese año no los reactiva";
        }
        return detail;
    }

    void pictures() {
        const std::string histogram = priceHistogram(report_.facts.repriced);
        const std::string bars = report_.facts.changed ? stockValueBars(report_.facts.stockValueBefore,
                                                                        report_.facts.stockValueAfter)
                                                       : std::string();
        if (!histogram.empty()) {
            page_ += "<section>\n<h2>Cambios de precio, en tanto por ciento</h2>\n";
            page_.append(histogram).append("</section>\n");
        }
        if (!bars.empty()) {
            page_ += "<section>\n<h2>Valor de las existencias</h2>\n";
            page_.append(bars).append("</section>\n");
        }
    }

    void addTable(const ReportTable& table) {
        const std::string heading =
            joined({table.title, " (", wholeNumber(static_cast<std::int64_t>(table.rows)), ")"});
        page_ += "<section>\n";
        if (table.folded) {
            page_ += "<details>\n<summary>";
            text(heading);
            page_ += "</summary>\n";
        } else {
            element("h2", heading);
        }
        if (!table.note.empty()) element("p", table.note);
        page_ += "<div class=\"tabla\"><table>\n<thead><tr>";
        for (const ReportColumn& column : table.columns) {
            page_ += column.number ? "<th class=\"n\">" : "<th>";
            text(column.caption);
            page_ += "</th>";
        }
        page_ += "</tr></thead>\n<tbody>\n";
        for (std::size_t row = 0; row < table.rows; ++row) {
            page_ += "<tr>";
            for (std::size_t column = 0; column < table.columns.size(); ++column) {
                page_ += table.columns[column].number ? "<td class=\"n\">" : "<td>";
                text(table.cell(row, column, CellForm::Page));
                page_ += "</td>";
            }
            page_ += "</tr>\n";
        }
        page_ += "</tbody>\n</table></div>\n";
        if (table.folded) page_ += "</details>\n";
        page_ += "</section>\n";
    }

    void messages() {
        if (report_.messages.empty()) return;
        page_ += "<section>\n<h2>Mensajes de la ventana</h2>\n<ul>\n";
        for (const std::string& message : report_.messages) element("li", message);
        page_ += "</ul>\n</section>\n";
    }

    const RunReport& report_;
    std::string page_;
};

}  // namespace

std::string reportPage(const RunReport& report) {
    return Page(report).made();
}

}  // namespace pxtarvo::devhost
