#include "devhost/library/field_helper.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "devhost/record/recording_connection.h"
#include "host/counted_rows.h"
#include "platform/values/conversion.h"
#include "platform/values/number_text.h"
#include "platform/values/rounding.h"
#include "platform/values/text.h"

namespace pxtarvo::devhost {

namespace {

constexpr std::int16_t firstPrintableKey = 32;
constexpr int maximumDecimals = 9;
constexpr std::size_t groupSize = 3;

/// "250706" and "25072006" as "25/07/06" and "25/07/2006"; any other text as it is.
std::string withDateSeparators(std::string_view text) {
    std::string date(text);
    if ((date.size() == 6 || date.size() == 8) && std::ranges::all_of(date, isDigit)) {
        date.insert(4, 1, '/').insert(2, 1, '/');
    }
    return date;
}

std::optional<std::string> asDate(std::string_view text, const Locale& locale) {
    const std::string date = withDateSeparators(trimBlanks(text));
    if (!isDate(date, locale)) return std::nullopt;
    return dayMonthYear(date, locale);
}

std::optional<std::string> asAmount(std::string_view text, const Locale& locale) {
    double amount = 0;
    try {
        amount = roundHalfAway(toDouble(text, locale), 2);
    } catch (const RuntimeError&) {
        return std::nullopt;
    }
    std::string digits = plainNumber(std::fabs(amount));
    const std::size_t point = std::min(digits.find('.'), digits.size());
    std::string decimals = point < digits.size() ? digits.substr(point + 1) : "";
    decimals.resize(2, '0');
    digits.resize(point);
    for (std::size_t at = digits.size(); at > groupSize; at -= groupSize) {
        digits.insert(at - groupSize, locale.groupSeparator);
    }
    return (amount < 0 ? "-" : "") + digits + locale.decimalSeparator + decimals;
}

}  // namespace

DevFieldHelper::DevFieldHelper(std::shared_ptr<DevUser> user, std::shared_ptr<Recorder> recorder,
                               const Locale& locale)
    : user_(std::move(user)), recorder_(std::move(recorder)), locale_(locale) {}

double DevFieldHelper::Redondear(double valor, std::int16_t decimales) {
    if (decimales < 0 || decimales > maximumDecimals) throw RuntimeError(ErrorNumber::InvalidProcedureCall);
    return roundHalfAway(valor, decimales);
}

void DevFieldHelper::ColorFondo(double color) {
    normalColor_ = static_cast<std::uint32_t>(color);
}
void DevFieldHelper::ColorFoco(double color) {
    focusColor_ = static_cast<std::uint32_t>(color);
}

void DevFieldHelper::SalirCampo(TextBox& campo, std::string_view sFormato) {
    campo.setBackColor(normalColor_);
    std::optional<std::string> formatted;
    if (sFormato == "dd/mm/yyyy") {
        formatted = asDate(campo.text(), locale_);
    } else if (sFormato == "#,###,##0.00") {
        formatted = asAmount(campo.text(), locale_);
    }
    if (formatted) campo.setText(*formatted);
}

void DevFieldHelper::EntrarCampo(TextBox& campo, std::string_view) {
    campo.setBackColor(focusColor_);
    campo.select(0, static_cast<int>(characterCount(campo.text())));
}

void DevFieldHelper::Conexion(const ObjectRef<Connection>& conexion) {
    // What the helper itself asks of the database is the host's own doing.
    const auto* decorated = dynamic_cast<const RecordingConnection*>(conexion.shared().get());
    connection_ = decorated ? decorated->undecorated() : conexion;
}

void DevFieldHelper::FiltrarTecla(TextBox&, std::int16_t& KeyAscii, bool bFecha) {
    if (KeyAscii < firstPrintableKey) return;
    const std::string allowed = bFecha ? "0123456789/" : "0123456789+-" + locale_.decimalSeparator;
    if (KeyAscii > 0x7F || allowed.find(static_cast<char>(KeyAscii)) == std::string::npos) KeyAscii = 0;
}

std::string DevFieldHelper::chosenRow(const Busqueda& busqueda) {
    const ObjectRef<Recordset> rows = contado(connection_->Execute(busqueda.sSQL, adOptionUnspecified));
    const auto chosen = user_->choose(busqueda, *rows);
    if (!chosen || *chosen < 0 || *chosen >= rows->RecordCount()) return {};
    rows->AbsolutePosition(*chosen + 1);
    std::string answer = joinedText(rows->Fields(0), locale_);
    for (const std::int32_t column : {1, 2}) {
        answer.append(1, separadorBuscar).append(joinedText(rows->Fields(column), locale_));
    }
    return answer;
}

std::string DevFieldHelper::Buscar(const Busqueda& busqueda) {
    std::string answer;
    recorded([&] { answer = chosenRow(busqueda); },
             [&](const RuntimeError* error) {
                 if (recorder_) recorder_->search(busqueda, answer, error);
             });
    return answer;
}

}  // namespace pxtarvo::devhost
