#include "devhost/report/report_charts.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "devhost/report/report_numbers.h"
#include "platform/values/text.h"

namespace pxtarvo::devhost {

namespace {

/// Per cent, each the end of a bin and the beginning of the next.
constexpr double edges[] = {-50, -20, -10, -5, 0, 5, 10, 20, 50};
constexpr std::size_t bins = std::size(edges) + 1;

// Units of the pictures.
constexpr int width = 640;
constexpr int barSlot = width / static_cast<int>(bins);
constexpr int barGap = 6;
constexpr int chartTop = 20;
constexpr int chartHeight = 180;
constexpr int lineHeight = 18;
constexpr int rowHeight = 34;
constexpr int labelWidth = 80;
constexpr int amountWidth = 150;

std::string number(double value) {
    return std::to_string(static_cast<int>(std::lround(value)));
}

std::string bar(std::string_view kind, double x, double y, double barWidth, double height) {
    return joined({"<rect class=\"", kind, "\" x=\"", number(x), "\" y=\"", number(y), "\" width=\"",
                   number(barWidth), "\" height=\"", number(height), "\"/>"});
}

std::string text(std::string_view anchor, double x, double y, std::string_view words) {
    return joined({"<text text-anchor=\"", anchor, "\" x=\"", number(x), "\" y=\"", number(y), "\">", words,
                   "</text>"});
}

std::string picture(int height, std::string_view title, std::string_view contents) {
    return joined({"<svg role=\"img\" viewBox=\"0 0 ", std::to_string(width), " ", std::to_string(height),
                   "\"><title>", title, "</title>", contents, "</svg>\n"});
}

/// Under the line between two bars.
std::string edgeLabel(double edge) {
    return joined({edge > 0 ? "+" : "", std::to_string(static_cast<int>(edge)), " %"});
}

}  // namespace

std::string priceHistogram(const std::vector<ArticleFact>& repriced) {
    if (repriced.empty()) return {};
    std::size_t counts[bins] = {};
    for (const ArticleFact& article : repriced) {
        const double before = article.before.value_or(0);
        const double change = (article.after.value_or(0) - before) / std::abs(before) * 100;
        counts[std::ranges::upper_bound(edges, change) - std::begin(edges)] += 1;
    }
    const auto most = static_cast<double>(*std::ranges::max_element(counts));
    std::string contents;
    for (std::size_t bin = 0; bin < bins; ++bin) {
        const double x = static_cast<double>(bin) * barSlot;
        const double height = static_cast<double>(counts[bin]) / most * chartHeight;
        const double top = chartTop + chartHeight - height;
        const double middle = x + barSlot / 2.0;
        contents += bar(edges[std::min(bin, std::size(edges) - 1)] <= 0 ? "baja" : "sube", x + barGap / 2.0,
                        top, barSlot - barGap, height);
        if (counts[bin] > 0) {
            contents += text("middle", middle, top - 4, wholeNumber(static_cast<std::int64_t>(counts[bin])));
        }
        if (bin < std::size(edges)) {
            contents +=
                text("middle", x + barSlot, chartTop + chartHeight + lineHeight, edgeLabel(edges[bin]));
        }
    }
    return picture(chartTop + chartHeight + lineHeight + barGap,
                   "Número de artículos según el cambio de su precio, en tanto por ciento", contents);
}

std::string stockValueBars(double before, double after) {
    const double most = std::max(before, after);
    if (most <= 0) return {};
    struct Row {
        std::string_view label;
        std::string_view kind;
        double value;
    };
    const Row rows[] = {{"Antes", "antes", before}, {"Después", "sube", after}};
    std::string contents;
    int top = 0;
    for (const Row& row : rows) {
        const double length = std::max(0.0, row.value) / most * (width - labelWidth - amountWidth);
        contents += text("start", 0, top + lineHeight, row.label);
        contents += bar(row.kind, labelWidth, top + 2, length, rowHeight - 10);
        contents += text("start", labelWidth + length + barGap, top + lineHeight, money(row.value));
        top += rowHeight;
    }
    return picture(top, "Valor de las existencias a los precios de antes y de después", contents);
}

}  // namespace pxtarvo::devhost
