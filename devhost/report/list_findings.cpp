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

}  // namespace

/// Letters beyond ASCII take no part, and what the comparison passes over neither.
std::size_t ListFindings::SameCode::operator()(const std::string& code) const {
    std::size_t hash = 14695981039346656037U;  // FNV-1a
    for (const char character : trimTrailingBlanks(code)) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte >= 0x80) continue;
        hash = (hash ^ (byte >= 'A' && byte <= 'Z' ? byte + ('a' - 'A') : byte)) * 1099511628211U;
    }
    return hash;
}

bool ListFindings::SameCode::operator()(const std::string& one, const std::string& other) const noexcept {
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

void ListFindings::add(WarningKind kind, const std::string& code, std::string value, std::int32_t otherRow,
                       std::string otherValue) {
    warnings_.push_back({kind, rows_, code, std::move(value), otherRow, std::move(otherValue)});
}

void ListFindings::row(const ListRow& row) {
    const ColumnasLista& columns = kind_.columns;
    rows_ = row.number;
    const std::string asItStands = textOf(at(row, columns.nCodigo));
    const std::string code(trimBlanks(asItStands));
    if (code.size() != asItStands.size()) add(WarningKind::BlanksAroundCode, code, asItStands);
    if (code.find('\'') != code.npos) add(WarningKind::ApostropheInCode, code, code);

    Stood stands{row.number, {}, {}};
    if (columns.nPrecio >= 0) {
        stands.listedPrice = at(row, columns.nPrecio);
        stands.price = numberOf(stands.listedPrice);
        if (stands.price && *stands.price <= 0) {
            add(WarningKind::PriceNotPositive, code, textOf(stands.listedPrice));
        }
    }
    const auto [before, fresh] = codes_.try_emplace(code, stands);
    if (!fresh) {
        add(WarningKind::RepeatedCode, code, textOf(stands.listedPrice), before->second.row,
            textOf(before->second.listedPrice));
        before->second = std::move(stands);
    }

    if (kind_.knowsGroup) {
        const std::string group(trimBlanks(textOf(at(row, columns.nGrupo))));
        if (kind_.knowsGroup(group)) {
            groupRow_ = row.number;
        } else {
            add(WarningKind::UnknownGroup, code, group, kind_.groupCarriesOver ? groupRow_ : 0);
        }
    }

    for (const auto& [position, size] : texts_) {
        const std::string text(trimBlanks(textOf(at(row, position))));
        if (text.size() > size && characterCount(text) > size) add(WarningKind::LongText, code, text);
    }
}

std::optional<double> ListFindings::lastPrice(std::string_view code) const {
    const auto found = codes_.find(std::string(code));
    return found == codes_.end() ? std::nullopt : found->second.price;
}

}  // namespace pxtarvo::devhost
