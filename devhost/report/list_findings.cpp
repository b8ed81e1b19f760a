#include "devhost/report/list_findings.h"

#include <functional>
#include <utility>

#include "devhost/dealer/schema.h"
#include "devhost/report/lenient_values.h"
#include "platform/portable/dialect/sql_collation.h"
#include "platform/values/text.h"

namespace pxtarvo::devhost {

namespace {

const Variant& at(const ListRow& row, std::int32_t position) {
    static const Variant none;
    return position < 0 || static_cast<std::size_t>(position) >= row.values.size()
               ? none
               : row.values[static_cast<std::size_t>(position)];
}

/// A value as a text, without a copy of one that is a text already.
class ListedText {
  public:
    explicit ListedText(const Variant& value) {
        if (const auto* text = value.get<std::string>()) {
            text_ = *text;
        } else {
            text_ = own_ = textOf(value);
        }
    }
    ListedText(const ListedText&) = delete;
    ListedText& operator=(const ListedText&) = delete;

    std::string_view text() const noexcept { return text_; }
    std::string_view trimmed() const noexcept { return trimBlanks(text_); }

  private:
    std::string own_;
    std::string_view text_;
};

}  // namespace

/// Letters beyond ASCII take no part, and what the comparison passes over neither.
std::size_t ListFindings::SameCode::operator()(std::string_view code) const {
    std::size_t hash = 14695981039346656037U;  // FNV-1a
    for (const char character : trimTrailingBlanks(code)) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte >= 0x80) continue;
        hash = (hash ^ (byte >= 'A' && byte <= 'Z' ? byte + ('a' - 'A') : byte)) * 1099511628211U;
    }
    return hash;
}

bool ListFindings::SameCode::operator()(std::string_view one, std::string_view other) const noexcept {
    return one == other || portable::compareDealerTexts(one, other) == 0;
}

ListFindings::ListFindings(const ListKind& kind) : kind_(kind) {
    const ColumnasLista& columns = kind.columns;
    const std::pair<std::int32_t, const Columna&> texts[] = {
        {columns.nCodigo, Art::Cod}, {columns.nDescripcion, Art::Des}, {columns.nCodigoBarras, Art::barCode}};
    for (const auto& [position, column] : texts) {
        if (position >= 0) texts_.emplace_back(position, textSize(column));
    }
}

std::vector<std::int32_t> ListFindings::wanted() const {
    const ColumnasLista& columns = kind_.columns;
    std::vector<std::int32_t> positions;
    for (const std::int32_t position :
         {columns.nCodigo, columns.nPrecio, columns.nGrupo, columns.nDescripcion, columns.nCodigoBarras}) {
        if (position >= 0) positions.push_back(position);
    }
    return positions;
}

void ListFindings::add(WarningKind kind, std::string_view code, std::string value, std::int32_t otherRow,
                       std::string otherValue) {
    warnings_.push_back({kind, rows_, std::string(code), std::move(value), otherRow, std::move(otherValue)});
}

void ListFindings::row(const ListRow& row) {
    const ColumnasLista& columns = kind_.columns;
    rows_ = row.number;
    const ListedText asItStands(at(row, columns.nCodigo));
    const std::string_view code = asItStands.trimmed();
    if (code.size() != asItStands.text().size())
        add(WarningKind::BlanksAroundCode, code, std::string(asItStands.text()));
    if (code.find('\'') != code.npos) add(WarningKind::ApostropheInCode, code, std::string(code));

    Stood stands{.place = inOrder_.size(), .row = row.number, .price = {}, .listedPrice = {}};
    if (columns.nPrecio >= 0) {
        stands.listedPrice = at(row, columns.nPrecio);
        stands.price = numberOf(stands.listedPrice);
        if (stands.price && *stands.price <= 0) {
            add(WarningKind::PriceNotPositive, code, textOf(stands.listedPrice));
        }
    }
    const auto [before, fresh] = codes_.try_emplace(std::pmr::string(code, &memory_), stands);
    if (fresh) {
        inOrder_.push_back(&*before);
    } else {
        add(WarningKind::RepeatedCode, code, textOf(stands.listedPrice), before->second.row,
            textOf(before->second.listedPrice));
        stands.place = before->second.place;
        before->second = std::move(stands);
    }

    if (kind_.knowsGroup) {
        const ListedText listed(at(row, columns.nGrupo));
        const std::string_view group = listed.trimmed();
        if (kind_.knowsGroup(group)) {
            groupRow_ = row.number;
        } else {
            add(WarningKind::UnknownGroup, code, std::string(group), kind_.groupCarriesOver ? groupRow_ : 0);
        }
    }

    for (const auto& [position, size] : texts_) {
        const ListedText listed(at(row, position));
        const std::string_view text = listed.trimmed();
        if (text.size() > size && characterCount(text) > size)
            add(WarningKind::LongText, code, std::string(text));
    }
}

std::optional<double> ListFindings::lastPrice(std::string_view code, std::size_t& next) const {
    if (next == inOrder_.size() || std::string_view(inOrder_[next]->first) != code) {
        const auto found = codes_.find(code);
        if (found == codes_.end()) return std::nullopt;
        next = found->second.place;
    }
    return inOrder_[next++]->second.price;
}

}  // namespace pxtarvo::devhost
