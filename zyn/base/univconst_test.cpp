#include "zyn/base/univconst.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>

namespace Zyn_univconst {
namespace {

TEST(UnivConstTest, EveryConstantHasItsStoredBits) {
  struct Case {
    const char* name;
    double value;
    std::uint64_t bits;
  };
  // Bits computed outside the library from the stored decimal values.
  const Case cases[] = {
      {"uc_e", uc_e, 0x4005BF0A8B145769},
      {"uc_etom1", uc_etom1, 0x3FD78B56362CEF38},
      {"uc_lg2", uc_lg2, 0x3FD34413509F79FF},
      {"uc_lg5", uc_lg5, 0x3FE65DF657B04301},
      {"uc_lge", uc_lge, 0x3FDBCB7B1526E50E},
      {"uc_lgPi", uc_lgPi, 0x3FDFD14DB31BA3BB},
      {"uc_ln10", uc_ln10, 0x40026BB1BBB55516},
      {"uc_ln2", uc_ln2, 0x3FE62E42FEFA39EF},
      {"uc_lnPi", uc_lnPi, 0x3FF250D048E7A1BD},
      {"uc_PiH", uc_PiH, 0x3FF921FB54442D18},
      {"uc_PiSqr", uc_PiSqr, 0x4023BD3CC9BE45DE},
      {"uc_Pitom1", uc_Pitom1, 0x3FD45F306DC9C883},
      {"uc_sqrt2", uc_sqrt2, 0x3FF6A09E667F3BCD},
      {"uc_sqrt2pi", uc_sqrt2pi, 0x40040D931FF62706},
      {"uc_sqrt2pitom1", uc_sqrt2pitom1, 0x3FD9884533D43651},
      {"uc_GoldenR", uc_GoldenR, 0x3FF9E3779B97F4A8},
      {"uc_MinReal", uc_MinReal, 0x37EF940527884ECB},
      {"uc_MaxReal", uc_MaxReal, 0x47DFF933C78CDFAD},
      {"uc_MinSingle", uc_MinSingle, 0x36A1208141E9900B},
      {"uc_MaxSingle", uc_MaxSingle, 0x47EFF933C78CDFAD},
      {"uc_MinDouble", uc_MinDouble, 0x0000000000000001},
      {"uc_MaxDouble", uc_MaxDouble, 0x7FEE42D130773B76},
      {"uc_MinExtended", uc_MinExtended, 0x0000000000000000},
      {"uc_MaxExtended", uc_MaxExtended, 0x7FF0000000000000},
      {"uc_lnMinDouble", uc_lnMinDouble, 0xC087436CD09588E9},
      {"uc_lnMaxDouble", uc_lnMaxDouble, 0x40862DD08FDC6F88},
      {"uc_lnMaxExtended", uc_lnMaxExtended, 0x40C62E38F564D451},
      {"uc_lnMinExtended", uc_lnMinExtended, 0xC0C64368AFB017BC},
      {"uc_lnMinReal", uc_lnMinReal, 0xC0562F1C64443A6A},
      {"uc_lnMaxReal", uc_lnMaxReal, 0x405601D8DF197E5D},
      {"uc_lnMinSingle", uc_lnMinSingle, 0xC059CD7ECC0A400E},
      {"uc_lnMaxSingle", uc_lnMaxSingle, 0x40562E35651772D1},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(std::bit_cast<std::uint64_t>(c.value), c.bits) << c.name;
  }
}

TEST(UnivConstTest, LimitsAreTheLibrarysOwn) {
  EXPECT_LT(uc_MinDouble, std::numeric_limits<double>::min());  // a denormal
  EXPECT_LT(uc_MaxDouble, std::numeric_limits<double>::max());
  // The stored sqrt(2 pi) is one step above the double nearest the exact value.
  EXPECT_EQ(std::nextafter(2.5066282746310002, 3.0), uc_sqrt2pi);
}

TEST(UnivConstTest, LnFactorialHoldsFifteenDigits) {
  ASSERT_EQ(uc_LnFactorial.size(), 1001u);
  EXPECT_EQ(uc_LnFactorial[0], 0.0);
  EXPECT_EQ(uc_LnFactorial[1], 0.0);
  EXPECT_EQ(uc_LnFactorial[2], 0.693147180559945);
  EXPECT_EQ(uc_LnFactorial[3], 1.79175946922806);
  EXPECT_EQ(uc_LnFactorial[1000], 5912.12817848816);
  for (int n = 2; n <= 1000; ++n) {
    // lgamma is accurate to a few ulp; the table is rounded to 15 digits.
    EXPECT_NEAR(uc_LnFactorial[n], std::lgamma(n + 1.0), 1e-14 * uc_LnFactorial[n] + 1e-15) << n;
  }
}

}  // namespace
}  // namespace Zyn_univconst
