#pragma once

// A report as a reader finds it: the page through a parser of HTML, the tables from their files.

#include <libxml/tree.h>

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace pxtarvo::tests {

using Row = std::vector<std::string>;
using Rows = std::vector<Row>;

class ReportPage {
  public:
    explicit ReportPage(const std::string& path);

    /// What the elements hold that an XPath finds, in their order.
    std::vector<std::string> texts(const std::string& path) const;
    std::string verdict() const;
    /// Label, count and detail of each line.
    std::map<std::string, Row> totals() const;
    /// The rows of the table whose heading begins with `title`; its numbers as the files have them, but for
    /// the count of decimals.
    Rows table(const std::string& title) const;
    /// The names of all elements and attributes, and the attributes' values where these are classes.
    std::set<std::string> names() const;

  private:
    struct Free {
        void operator()(xmlDoc* document) const noexcept { xmlFreeDoc(document); }
    };

    std::unique_ptr<xmlDoc, Free> document_;
};

/// The cells below the captions; none where there is no such file.
Rows csvRows(const std::string& path);

/// Whether the numbers and texts of two tables are the same, numbers within half a cent.
bool sameTables(const Rows& one, const Rows& other);

}  // namespace pxtarvo::tests
