#include "platform/values/conversion.h"
#include "platform/values/number_text.h"
#include "platform/values/rounding.h"
#include "platform/values/sum.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

#include "platform/values/runtime_error.h"

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

TEST(Conversion, ReadsNumbersAsTheUserWritesThem) {
    const std::pair<const char*, double> cases[] = {
        {"12,50", 12.5},
        {"1.234,56", 1234.56},
        {" 7 ", 7},
        {"-3,5", -3.5},
        {"3,5-", -3.5},
        {"- 3", -3},
        {"+3", 3},
        {"(3,5)", -3.5},
        {" ( 3 ) ", -3},
        {"1e2", 100},
        {"1D-2", 0.01},
        {"1,5E+3", 1500},
        {"12.50", 1250},
        {"1.2.3", 123},
        {",5", 0.5},
        {"5,", 5},
        {"12 €", 12},
        {"€ -12", -12},
        {"-€12", -12},
        {"&H1F", 31},
        {"&o17", 15},
        {"1e-400", 0},
        {"0e999999999", 0},
        {"007", 7},
        {"-&H10", -16},
        {"\t7\r\n", 7},
        {"0,1", 0.1},
        {"123456789012345678901234567890", 123456789012345678901234567890.0},
        {"0,000000000000000000000000000000000000001e40", 10},
    };
    for (const auto& [text, number] : cases) EXPECT_EQ(toDouble(text, es), number) << text;
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
    const std::pair<Variant, std::int32_t> cases[] = {
        {2.5, 2},
        {3.5, 4},
        {-2.5, -2},
        {-0.5, 0},
        {2.5000001, 3},
        {"2,5", 2},
        {Currency{35000}, 4},
        {true, -1},
        {"&HFFFF", 65535},
        {"&HFFFFFFFF", -1},
        {2147483647.4, 2147483647},
        {-2147483648.5, std::numeric_limits<std::int32_t>::min()},
        {0.49999999999999994, 0},
    };
    for (const auto& [value, whole] : cases) EXPECT_EQ(toLong(value, es), whole);
    EXPECT_EQ(toInteger("&HFFFF", es), -1);
    EXPECT_EQ(toInteger(-32768.5, es), -32768);
    for (const Variant& value : {Variant(2147483647.5), Variant("2147483648"), Variant("&H100000000")}) {
        EXPECT_EQ(errorOf([&] { toLong(value, es); }), overflow);
    }
    for (const Variant& value : {Variant(32767.5), Variant(std::int32_t{-32769}), Variant("-&H8000")}) {
        EXPECT_EQ(errorOf([&] { toInteger(value, es); }), overflow);
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
    const std::pair<Variant, const char*> cases[] = {
        {12.5, "12,5"},
        {0.1 + 0.2, "0,3"},
        {-0.0, "0"},
        {999999999999999.0, "999999999999999"},
        {1e15, "1E+15"},
        {-1.5e100, "-1,5E+100"},
        {0.0001, "0,0001"},
        {0.00001, "1E-05"},
        {1.0f / 3, "0,3333333"},
        {1e7f, "1E+07"},
        {std::uint8_t{255}, "255"},
        {std::int16_t{-5}, "-5"},
        {true, "Verdadero"},
        {false, "Falso"},
        {Currency{125000}, "12,5"},
        {Currency{-1}, "-0,0001"},
        {Currency{std::numeric_limits<std::int64_t>::min()}, "-922337203685477,5808"},
        {Decimal{.low = 1550, .scale = 2}, "15,5"},
        {Decimal{.low = 1500, .scale = 2, .negative = true}, "-15"},
        {Decimal{.low = 5, .scale = 3}, "0,005"},
        {Decimal{.scale = 5, .negative = true}, "0"},
        {Decimal{.low = 0xFFFFFFFFFFFFFFFF, .high = 0xFFFFFFFF}, "79228162514264337593543950335"},
        {Date{38923}, "25/07/2006"},
        {Date{38923 + 9.0 / 24 + 5.0 / 1440}, "25/07/2006 9:05:00"},
        {Date{0.5}, "12:00:00"},
        {Date{0}, "0:00:00"},
        {Date{-657434}, "01/01/0100"},
        {Empty{}, ""},
    };
    for (const auto& [value, text] : cases) EXPECT_EQ(toText(value, es), text);
    EXPECT_EQ(errorOf([] { toText(Null{}, es); }), nullUsed);
    EXPECT_EQ(errorOf([] { toText(ErrorValue{2042}, es); }), mismatch);
    EXPECT_EQ(errorOf([] { toText(std::numeric_limits<double>::infinity(), es); }), overflow);

    EXPECT_EQ(joinedText(Null{}, es), "");
    EXPECT_EQ(trimmed(Null{}, es), Variant(Null{}));
    EXPECT_EQ(trimmed("  a ", es), Variant("a"));
    EXPECT_EQ(trimmed(1.5, es), Variant("1,5"));
}

TEST(Conversion, ReadsDatesGenerously) {
    const int thisYear = toCalendar(toDate("1/1", es)).year;
    const std::pair<const char*, CalendarTime> cases[] = {
        {"25/07/2006", {2006, 7, 25}},
        {" 5-7-06 ", {2006, 7, 5}},
        {"25.7.2006", {2006, 7, 25}},
        {"25 07 2006", {2006, 7, 25}},
        {"7/25/2006", {2006, 7, 25}},
        {"2006-07-25", {2006, 7, 25}},
        {"1/1/29", {2029, 1, 1}},
        {"1/1/30", {1930, 1, 1}},
        {"29/2/2008", {2008, 2, 29}},
        {"25 jul 2006", {2006, 7, 25}},
        {"25-jul.-06", {2006, 7, 25}},
        {"25 de Julio de 2006", {2006, 7, 25}},
        {"25JULIO2006", {2006, 7, 25}},
        {"julio 25 2006", {2006, 7, 25}},
        {"2006 jul 25", {2006, 7, 25}},
        {"julio 2006", {2006, 7, 1}},
        {"jul 32", {1932, 7, 1}},
        {"07/2006", {2006, 7, 1}},
        {"2006/07", {2006, 7, 1}},
        {"12/50", {1950, 12, 1}},
        {"25/7", {thisYear, 7, 25}},
        {"7/25", {thisYear, 7, 25}},
        {"25 julio", {thisYear, 7, 25}},
        {"25/07/2006 9:05", {2006, 7, 25, 9, 5, 0}},
        {"23:59:59 25/07/2006", {2006, 7, 25, 23, 59, 59}},
        {"25/07/2006 12:30 am", {2006, 7, 25, 0, 30, 0}},
        {"1:30PM", {1899, 12, 30, 13, 30, 0}},
        {"1/1/1850 18:00", {1850, 1, 1, 18, 0, 0}},
    };
    for (const auto& [text, calendar] : cases) {
        ASSERT_TRUE(isDate(text, es)) << text;
        EXPECT_EQ(toCalendar(toDate(text, es)), calendar) << text;
    }
    for (const char* text : {"",
                             "  ",
                             "pronto",
                             "32/13/2006",
                             "30/02/2006",
                             "29/02/2007",
                             "12",
                             "2006",
                             "100",
                             "12,5",
                             "25/07/",
                             "/25/07",
                             "25//07",
                             "25/07/2006/1",
                             "25/07/20066",
                             "1/1/99999",
                             "julio",
                             "25 julio agosto",
                             "25 de",
                             "de julio",
                             "24:00",
                             "9:60",
                             "9:05:60",
                             "9",
                             "9:",
                             ":05",
                             "9:05 9:05",
                             "25/07/2006/9:05",
                             "9:05/25/07/2006",
                             "13:00 pm",
                             "25/07/2006 x",
                             "005/07/2006",
                             "10 julio 2006 5",
                             "1:2:3:4",
                             "25/07/2006\u00A0",
                             "1e2"}) {
        EXPECT_FALSE(isDate(text, es)) << text;
        EXPECT_EQ(errorOf([&] { toDate(text, es); }), mismatch) << text;
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
    const std::tuple<Variant, Variant, Order> cases[] = {
        {"a", "B", Order::greater},
        {"a", "a ", Order::less},
        {"11", std::int32_t{11}, Order::equivalent},
        {"9,5", 10.0, Order::less},
        {Empty{}, "", Order::equivalent},
        {"x", Empty{}, Order::greater},
        {Empty{}, std::int32_t{-1}, Order::greater},
        {true, -1.0, Order::equivalent},
        {Decimal{.low = 1, .scale = 1}, 0.1, Order::equivalent},
        {Decimal{.low = 10, .scale = 1}, Currency{10000}, Order::equivalent},
        {Currency{9007199254740993}, Currency{9007199254740992}, Order::greater},
        {Decimal{.low = 2, .negative = true}, std::int32_t{-1}, Order::less},
        {Decimal{.scale = 3, .negative = true}, std::int16_t{0}, Order::equivalent},
        {Date{38923}, "25/07/2006", Order::equivalent},
        {Date{38923}, 38924.0, Order::less},
    };
    for (std::size_t i = 0; const auto& [a, b, order] : cases) EXPECT_EQ(compare(a, b, es), order) << i++;
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
    const std::pair<double, const char*> cases[] = {
        {12, "12"},
        {-0.0, "0"},
        {1e20, "100000000000000000000"},
        {-1.5e-7, "-0.00000015"},
        {0.1, "0.1"},
        {12.5, "12.5"},
        {-1e-7, "-0.0000001"},
        {9007199254740993.0, "9007199254740992"},
        {1234567.875, "1234567.875"},
        {1.23e22, "12300000000000000000000"},
    };
    for (const auto& [number, text] : cases) {
        EXPECT_EQ(plainNumber(number), text);
    }
    EXPECT_EQ(plainNumber(std::numeric_limits<std::int32_t>::min()), "-2147483648");
    EXPECT_EQ(errorOf([] { plainNumber(std::numeric_limits<double>::quiet_NaN()); }), overflow);
    EXPECT_EQ(groupedNumber(0, es), "0");
    EXPECT_EQ(groupedNumber(999, es), "999");
    EXPECT_EQ(groupedNumber(1000, es), "1.000");
    EXPECT_EQ(groupedNumber(-123456, es), "-123.456");
    EXPECT_EQ(groupedNumber(2147483647, es), "2.147.483.647");
}

TEST(Conversion, RoundsHalvesAwayAtFifteenDigits) {
    const std::tuple<double, int, double> cases[] = {
        {31.07 * 50 / 100, 2, 15.54},
        {31.07 - 15.54, 2, 15.53},
        {123.45 / 100 * 37, 2, 45.68},
        {2.5, 0, 3},
        {0.5, 0, 1},
        {0.49999999999999994, 0, 1},
        {0.4999, 0, 0},
        {1.005, 2, 1.01},
        {-1.005, 2, -1.01},
        {-0.001, 2, 0},
        {0.004999, 2, 0},
        {9.995, 2, 10},
        {1e20, 2, 1e20},
        {123456789.123456789, 9, 123456789.123456789},
        {12345678901234.5, 0, 12345678901235.0},
        {5e-300, 2, 0},
        {0, 2, 0},
    };
    for (const auto& [value, decimals, rounded] : cases) {
        EXPECT_EQ(roundHalfAway(value, decimals), rounded) << value;
        EXPECT_EQ(roundHalfAway(-value, decimals), -rounded) << value;
    }
    EXPECT_FALSE(std::signbit(roundHalfAway(-0.001, 2)));
}

}  // namespace
}  // namespace pxtarvo
