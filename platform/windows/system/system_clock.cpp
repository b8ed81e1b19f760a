#include "platform/windows/system/system_clock.h"

#include "platform/windows/system/win32.h"

namespace pxtarvo::windows {

CalendarTime SystemClock::now() const {
    SYSTEMTIME time;
    GetLocalTime(&time);
    return {.year = time.wYear,
            .month = time.wMonth,
            .day = time.wDay,
            .hour = time.wHour,
            .minute = time.wMinute,
            .second = time.wSecond};
}

}  // namespace pxtarvo::windows
