// Proves that numbers become integers by the nearest one, ties to even, up to the ends of 32 bits.

#include "runtime/rounding.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "tests/support/raises.h"

namespace quorvane {
namespace {

using testing::ErrorNumberOf;

struct Case {
  double value;
  std::int32_t rounded;
};

constexpr Case kCases[] = {{0, 0},
                           {-0.0, 0},
                           {1, 1},
                           {-1, -1},
                           {0.25, 0},
                           {0.49999999999999994, 0},
                           {0.5, 0},
                           {0.50000000000000011, 1},
                           {0.75, 1},
                           {0.99999999999999989, 1},
                           {1.4999999999999998, 1},
                           {1.5, 2},
                           {2.5, 2},
                           {2.5000000000000004, 3},
                           {-0.5, 0},
                           {-1.5, -2},
                           {-2.5, -2},
                           {-2.5000000000000004, -3},
                           {16777216.5, 16777216},
                           {16777217.5, 16777218},
                           {16777217.499999996, 16777217},
                           {123456789, 123456789},
                           {1073741824.5, 1073741824},
                           {2147483646.5, 2147483646},
                           {2147483647, 2147483647},
                           {2147483647.4999998, 2147483647},
                           {-2147483648.0, -2147483647 - 1},
                           {-2147483648.5, -2147483647 - 1},
                           {5e-324, 0},
                           {-2.2e-308, 0}};

TEST(RoundTo32, GoesToTheNearestAndToEvenFromTheMiddle) {
  for (const Case& c : kCases) EXPECT_EQ(RoundTo32(c.value), c.rounded) << c.value;
}

TEST(RoundTo32, RaisesOverflowBeyond32Bits) {
  for (const double value :
       {2147483647.5, 2147483648.0, 4294967296.0, 8589934592.0, 1e10, 1e300, -2147483648.5000005,
        -2147483649.0, -4294967296.0, -1e10, HUGE_VAL, -HUGE_VAL, std::nan("")}) {
    EXPECT_EQ(ErrorNumberOf([&] { static_cast<void>(RoundTo32(value)); }), 6) << value;
  }
}

// The C library's own rounding goes to even as well, where the unit stands as it usually does.
TEST(RoundTo32, AgreesWithTheCLibrary) {
  std::mt19937_64 random(32);
  for (int i = 0; i < 100000; ++i) {
    const auto bits = static_cast<std::int64_t>(random()) >> (random() % 32);
    const double value = std::ldexp(static_cast<double>(bits), -32);
    const double expected = std::nearbyint(value);
    if (expected > std::numeric_limits<std::int32_t>::max()) continue;
    ASSERT_EQ(RoundTo32(value), static_cast<std::int32_t>(expected)) << value;
  }
}

}  // namespace
}  // namespace quorvane
