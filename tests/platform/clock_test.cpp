#include "platform/values/clock.h"

#include <gtest/gtest.h>

#include <limits>

#include "platform/values/runtime_error.h"

namespace pxtarvo {
namespace {

TEST(Clock, DatesAndCalendarTimesMatchBothWays) {
    const std::pair<double, CalendarTime> cases[] = {
        {0, {1899, 12, 30, 0, 0, 0}},       {1, {1899, 12, 31, 0, 0, 0}},
        {38923.5, {2006, 7, 25, 12, 0, 0}}, {36585, {2000, 2, 29, 0, 0, 0}},
        {-1.25, {1899, 12, 29, 6, 0, 0}},   {-657434, {100, 1, 1, 0, 0, 0}},
        {2958465, {9999, 12, 31, 0, 0, 0}},
    };
    for (const auto& [days, calendar] : cases) {
        EXPECT_EQ(toCalendar({days}), calendar) << days;
        EXPECT_EQ(toDate(calendar), Date{days});
    }
}

TEST(Clock, RoundsToTheNearestSecondAndCarriesOverMidnight) {
    constexpr double second = 1.0 / 86400;
    const std::pair<double, CalendarTime> cases[] = {
        {38923 + 0.4 * second, {2006, 7, 25, 0, 0, 0}},
        {38924 - 0.4 * second, {2006, 7, 26, 0, 0, 0}},
        {38924 - 0.6 * second, {2006, 7, 25, 23, 59, 59}},
        {-1 - (1 - 0.4 * second), {1899, 12, 30, 0, 0, 0}},
        {-0.75, {1899, 12, 30, 18, 0, 0}},
    };
    for (const auto& [days, calendar] : cases) EXPECT_EQ(toCalendar({days}), calendar) << days;
    for (const double outside :
         {-657435.0, 2958466.0, 2958466 - 0.4 * second, std::numeric_limits<double>::quiet_NaN(), 1e300}) {
        EXPECT_THROW(toCalendar({outside}), RuntimeError) << outside;
    }
}

TEST(Clock, KnowsRealDays) {
    EXPECT_TRUE(isCalendarTime({2000, 2, 29, 23, 59, 59}));
    for (const CalendarTime& unreal :
         {CalendarTime{1900, 2, 29}, CalendarTime{2006, 13, 1}, CalendarTime{2006, 4, 31},
          CalendarTime{99, 1, 1}, CalendarTime{2006, 0, 1}, CalendarTime{2006, 1, 0},
          CalendarTime{2006, 1, 1, 24, 0, 0}, CalendarTime{2006, 1, 1, 0, 60, 0},
          CalendarTime{2006, 1, 1, 0, 0, -1}, CalendarTime{2006, 257, 1}}) {
        EXPECT_FALSE(isCalendarTime(unreal)) << unreal.year << '-' << unreal.month << '-' << unreal.day;
    }
}

}  // namespace
}  // namespace pxtarvo
