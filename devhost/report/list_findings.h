#pragma once

// What a list's rows give to think about, none of which stops an import.

#include <cstdint>
#include <memory_resource>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "devhost/report/list_kind.h"
#include "devhost/watch/list_watch.h"

namespace pxtarvo::devhost {

enum class WarningKind {
    RepeatedCode,
    BlanksAroundCode,
    ApostropheInCode,
    UnknownGroup,
    PriceNotPositive,
    LongText
};

struct ListWarning {
    WarningKind kind = WarningKind::RepeatedCode;
    std::int32_t row = 0;
    std::string code;
    std::string value;  ///< what is to be thought about: the price, the group, the text
    /// Of a repeated code the row that it stood in before, of an unknown group the one whose text it takes
    /// (0: none).
    std::int32_t otherRow = 0;
    std::string otherValue;  ///< of a repeated code the price there
};

/// Goes through the rows in their order, each once.
class ListFindings {
  public:
    explicit ListFindings(const ListKind& kind);

    /// The positions that row() looks at.
    std::vector<std::int32_t> wanted() const;
    void row(const ListRow& row);

    std::int32_t rows() const noexcept { return rows_; }
    const std::vector<ListWarning>& warnings() const noexcept { return warnings_; }
    /// The price in the last row of a code, compared as the host's server compares texts; nothing where the
    /// list lacks the code or has no number there. `next` is for the caller to keep, 0 at first: asked for in
    /// the order of the list, in which a dealer's articles mostly stand, a code need not be looked for.
    std::optional<double> lastPrice(std::string_view code, std::size_t& next) const;

  private:
    /// A hash and the equality of codes.
    struct SameCode {
        using is_transparent = void;
        std::size_t operator()(std::string_view code) const;  // not noexcept, so that each code keeps its own
        bool operator()(std::string_view one, std::string_view other) const noexcept;
    };
    struct Stood {
        std::size_t place = 0;  ///< in inOrder_
        std::int32_t row = 0;
        std::optional<double> price;
        Variant listedPrice;
    };

    void add(WarningKind kind, std::string_view code, std::string value, std::int32_t otherRow = 0,
             std::string otherValue = {});

    ListKind kind_;
    std::vector<std::pair<std::int32_t, std::size_t>> texts_;  ///< positions, and how many characters fit
    std::pmr::monotonic_buffer_resource memory_;               ///< of the codes, in the order of the list
    using Codes = std::pmr::unordered_map<std::pmr::string, Stood, SameCode, SameCode>;
    Codes codes_{&memory_};
    std::vector<const Codes::value_type*> inOrder_;  ///< each code where it stood first
    std::vector<ListWarning> warnings_;
    std::int32_t rows_ = 0;
    std::int32_t groupRow_ = 0;  ///< the last row of a known group
};

}  // namespace pxtarvo::devhost
