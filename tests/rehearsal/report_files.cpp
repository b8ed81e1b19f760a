#include "tests/rehearsal/report_files.h"

#include <gtest/gtest.h>
#include <libxml/HTMLparser.h>
#include <libxml/xpath.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <functional>
#include <optional>

#include "platform/values/text.h"
#include "tests/common/temporary_folder.h"

namespace pxtarvo::tests {

namespace {

struct FreeXPath {
    void operator()(xmlXPathContext* context) const noexcept { xmlXPathFreeContext(context); }
    void operator()(xmlXPathObject* object) const noexcept { xmlXPathFreeObject(object); }
    void operator()(xmlChar* text) const noexcept { xmlFree(text); }
};

void forEachNode(xmlDoc* document, const std::string& path, const std::function<void(xmlNode*)>& visit) {
    const std::unique_ptr<xmlXPathContext, FreeXPath> context(xmlXPathNewContext(document));
    const std::unique_ptr<xmlXPathObject, FreeXPath> found(
        xmlXPathEvalExpression(BAD_CAST path.c_str(), context.get()));
    if (!found || !found->nodesetval) return;
    for (int at = 0; at < found->nodesetval->nodeNr; ++at) visit(found->nodesetval->nodeTab[at]);
}

std::string contentOf(xmlNode* node) {
    const std::unique_ptr<xmlChar, FreeXPath> text(xmlNodeGetContent(node));
    return reinterpret_cast<const char*>(text.get());
}

std::string nameOf(const xmlNode* node) {
    return reinterpret_cast<const char*>(node->name);
}

/// "1.234,5" and "+1.234,5 %" without what is for the eye.
std::string plainNumber(std::string shown) {
    std::erase_if(shown, [](char c) { return c == '.' || c == '%' || c == ' ' || c == '+'; });
    return shown;
}

std::optional<double> numberOf(std::string text) {
    std::ranges::replace(text, ',', '.');
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

bool sameCells(const std::string& one, const std::string& other) {
    if (one == other) return true;
    const auto number = numberOf(one);
    const auto otherNumber = numberOf(other);
    return number && otherNumber && std::abs(*number - *otherNumber) < 0.005001;
}

}  // namespace

ReportPage::ReportPage(const std::string& path) {
    const std::string bytes = bytesOf(path);
    EXPECT_NE(bytes, "") << path;
    document_.reset(htmlReadMemory(bytes.data(), static_cast<int>(bytes.size()), nullptr, "UTF-8",
                                   HTML_PARSE_NOERROR | HTML_PARSE_NOWARNING | HTML_PARSE_NONET));
}

std::vector<std::string> ReportPage::texts(const std::string& path) const {
    std::vector<std::string> found;
    forEachNode(document_.get(), path, [&](xmlNode* node) { found.push_back(contentOf(node)); });
    return found;
}

std::string ReportPage::verdict() const {
    const auto found = texts("//p[contains(@class, 'veredicto')]");
    return found.size() == 1 ? found.front() : "";
}

std::map<std::string, Row> ReportPage::totals() const {
    std::map<std::string, Row> lines;
    forEachNode(document_.get(), "//table[@class = 'totales']//tr", [&](xmlNode* line) {
        Row cells;
        for (xmlNode* cell = line->children; cell; cell = cell->next) cells.push_back(contentOf(cell));
        lines[cells.at(0)] = {plainNumber(cells.at(1)), cells.at(2)};
    });
    return lines;
}

Rows ReportPage::table(const std::string& title) const {
    Rows rows;
    const std::string path = "//section[starts-with(normalize-space(.//h2|.//summary), '" + title + " (')]";
    forEachNode(document_.get(), path + "//tbody/tr", [&](xmlNode* line) {
        Row& cells = rows.emplace_back();
        for (xmlNode* cell = line->children; cell; cell = cell->next) {
            const bool number = cell->properties != nullptr;
            cells.push_back(number ? plainNumber(contentOf(cell)) : contentOf(cell));
        }
    });
    const auto headings = texts(path + "//h2|" + path + "//summary");
    EXPECT_TRUE(rows.empty() == headings.empty()) << title;
    if (!headings.empty()) {
        const std::string& heading = headings.front();
        EXPECT_EQ(plainNumber(heading.substr(title.size())), "(" + std::to_string(rows.size()) + ")");
    }
    return rows;
}

std::set<std::string> ReportPage::names() const {
    std::set<std::string> found;
    forEachNode(document_.get(), "//*", [&](xmlNode* node) { found.insert(nameOf(node)); });
    forEachNode(document_.get(), "//@*", [&](xmlNode* node) {
        const std::string name = nameOf(node);
        found.insert(name == "class" ? name + "=" + contentOf(node) : name);
    });
    return found;
}

Rows csvRows(const std::string& path) {
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    const std::string bytes = bytesOf(path);
    Rows rows;
    if (bytes.empty()) return rows;
    EXPECT_TRUE(bytes.starts_with(mark) && bytes.ends_with("\r\n")) << path;
    Row row(1);
    bool quoted = false;
    for (const char character : std::string_view(bytes).substr(mark.size())) {
        if (character == '"') {
            // Of a doubled one the second is the cell's.
            if (!quoted && row.back().ends_with('\x02'))
                row.back().back() = '"';
            else if (quoted)
                row.back() += '\x02';
            quoted = !quoted;
        } else if (quoted) {
            row.back() += character;
        } else if (character == ';') {
            row.emplace_back();
        } else if (character == '\n') {
            rows.push_back(std::move(row));
            row.assign(1, {});
        } else if (character != '\r') {
            row.back() += character;
        }
    }
    for (Row& cells : rows) {
        for (std::string& cell : cells) std::erase(cell, '\x02');
    }
    rows.erase(rows.begin());
    return rows;
}

bool sameTables(const Rows& one, const Rows& other) {
    return std::ranges::equal(one, other, [](const Row& row, const Row& otherRow) {
        return std::ranges::equal(row, otherRow, sameCells);
    });
}

}  // namespace pxtarvo::tests
