#include "platform/values/locale.h"

namespace pxtarvo {

const Locale& spanishLocale() {
    static const Locale locale{
        .decimalSeparator = ",",
        .groupSeparator = ".",
        .currencySymbol = "€",
        .dateSeparator = "/",
        .dateOrder = DateOrder::DayMonthYear,
        .monthNames = {"enero", "febrero", "marzo", "abril", "mayo", "junio", "julio", "agosto", "septiembre",
                       "octubre", "noviembre", "diciembre"},
        .monthShortNames = {"ene", "feb", "mar", "abr", "may", "jun", "jul", "ago", "sep", "oct", "nov",
                            "dic"},
    };
    return locale;
}

}  // namespace pxtarvo
