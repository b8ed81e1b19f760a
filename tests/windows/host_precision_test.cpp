#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "platform/values/conversion.h"
#include "platform/values/locale.h"
#include "platform/values/rounding.h"
#include "platform/values/sum.h"
#include "tests/windows/recording_object.h"

namespace pxtarvo {
namespace {

/// Sets the coprocessor's control word, as a host does for all that runs in it.
class ControlWord {
  public:
    explicit ControlWord(std::uint16_t word) {
        __asm__ volatile("fnstcw %0" : "=m"(before_));
        __asm__ volatile("fldcw %0" : : "m"(word));
    }
    ~ControlWord() { __asm__ volatile("fldcw %0" : : "m"(before_)); }
    ControlWord(const ControlWord&) = delete;
    ControlWord& operator=(const ControlWord&) = delete;

  private:
    std::uint16_t before_ = 0;
};

TEST(HostPrecision, DoesNotChangeAPrice) {
    const Locale& es = spanishLocale();
    const double justAboveHalf = std::ldexp(1, -53) + std::ldexp(1, -66);
    const double largest = std::numeric_limits<double>::max();
    constexpr std::uint16_t singlePrecision = 0x007F;
    constexpr std::uint16_t extendedPrecision = 0x037F;
    constexpr std::uint16_t extendedWithExceptions = 0x1332;
    for (const std::uint16_t word : {singlePrecision, extendedPrecision, extendedWithExceptions}) {
        double rounded = 0;
        double exact = 0;
        Variant nearest;
        std::int32_t tooLarge = 0;
        {
            const ControlWord host(word);
            rounded = roundHalfAway(31.066, 2);
            exact = toDouble(Currency{310700}, es);
            nearest = sum(1.0, justAboveHalf, es);
            tooLarge = windows::tests::errorOf([&] { sum(largest, largest, es); });
        }
        EXPECT_EQ(rounded, 31.07) << word;
        EXPECT_EQ(exact, 31.07) << word;
        EXPECT_EQ(toDouble(nearest, es), std::nextafter(1.0, 2.0)) << word;
        EXPECT_EQ(tooLarge, 6) << word;
    }
}

}  // namespace
}  // namespace pxtarvo
