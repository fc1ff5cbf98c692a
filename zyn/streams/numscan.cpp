#include "zyn/streams/numscan.h"

#include <cstdint>
#include <string>

#include "zyn/base/univconst.h"
#include "zyn/base/zynbase.h"
#include "zyn/platform/val.h"

namespace Zyn_streams {
namespace {

bool ReadUpperByte(TStream& stream, char16_t& c) {
  std::uint8_t b;
  if (!stream.ReadByte(b)) return false;
  c = (b >= 'a' && b <= 'z') ? char16_t(b - 32) : char16_t(b);
  return true;
}

enum State : std::uint8_t {
  kStart,
  kAfterSign,
  kIntDigits,
  kAfterPoint,
  kFracDigits,
  kAfterE,
  kAfterExpSign,
  kExpDigits,
  kStop,
  kFail
};

enum ByteClass : std::uint8_t { kSeparator, kSign, kWhite, kDigit, kExpMark, kOther };

// Rows by state (the first eight), columns by byte class. kAfterE in the rows
// of the mantissa is taken only when exponents are allowed.
constexpr State kNext[8][6] = {
    // separator   sign           white    digit        E         other
    {kAfterPoint, kAfterSign, kStart, kIntDigits, kFail, kFail},  // Start
    {kAfterPoint, kFail, kFail, kIntDigits, kFail, kFail},        // AfterSign
    {kAfterPoint, kStop, kStop, kIntDigits, kAfterE, kStop},      // IntDigits
    {kFail, kStop, kStop, kFracDigits, kAfterE, kStop},           // AfterPoint
    {kFail, kStop, kStop, kFracDigits, kAfterE, kStop},           // FracDigits
    {kFail, kAfterExpSign, kFail, kExpDigits, kFail, kFail},      // AfterE
    {kFail, kFail, kFail, kExpDigits, kFail, kFail},              // AfterExpSign
    {kStop, kStop, kStop, kExpDigits, kStop, kStop},              // ExpDigits
};

bool IsSeparator(char16_t c, int decMode) {
  using namespace Zyn_zynbase;
  switch (decMode) {
    case dsDot:
      return c == u'.';
    case dsComma:
      return c == u',';
    case dsBoth:
      return c == u'.' || c == u',';
    default:
      return false;
  }
}

ByteClass Classify(char16_t c, int decMode) {
  if (IsSeparator(c, decMode)) return kSeparator;
  if (c == u'+' || c == u'-') return kSign;
  if (c == 9 || c == 10 || c == 13 || c == 32) return kWhite;
  if (c >= u'0' && c <= u'9') return kDigit;
  if (c == u'E') return kExpMark;
  return kOther;
}

}  // namespace

int ScanStreamDecimal(TStream& stream) {
  char16_t c = 0;
  bool have = ReadUpperByte(stream, c);
  while (have && (c == 32 || c == 10 || c == 13)) have = ReadUpperByte(stream, c);
  bool negative = false;
  if (have && (c == u'-' || c == u'+')) {
    negative = c == u'-';
    have = ReadUpperByte(stream, c);
  }
  std::uint32_t value = 0;  // unsigned, so that overflow wraps as in 32-bit hardware
  while (have && c >= u'0' && c <= u'9') {
    value = value * 10u + static_cast<std::uint32_t>(c - u'0');
    have = ReadUpperByte(stream, c);
  }
  return static_cast<std::int32_t>(negative ? 0u - value : value);
}

double ScanStreamFPNum(TStream& stream, bool allowExp, int decMode) {
  constexpr int kMaxExponentKept = 4200;
  std::u16string number;
  int exponent = 0;  // the exponent digits so far, saturated above the limit
  State state = kStart;
  while (state != kStop && state != kFail) {
    char16_t c = 0;
    const ByteClass cls = ReadUpperByte(stream, c) ? Classify(c, decMode) : kOther;
    State next = kNext[state][cls];
    if (next == kAfterE && !allowExp && state != kAfterE) next = kStop;
    if (next == kExpDigits && cls == kDigit && exponent <= kMaxExponentKept) {
      exponent = exponent * 10 + (c - u'0');
    }
    if (next != kStop && next != kFail) {
      if (c == u',') c = u'.';
      if (c > 32 && exponent <= kMaxExponentKept) number.push_back(c);
    }
    state = next;
  }
  if (state == kFail) return 0.0;
  if (!number.empty() && number.back() == u'.') number.push_back(u'0');
  int code = 0;
  const double value = zyn::platform::Val(number, code);
  if (value > Zyn_univconst::uc_MaxDouble) return Zyn_univconst::uc_MaxDouble;
  if (value < -Zyn_univconst::uc_MaxDouble) return -Zyn_univconst::uc_MaxDouble;
  return value;
}

}  // namespace Zyn_streams
