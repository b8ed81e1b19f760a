#pragma once

// What a run did to the dealer's tables, from each row before and after it.

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "devhost/changes/table_comparison.h"

namespace pxtarvo::devhost {

struct ArticleFact {
    std::int64_t id = 0;
    std::string code{};
    std::string description{};
    std::optional<double> before{};  ///< selling price; none for a new article and for Null
    std::optional<double> after{};   ///< none for a deleted article and for Null
    double stock = 0;  ///< units in all warehouses, after the run; before it for a deleted article
};

/// A stock row, or a place, that was written.
struct StockFact {
    std::int64_t article = 0;
    std::string code{};
    double before = 0;  ///< units
    double after = 0;
};
struct PlaceFact {
    std::int64_t article = 0;
    std::string code{};
    std::string before{};
    std::string after{};
};

struct RunFacts {
    bool changed = false;                  ///< anything at all
    std::vector<ArticleFact> repriced;     ///< had a price, and have another
    std::vector<ArticleFact> firstPriced;  ///< had none, or zero
    std::vector<ArticleFact> added;
    std::vector<ArticleFact> retired;     ///< were active and are not
    std::size_t retiredThoughListed = 0;  ///< of these, the ones that the list names
    std::vector<ArticleFact> deleted;
    std::size_t reactivated = 0;  ///< were retired and are active
    std::size_t keptHigher = 0;   ///< listed articles that keep their price, which is above the list's last
    std::size_t supplierRowsNew = 0;
    std::size_t supplierRowsChanged = 0;
    std::size_t discountTexts = 0;  ///< new or changed
    std::size_t historyRows = 0;    ///< of stock movements, new
    std::vector<StockFact> stock;   ///< stock rows whose units changed, new ones and deleted ones among them
    std::vector<PlaceFact> places;
    double stockValueBefore = 0;  ///< units times selling price, over all articles
    double stockValueAfter = 0;
};

/// The price that the list gives to a code; nothing for a code that it lacks.
using ListPrice = std::function<std::optional<double>(std::string_view code)>;

/// Gathers the facts while the tables are compared.
class FactGathering {
  public:
    /// `listPrice` may be empty.
    explicit FactGathering(ListPrice listPrice) : listPrice_(std::move(listPrice)) {}

    /// Who sees the rows of a part. Each part of a table has fields of its own here, so that several may be
    /// compared at once.
    RowVisitor visitor(const TablePart& part);
    /// Once all tables are compared. Raises the provider's error.
    RunFacts finish(const BeforeAndAfter& states);

  private:
    /// What an article's price was and is; 0 for none.
    struct Prices {
        std::int64_t article = 0;
        double before = 0;
        double after = 0;
    };
    struct Units {
        double before = 0;
        double after = 0;
    };
    /// What one half of each table gives.
    struct Half {
        RunFacts facts;
        std::vector<Prices> prices;                     ///< of each article that has or had one
        std::unordered_map<std::int64_t, Units> stock;  ///< by article, where it has or had any
    };

    static RowVisitor articles(Half& half, const TableColumns& columns, ListPrice listPrice);
    static RowVisitor stock(Half& half, const TableColumns& columns);
    static RowVisitor places(Half& half, const TableColumns& columns);
    Units unitsOf(std::int64_t article) const;

    ListPrice listPrice_;
    std::array<Half, 2> halves_;
};

}  // namespace pxtarvo::devhost
