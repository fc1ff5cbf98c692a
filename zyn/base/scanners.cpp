#include "zyn/base/scanners.h"

#include <algorithm>
#include <cstddef>
#include <string>

#include "zyn/base/univconst.h"
#include "zyn/platform/val.h"

namespace zyn::internal {

namespace {

constexpr char16_t kBlank = u' ';

bool IsDecimalDigit(char16_t c) { return c >= u'0' && c <= u'9'; }

// The value of a hexadecimal digit of either case, or -1.
int HexDigitValue(char16_t c) {
  if (c >= u'0' && c <= u'9') return c - u'0';
  if (c >= u'a' && c <= u'f') return c - u'a' + 10;
  if (c >= u'A' && c <= u'F') return c - u'A' + 10;
  return -1;
}

// 0-based index of the first character at or behind the 1-based `pos` that is
// not a blank.
std::size_t SkipBlanks(std::u16string_view s, int pos) {
  std::size_t i = pos < 1 ? 0 : static_cast<std::size_t>(pos) - 1;
  while (i < s.size() && s[i] == kBlank) ++i;
  return i;
}

int ToPosition(std::size_t index) { return static_cast<int>(index) + 1; }

// The floating-point machine. States 1 to 8 are the numbered states; the
// others end the scan.
enum Step : std::int8_t {
  kReject = -1,
  kAccept = 0,
  kExpOrAccept = 9,  // state 6 if exponents are allowed, else accept
};
enum CharClass : std::uint8_t { kSeparator, kDigit, kBlankClass, kSign, kExpLetter, kOther };

constexpr std::int8_t R = kReject;
constexpr std::int8_t A = kAccept;
constexpr std::int8_t X = kExpOrAccept;
constexpr std::int8_t kMachine[9][6] = {
    // sep digit blank sign  E  other
    {R, R, R, R, R, R},  // unused state 0
    {4, 3, 1, 2, R, R},  // 1 start
    {4, 3, R, R, R, R},  // 2 after the sign
    {4, 3, A, A, X, A},  // 3 integer digits
    {R, 5, A, A, X, A},  // 4 after the separator
    {R, 5, A, A, X, A},  // 5 fraction digits
    {R, 8, R, 7, R, A},  // 6 after "E"
    {R, 8, R, R, R, A},  // 7 after the exponent's sign
    {A, 8, A, A, A, A},  // 8 exponent digits
};
constexpr int kExpDigitsState = 8;
constexpr int kMaxExponent = 4200;

CharClass Classify(char16_t c, Zyn_zynbase::TDecPSep sep) {
  const bool is_dot = c == u'.' && sep != Zyn_zynbase::dsComma;
  const bool is_comma = c == u',' && (sep == Zyn_zynbase::dsComma || sep == Zyn_zynbase::dsBoth);
  if (is_dot || is_comma) return kSeparator;
  if (IsDecimalDigit(c)) return kDigit;
  if (c == kBlank) return kBlankClass;
  if (c == u'+' || c == u'-') return kSign;
  if (c == u'E' || c == u'e') return kExpLetter;
  return kOther;
}

// Converts the number text the machine let through: [-+]digits[.digits]
// [E[-+]digits], any part possibly empty, "." as the separator. An exponent
// without digits is left out; text with no digit at all gives 0.
double NumberTextToDouble(std::u16string_view number) {
  const auto ends_with_any = [&number](std::u16string_view chars) {
    return !number.empty() && chars.find(number.back()) != std::u16string_view::npos;
  };
  if (ends_with_any(u"+-")) number.remove_suffix(1);  // only an exponent's sign can end it
  if (ends_with_any(u"Ee")) number.remove_suffix(1);
  int code = 0;
  double value = 0.0;
  if (ends_with_any(u".")) {
    // A text ending in its separator is read with a "0" behind it, so that
    // "-." keeps its sign: -0.0.
    value = zyn::platform::Val(std::u16string(number) + u'0', code);
  } else {
    value = zyn::platform::Val(number, code);
  }
  if (code != 0) return 0.0;
  return std::clamp(value, -Zyn_univconst::uc_MaxDouble, Zyn_univconst::uc_MaxDouble);
}

}  // namespace

std::int32_t ScanDecimal(std::u16string_view s, int& pos) {
  if (s.empty()) return 0;
  std::size_t i = SkipBlanks(s, pos);
  bool negative = false;
  if (i < s.size() && (s[i] == u'-' || s[i] == u'+')) {
    negative = s[i] == u'-';
    ++i;
  }
  std::uint32_t value = 0;
  for (; i < s.size() && IsDecimalDigit(s[i]); ++i) value = value * 10u + (s[i] - u'0');
  if (negative) value = 0u - value;
  pos = ToPosition(i);
  return static_cast<std::int32_t>(value);
}

std::int32_t ScanHex(std::u16string_view s, int& pos) {
  std::size_t i = SkipBlanks(s, pos);
  if (i == 0 && !s.empty() && s[0] == u'$') ++i;
  std::uint32_t value = 0;
  for (int digit; i < s.size() && (digit = HexDigitValue(s[i])) >= 0; ++i) {
    value = value * 16u + static_cast<std::uint32_t>(digit);
  }
  pos = ToPosition(i);
  return static_cast<std::int32_t>(value);
}

double ScanFPNum(std::u16string_view text, bool AllowExp, Zyn_zynbase::TDecPSep DecPSep,
                 int& position) {
  // The number text is the stretch the machine passes, without the blanks in
  // front; it is copied only to turn a "," into "." or to leave out exponent
  // digits beyond the limit (which, once one is left out, are all the rest).
  std::size_t i = position < 1 ? 0 : static_cast<std::size_t>(position) - 1;
  std::size_t start = i;
  std::size_t end = std::u16string_view::npos;  // where left-out exponent digits begin
  bool has_comma = false;
  int state = 1;
  int exponent = 0;  // size of the exponent read so far, saturated above the limit
  for (;; ++i) {
    // Behind the end the machine sees a "Z", which is of the class "other".
    const char16_t c = i < text.size() ? text[i] : u'Z';
    int next = kMachine[state][Classify(c, DecPSep)];
    if (next == kExpOrAccept) next = AllowExp ? 6 : kAccept;
    if (next == kReject) {
      position = ToPosition(i);
      return 0.0;
    }
    if (next == kAccept) break;
    if (state == 1 && next == 1) start = i + 1;  // a blank in front
    if (next == kExpDigitsState) {
      exponent = std::min(exponent * 10 + (c - u'0'), kMaxExponent + 1);
      if (exponent > kMaxExponent && end == std::u16string_view::npos) end = i;
    }
    has_comma = has_comma || c == u',';
    state = next;
  }
  position = ToPosition(i);
  std::u16string_view number = text.substr(start, std::min(i, end) - start);
  if (!has_comma) return NumberTextToDouble(number);
  std::u16string copy(number);
  std::replace(copy.begin(), copy.end(), u',', u'.');
  return NumberTextToDouble(copy);
}

namespace {

std::u16string FoldAsciiCopy(std::u16string_view s) {
  std::u16string folded(s);
  for (char16_t& c : folded)
    if (c >= u'A' && c <= u'Z') c = static_cast<char16_t>(c + 32);
  return folded;
}

std::u16string_view StripBlankEnds(std::u16string_view s) {
  const std::size_t first = s.find_first_not_of(u' ');
  if (first == std::u16string_view::npos) return {};
  return s.substr(first, s.find_last_not_of(u' ') - first + 1);
}

}  // namespace

std::u16string ScanForXMLAttrib(std::u16string_view attribs, std::u16string_view name) {
  enum State : std::uint8_t { kAttrName, kAttrValueStart, kAttrQuoted, kAttrPlain };
  const std::u16string wanted = FoldAsciiCopy(name);
  std::size_t pos = 0;
  while (true) {
    int status = pos >= attribs.size() ? 4 : 0;
    State state = kAttrName;
    std::u16string attr_name;
    std::u16string value;
    bool done = false;
    while (status == 0 && !done && pos < attribs.size()) {
      const char16_t c = attribs[pos++];
      const bool blank = c == u' ';
      const bool quote = c == u'"';
      const bool equals = c == u'=';
      switch (state) {
        case kAttrName:
          if (quote) {
            status = 1;
          } else if (equals) {
            state = kAttrValueStart;
          } else {
            attr_name.push_back(c);
          }
          break;
        case kAttrValueStart:
          if (quote) {
            state = kAttrQuoted;
          } else if (equals) {
            status = 2;
          } else if (!blank) {
            value.push_back(c);
            state = kAttrPlain;
          }
          break;
        case kAttrQuoted:
          if (quote) {
            done = true;
          } else {
            value.push_back(c);
          }
          break;
        case kAttrPlain:
          if (blank || quote) {
            done = true;
          } else if (equals) {
            status = 3;
          } else {
            value.push_back(c);
          }
          break;
      }
    }
    if (status != 0) return {};
    if (FoldAsciiCopy(StripBlankEnds(attr_name)) == wanted) return value;
  }
}

}  // namespace zyn::internal
