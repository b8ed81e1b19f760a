#include "platform/values/conversion.h"
#include "platform/values/number_text.h"
#include "platform/values/rounding.h"
#include "platform/values/sum.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

#include "platform/values/runtime_error.h"
#include "platform/values/text.h"

namespace pxtarvo {
namespace {

const Locale& es = spanishLocale();

/// The number of the error that `call` raises, 0 for none.
std::int32_t errorOf(const std::function<void()>& call) {
    try {
        call();
    } catch (const RuntimeError& error) {
        return error.number();
    }
    return 0;
}

constexpr std::int32_t overflow = 6;
constexpr std::int32_t mismatch = 13;
constexpr std::int32_t nullUsed = 94;

template <class Value, class Result>
using Cases = std::initializer_list<std::pair<Value, Result>>;

void read(Cases<const char*, double> cases) {
    for (const auto& [text, number] : cases) EXPECT_EQ(toDouble(text, es), number) << text;
}

TEST(Conversion, ReadsNumbersAsTheUserWritesThem) {
    read({{"12,50", 12.5}, {"1.234,56", 1234.56}, {" 7 ", 7}, {"\t7\r\n", 7}, {"007", 7}, {"0,1", 0.1}});
    read({{"-3,5", -3.5}, {"3,5-", -3.5}, {"- 3", -3}, {"+3", 3}, {"(3,5)", -3.5}, {" ( 3 ) ", -3}});
    read({{"1e2", 100}, {"1D-2", 0.01}, {"1,5E+3", 1500}, {"1e-400", 0}, {"0e999999999", 0}});
    read({{"12.50", 1250}, {"1.2.3", 123}, {",5", 0.5}, {"5,", 5}});
    read({{"12 €", 12}, {"€ -12", -12}, {"-€12", -12}});
    read({{"&H1F", 31}, {"&o17", 15}, {"-&H10", -16}});
    read({{"123456789012345678901234567890", 123456789012345678901234567890.0}});
    read({{"0,000000000000000000000000000000000000001e40", 10}});
    for (const char* text : {"",   " ",    "consultar",  "1,2,3", "1,2.3",  "--1", "-1-", "(-1)", "(1", "1)",
                             "1e", "1 e2", "e2",         "12x",   "€",      "€1€", "&",   "&HG",  "&H", "1 2",
                             ".",  ",",    "25/07/2006", "1e2,5", "\u00A07"}) {
        EXPECT_EQ(errorOf([&] { toDouble(text, es); }), mismatch) << text;
    }
    for (const char* text : {"1e309", "1e99999999999", "&H1FFFFFFFFFFFFFFFF"}) {
        EXPECT_EQ(errorOf([&] { toDouble(text, es); }), overflow) << text;
    }
}

TEST(Conversion, TakesEveryTypeAsANumber) {
    EXPECT_EQ(toDouble(Empty{}, es), 0);
    EXPECT_EQ(toDouble(true, es), -1);
    EXPECT_EQ(toDouble(Currency{-125000}, es), -12.5);
    EXPECT_EQ(toDouble(Decimal{.low = 1550, .scale = 2, .negative = true}, es), -15.5);
    EXPECT_EQ(toDouble(Decimal{.low = 0, .high = 1}, es), 18446744073709551616.0);
    EXPECT_EQ(toDouble(Date{38923.5}, es), 38923.5);
    EXPECT_EQ(errorOf([] { toDouble(Null{}, es); }), nullUsed);
    EXPECT_EQ(errorOf([] { toDouble(ErrorValue{2042}, es); }), mismatch);
}

TEST(Conversion, MakesWholeNumbersHalvesToEven) {
    const auto made = [](Cases<Variant, std::int32_t> cases) {
        for (const auto& [value, whole] : cases) EXPECT_EQ(toLong(value, es), whole);
    };
    made({{2.5, 2}, {3.5, 4}, {-2.5, -2}, {-0.5, 0}, {2.5000001, 3}, {0.49999999999999994, 0}, {"2,5", 2}});
    made({{Currency{35000}, 4}, {true, -1}, {"&HFFFF", 65535}, {"&HFFFFFFFF", -1}});
    made({{2147483647.4, 2147483647}, {-2147483648.5, std::numeric_limits<std::int32_t>::min()}});
    for (const Variant& value : {Variant(2147483647.5), Variant("2147483648"), Variant("&H100000000")}) {
        EXPECT_EQ(errorOf([&] { toLong(value, es); }), overflow);
    }
    EXPECT_EQ(errorOf([] { toLong(Null{}, es); }), nullUsed);
}

TEST(Conversion, MakesBooleans) {
    for (const Variant& value :
         {Variant(true), Variant(0.1), Variant("verdadero"), Variant("TRUE"), Variant("-1")}) {
        EXPECT_TRUE(toBoolean(value, es));
    }
    for (const Variant& value :
         {Variant(), Variant(0.0), Variant("Falso"), Variant("false"), Variant("0,0")}) {
        EXPECT_FALSE(toBoolean(value, es));
    }
    EXPECT_EQ(errorOf([] { toBoolean("sí", es); }), mismatch);
    EXPECT_EQ(errorOf([] { toBoolean(Null{}, es); }), nullUsed);
}

TEST(Conversion, WritesValuesAsTheUserReadsThem) {
    const auto written = [](Cases<Variant, const char*> cases) {
        for (const auto& [value, text] : cases) EXPECT_EQ(toText(value, es), text);
    };
    constexpr auto least = std::numeric_limits<std::int64_t>::min();
    written({{12.5, "12,5"}, {0.1 + 0.2, "0,3"}, {-0.0, "0"}, {1e15, "1E+15"}, {-1.5e100, "-1,5E+100"}});
    written({{999999999999999.0, "999999999999999"}, {0.0001, "0,0001"}, {0.00001, "1E-05"}});
    written({{1.0f / 3, "0,3333333"}, {1e7f, "1E+07"}, {std::uint8_t{255}, "255"}, {std::int16_t{-5}, "-5"}});
    written({{true, "Verdadero"}, {false, "Falso"}, {Empty{}, ""}});
    written(
        {{Currency{125000}, "12,5"}, {Currency{-1}, "-0,0001"}, {Currency{least}, "-922337203685477,5808"}});
    written({{Decimal{.low = 1550, .scale = 2}, "15,5"}, {Decimal{.low = 5, .scale = 3}, "0,005"}});
    written({{Decimal{.low = 1500, .scale = 2, .negative = true}, "-15"}});
    written({{Decimal{.scale = 5, .negative = true}, "0"}});
    written({{Decimal{.low = 0xFFFFFFFFFFFFFFFF, .high = 0xFFFFFFFF}, "79228162514264337593543950335"}});
    written({{Date{38923}, "25/07/2006"}, {Date{38923 + 9.0 / 24 + 5.0 / 1440}, "25/07/2006 9:05:00"}});
    written({{Date{0.5}, "12:00:00"}, {Date{0}, "0:00:00"}, {Date{-657434}, "01/01/0100"}});
    EXPECT_EQ(errorOf([] { toText(Null{}, es); }), nullUsed);
    EXPECT_EQ(errorOf([] { toText(ErrorValue{2042}, es); }), mismatch);
    EXPECT_EQ(errorOf([] { toText(std::numeric_limits<double>::infinity(), es); }), overflow);

    EXPECT_EQ(joinedText(Null{}, es), "");
    EXPECT_EQ(trimmed(Null{}, es), Variant(Null{}));
    EXPECT_EQ(trimmed("  a ", es), Variant("a"));
    EXPECT_EQ(trimmed(1.5, es), Variant("1,5"));
}

TEST(Conversion, ReadsDatesGenerously) {
    const auto read = [](std::initializer_list<const char*> texts, const CalendarTime& calendar) {
        for (const char* text : texts) {
            ASSERT_TRUE(isDate(text, es)) << text;
            EXPECT_EQ(toCalendar(toDate(text, es)), calendar) << text;
        }
    };
    const int thisYear = toCalendar(toDate("1/1", es)).year;
    read({"25/07/2006", "25.7.2006", "25 07 2006", "7/25/2006", "2006-07-25", "25 jul 2006"}, {2006, 7, 25});
    read({"25-jul.-06", "25 de Julio de 2006", "25JULIO2006", "julio 25 2006", "2006 jul 25"}, {2006, 7, 25});
    read({" 5-7-06 "}, {2006, 7, 5});
    read({"1/1/29"}, {2029, 1, 1});
    read({"1/1/30"}, {1930, 1, 1});
    read({"29/2/2008"}, {2008, 2, 29});
    read({"julio 2006", "07/2006", "2006/07"}, {2006, 7, 1});
    read({"jul 32"}, {1932, 7, 1});
    read({"12/50"}, {1950, 12, 1});
    read({"25/7", "7/25", "25 julio"}, {thisYear, 7, 25});
    read({"25/07/2006 9:05"}, {2006, 7, 25, 9, 5, 0});
    read({"23:59:59 25/07/2006"}, {2006, 7, 25, 23, 59, 59});
    read({"25/07/2006 12:30 am"}, {2006, 7, 25, 0, 30, 0});
    read({"1:30PM"}, {1899, 12, 30, 13, 30, 0});
    read({"1/1/1850 18:00"}, {1850, 1, 1, 18, 0, 0});
    for (
        const std::string_view no : split(
            "|  |pronto|32/13/2006|30/02/2006|29/02/2007|12|2006|100|12,5|25/07/|/25/07|25//07|25/07/2006/1|"
            "25/07/20066|1/1/99999|julio|25 julio agosto|25 de|de julio|24:00|9:60|9:05:60|9|9:|:05|9:05 9:05|"
            "25/07/2006/9:05|9:05/25/07/2006|13:00 pm|25/07/2006 x|005/07/2006|10 julio 2006 5|1:2:3:4|"
            "25/07/2006\u00A0|1e2",
            '|')) {
        const Variant text{std::string(no)};
        EXPECT_FALSE(isDate(text, es)) << no;
        EXPECT_EQ(errorOf([&] { toDate(text, es); }), mismatch) << no;
    }
}

TEST(Conversion, FollowsTheLocalesDateOrder) {
    Locale monthFirst = es;
    monthFirst.dateOrder = DateOrder::MonthDayYear;
    Locale yearFirst = es;
    yearFirst.dateOrder = DateOrder::YearMonthDay;
    EXPECT_EQ(dayMonthYear("05/07/2006", es), "05/07/2006");
    EXPECT_EQ(dayMonthYear("05/07/2006", monthFirst), "07/05/2006");
    EXPECT_EQ(dayMonthYear("05/07/06", yearFirst), "06/07/2005");
}

TEST(Conversion, TakesOnlyDatesAndTheirTextsAsDates) {
    EXPECT_TRUE(isDate(Date{1}, es));
    for (const Variant& value : {Variant(38923.0), Variant(Null{}), Variant(), Variant(ErrorValue{2042})}) {
        EXPECT_FALSE(isDate(value, es));
    }
    EXPECT_EQ(dayMonthYear(38923.9, es), "25/07/2006");
    EXPECT_EQ(errorOf([] { toDate(Null{}, es); }), nullUsed);
    EXPECT_EQ(errorOf([] { toDate(2958466.0, es); }), overflow);
}

TEST(Conversion, ComparesAcrossTypes) {
    using Order = std::partial_ordering;
    const auto compared = [](Order order, Cases<Variant, Variant> cases) {
        for (std::size_t i = 0; const auto& [a, b] : cases) EXPECT_EQ(compare(a, b, es), order) << i++;
    };
    const Decimal tenth{.low = 1, .scale = 1}, one{.low = 10, .scale = 1}, none{.scale = 3, .negative = true};
    compared(Order::greater, {{"a", "B"}, {"x", Empty{}}, {Empty{}, std::int32_t{-1}}});
    compared(Order::greater, {{Currency{9007199254740993}, Currency{9007199254740992}}});
    compared(Order::equivalent, {{"11", std::int32_t{11}}, {Empty{}, ""}, {true, -1.0}, {tenth, 0.1}});
    compared(Order::equivalent,
             {{one, Currency{10000}}, {none, std::int16_t{0}}, {Date{38923}, "25/07/2006"}});
    compared(Order::less, {{"a", "a "}, {"9,5", 10.0}, {Date{38923}, 38924.0}});
    compared(Order::less, {{Decimal{.low = 2, .negative = true}, std::int32_t{-1}}});
    EXPECT_EQ(compare(Null{}, Null{}, es), std::nullopt);
    EXPECT_EQ(compare("x", Null{}, es), std::nullopt);
    EXPECT_EQ(errorOf([] { compare("x", 1.0, es); }), mismatch);
    EXPECT_EQ(errorOf([] { compare(ErrorValue{1}, "", es); }), mismatch);
}

TEST(Conversion, AddsInTheWiderType) {
    constexpr std::int64_t mostCurrency = std::numeric_limits<std::int64_t>::max();
    const Decimal mostDecimal{.low = 0xFFFFFFFFFFFFFFFF, .high = 0xFFFFFFFF};
    const std::tuple<Variant, Variant, Variant> cases[] = {
        {Null{}, "x", Null{}},
        {Empty{}, Empty{}, std::int16_t{0}},
        {Empty{}, "x", "x"},
        {"12", "3", "123"},
        {"12,5", std::int16_t{1}, 13.5},
        {true, true, std::int16_t{-2}},
        {std::uint8_t{200}, std::uint8_t{100}, std::int16_t{300}},
        {std::int16_t{32767}, std::int16_t{1}, std::int32_t{32768}},
        {std::int16_t{1}, std::int32_t{1}, std::int32_t{2}},
        {std::int32_t{2147483647}, std::int16_t{1}, 2147483648.0},
        {1.5f, std::int16_t{1}, 2.5f},
        {1.5f, std::int32_t{1}, 2.5},
        {Currency{15000}, 0.25, Currency{17500}},
        {Currency{15000}, Decimal{.low = 1, .scale = 5}, Decimal{.low = 150001, .scale = 5}},
        {Decimal{.low = 5}, Decimal{.low = 7, .negative = true}, Decimal{.low = 2, .negative = true}},
        {Decimal{.low = 5, .scale = 1}, Decimal{.low = 50, .scale = 2, .negative = true},
         Decimal{.scale = 2}},
        {Decimal{.low = 5}, 0.125, Decimal{.low = 5125, .scale = 3}},
        {mostDecimal, Decimal{.low = 4, .scale = 1}, mostDecimal},
        {Date{38923}, std::int16_t{1}, Date{38924}},
        {Date{2958465}, 1.0, 2958466.0},
    };
    for (std::size_t i = 0; const auto& [a, b, total] : cases) {
        EXPECT_EQ(sum(a, b, es), total) << i;
        const Variant swapped = sum(b, a, es);
        EXPECT_EQ(swapped, a.isText() && b.isText() ? Variant("312") : total) << i++;
    }
    const std::tuple<Variant, Variant, std::int32_t> failures[] = {
        {"x", std::int16_t{1}, mismatch}, {ErrorValue{1}, std::int16_t{1}, mismatch},
        {1.7e308, 1.7e308, overflow},     {Currency{mostCurrency}, Currency{1}, overflow},
        {Currency{1}, 1e300, overflow},   {mostDecimal, Decimal{.low = 5, .scale = 1}, overflow},
    };
    for (const auto& [a, b, number] : failures)
        EXPECT_EQ(errorOf([&, &a = a, &b = b] { sum(a, b, es); }), number);
}

TEST(Conversion, WritesPlainAndGroupedNumbers) {
    const auto written = [](Cases<double, const char*> cases) {
        for (const auto& [number, text] : cases) EXPECT_EQ(plainNumber(number), text);
    };
    written({{12, "12"}, {-0.0, "0"}, {0.1, "0.1"}, {12.5, "12.5"}});
    written({{-1.5e-7, "-0.00000015"}, {-1e-7, "-0.0000001"}});
    written({{9007199254740993.0, "9007199254740992"}, {1234567.875, "1234567.875"}});
    written({{1e20, "100000000000000000000"}, {1.23e22, "12300000000000000000000"}});
    EXPECT_EQ(plainNumber(std::numeric_limits<std::int32_t>::min()), "-2147483648");
    EXPECT_EQ(errorOf([] { plainNumber(std::numeric_limits<double>::quiet_NaN()); }), overflow);
    EXPECT_EQ(groupedNumber(999, es) + " " + groupedNumber(1000, es), "999 1.000");
    EXPECT_EQ(groupedNumber(-123456, es) + " " + groupedNumber(2147483647, es), "-123.456 2.147.483.647");
}

TEST(Conversion, RoundsHalvesAwayAtFifteenDigits) {
    const auto rounded = [](int decimals, Cases<double, double> cases) {
        for (const auto& [value, result] : cases) {
            EXPECT_EQ(roundHalfAway(value, decimals), result) << value;
            EXPECT_EQ(roundHalfAway(-value, decimals), -result) << value;
        }
    };
    rounded(
        0, {{2.5, 3}, {0.5, 1}, {0.49999999999999994, 1}, {0.4999, 0}, {12345678901234.5, 12345678901235.0}});
    rounded(2, {{31.07 * 50 / 100, 15.54}, {31.07 - 15.54, 15.53}, {123.45 / 100 * 37, 45.68}, {1e20, 1e20}});
    rounded(2, {{1.005, 1.01}, {0.001, 0}, {0.004999, 0}, {9.995, 10}, {5e-300, 0}, {0, 0}});
    rounded(9, {{123456789.123456789, 123456789.123456789}});
    EXPECT_FALSE(std::signbit(roundHalfAway(-0.001, 2)));
}

}  // namespace
}  // namespace pxtarvo
