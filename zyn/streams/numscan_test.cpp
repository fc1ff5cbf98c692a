#include "zyn/streams/numscan.h"

#include <gtest/gtest.h>

#include <tuple>

#include "zyn/base/univconst.h"

namespace Zyn_streams {
namespace {

using zyn::platform::TMemoryStream;
using Zyn_univconst::uc_MaxDouble;

TMemoryStream& Fill(TMemoryStream& m, std::string_view bytes) {
  m.WriteBuffer(bytes.data(), static_cast<int>(bytes.size()));
  m.SetPosition(0);
  return m;
}

TEST(NumScanTest, ScanStreamDecimal) {
  const std::tuple<std::string_view, int, int> cases[] = {
      {"", 0, 0},
      {"  -12x", -12, 6},
      {"\r\n 7 8", 7, 5},
      {"\t5", 0, 1},  // a tab is not skipped
      {"x", 0, 1},
      {"-", 0, 1},
      {"2147483647", 2147483647, 10},
      {"-2147483648", -2147483647 - 1, 11},
      {"4294967297", 1, 10},  // 32 bits, wrapping
      {"007;", 7, 4},
  };
  for (const auto& [bytes, value, consumed] : cases) {
    SCOPED_TRACE(std::string(bytes));
    TMemoryStream m;
    EXPECT_EQ(ScanStreamDecimal(Fill(m, bytes)), value);
    EXPECT_EQ(m.Position(), consumed);
  }
}

TEST(NumScanTest, ScanStreamFPNum) {
  const std::tuple<std::string_view, bool, int, double, int> cases[] = {
      {"", true, 1, 0.0, 0},
      {"3.5 7", true, 1, 3.5, 4},
      {" \t\r\n-2", true, 1, -2.0, 6},
      {"3,5", true, 2, 3.5, 3},
      {"3,5", true, 1, 3.0, 2},
      {"3,5", true, 3, 3.5, 3},
      {"3.5", true, 0, 3.0, 2},  // no separator at all
      {"1.2.3", true, 1, 0.0, 4},
      {"5.", true, 1, 5.0, 2},
      {".", true, 1, 0.0, 1},
      {".5", true, 1, 0.5, 2},
      {"-", true, 1, 0.0, 1},
      {"+-1", true, 1, 0.0, 2},
      {"1e5", false, 1, 1.0, 2},
      {"1E-2;", true, 1, 0.01, 5},
      {"2.5e+2", true, 1, 250.0, 6},
      {"1e", true, 1, 0.0, 2},
      {"1e+", true, 1, 0.0, 3},
      {"1ex", true, 1, 0.0, 3},
      {"1e5.", true, 1, 100000.0, 4},
      {"1E5000", true, 1, uc_MaxDouble, 6},
      {"-1E5000", true, 1, -uc_MaxDouble, 7},
      {"1.8E308", true, 1, uc_MaxDouble, 7},
      {"1E-5000", true, 1, 0.0, 7},
      {"0E999999", true, 1, 0.0, 8},
      {"1-2", true, 1, 1.0, 2},
      {"E5", true, 1, 0.0, 1},
  };
  for (const auto& [bytes, allow_exp, dec_mode, value, consumed] : cases) {
    SCOPED_TRACE(testing::Message()
                 << std::string(bytes) << " exp=" << allow_exp << " mode=" << dec_mode);
    TMemoryStream m;
    EXPECT_DOUBLE_EQ(ScanStreamFPNum(Fill(m, bytes), allow_exp, dec_mode), value);
    EXPECT_EQ(m.Position(), consumed);
  }
}

TEST(NumScanTest, NextCallStartsBehindTheConsumedByte) {
  TMemoryStream m;
  Fill(m, "3.5 7\n-1e1,2");
  EXPECT_EQ(ScanStreamFPNum(m, true, 1), 3.5);
  EXPECT_EQ(ScanStreamFPNum(m, true, 1), 7.0);
  EXPECT_EQ(ScanStreamFPNum(m, true, 1), -10.0);
  EXPECT_EQ(ScanStreamFPNum(m, true, 1), 2.0);
  EXPECT_EQ(ScanStreamDecimal(m), 0);
}

}  // namespace
}  // namespace Zyn_streams
