#pragma once

// Conversions between values, by the platform's rules. They fail with the platform's own errors:
// 13 (TypeMismatch) for what cannot be converted, 94 (InvalidUseOfNull) for Null, 6 (Overflow) for what does
// not fit. Texts are UTF-8; lengths and cuts elsewhere count characters.

#include <compare>
#include <cstdint>
#include <optional>
#include <string>

#include "platform/values/locale.h"
#include "platform/values/variant.h"

namespace pxtarvo {

/// A text is read as the user writes numbers: blanks around it, a sign before or after, parentheses for a
/// negative, grouping and decimal separators, an exponent, a currency symbol, &H and &O. An empty text is 13.
double toDouble(const Variant& value, const Locale& locale);

/// Rounds halves to the even number, as the platform does when it makes a whole number; 6 beyond the range.
std::int32_t toLong(const Variant& value, const Locale& locale);

/// Any number but 0 is true.
bool toBoolean(const Variant& value, const Locale& locale);

/// Numbers have up to 15 significant digits (Single 7) and the user's decimal separator; dates are written
/// DD/MM/YYYY with a time of day only where there is one, a time alone on day 0. Null is 94, Empty is "", an
/// error value 13; an infinity or NaN is 6.
std::string toText(const Variant& value, const Locale& locale);

/// The text that joining `value` to a text gives: as toText, but Null is "".
std::string joinedText(const Variant& value, const Locale& locale);

/// The value's text without blanks (U+0020) at both ends; Null stays Null.
Variant trimmed(const Variant& value, const Locale& locale);

/// "Is it a date": the generous reading of a user's text (day first where that gives a date, else month or
/// year first; month names; two-digit years 1930 to 2029; an optional time of day), or a Date. Without a year
/// it is the system's current one, without a day the month's first. A text that is one number alone is no
/// date.
bool isDate(const Variant& value, const Locale& locale);

/// As isDate reads it; 13 where it is no date, 94 for Null. A number (not one written in a text) is days
/// since 30 December 1899; 6 outside the years 100 to 9999.
Date toDate(const Variant& value, const Locale& locale);

/// "DD/MM/YYYY" with two-digit day and month and four-digit year; fails as toDate does.
std::string dayMonthYear(const Variant& value, const Locale& locale);

/// Null compared with anything is nullopt (matches nothing). Two texts compare exactly; a text and a number
/// compare as numbers (13 if the text is none), a text and a date as dates. Empty is "" beside a text, else
/// 0.
std::optional<std::partial_ordering> compare(const Variant& a, const Variant& b, const Locale& locale);

}  // namespace pxtarvo
