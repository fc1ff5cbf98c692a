#include "zyn/stringl/formatting.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>

#include "zyn/base/univconst.h"
#include "zyn/platform/casefold.h"
#include "zyn/platform/numtext.h"

namespace Zyn_stringl {

using zyn::platform::kStrBufferSize;
using zyn::platform::StrToBuffer;
using Zyn_zynbase::tsFalse;
using Zyn_zynbase::tsTrue;
using Zyn_zynbase::tsUndefined;
using Zyn_zynbase::TTriState;

namespace {

// Widths and digit counts beyond this only pad further than Str ever pads,
// so arguments are brought into this range before any arithmetic on them.
constexpr long long kArgLimit = 100000;

int Limit(long long v) { return static_cast<int>(std::clamp(v, -kArgLimit, kArgLimit)); }

// A number text being reworked in place: room for Str's longest text and a
// sign put in front.
struct NumText {
  std::array<char, kStrBufferSize + 1> chars;
  std::size_t size = 0;

  char* data() { return chars.data(); }
  std::span<char, kStrBufferSize> str_area() {
    return std::span<char, kStrBufferSize>(chars.data(), kStrBufferSize);
  }
  void Prepend(char c) {
    std::memmove(chars.data() + 1, chars.data(), size);
    chars[0] = c;
    ++size;
  }
  std::u16string ToString() const { return std::u16string(chars.data(), chars.data() + size); }
  NumText& AssignStr(double x, int width, int decimals) {
    size = StrToBuffer(x, width, decimals, str_area());
    return *this;
  }
};

// Zero-fill of a negative strff width: leading blanks become "0" and a "-"
// behind them moves to the front.
void ZeroFill(NumText& t) {
  std::size_t blanks = 0;
  while (blanks < t.size && t.chars[blanks] == ' ') t.chars[blanks++] = '0';
  if (blanks < t.size && t.chars[blanks] == '-') {
    t.chars[blanks] = '0';
    t.chars[0] = '-';
  }
}

NumText StrffText(double x, int width, int decimals) {
  const int field = std::abs(Limit(width));
  NumText t;
  if (decimals == -2 && std::isfinite(x)) {
    t.AssignStr(x, field + 2, -2);
    // Drop the first two of the four exponent digits; if they aren't "00"
    // the number doesn't fit and the field shows only "*".
    char* exponent = t.data() + t.size - 4;
    const bool fits = exponent[0] == '0' && exponent[1] == '0';
    exponent[0] = exponent[2];
    exponent[1] = exponent[3];
    t.size -= 2;
    if (!fits) std::memset(t.data(), '*', t.size);
  } else {
    t.AssignStr(x, field, decimals);
  }
  if (width < 0) ZeroFill(t);
  return t;
}

// Upper and lower limit of the fixed form of FormatData, by decimals.
constexpr std::array<double, 9> kFixedUpper = {999999999.0, 9999999.9, 999999.99,
                                               99999.999,   9999.9999, 999.99999,
                                               99.999999,   9.9999999, 0.99999999};
constexpr std::array<double, 9> kFixedLower = {1.0,     0.1,      0.01,      0.001,     0.0001,
                                               0.00001, 0.000001, 0.0000001, 0.00000001};

// The text between the blanks at both ends.
template <typename Char>
std::basic_string_view<Char> Trimmed(std::basic_string_view<Char> s) {
  const std::size_t begin = s.find_first_not_of(Char{' '});
  if (begin == s.npos) return {};
  return s.substr(begin, s.find_last_not_of(Char{' '}) + 1 - begin);
}

std::string_view TrimmedText(const NumText& t) {
  return Trimmed(std::string_view(t.chars.data(), t.size));
}

NumText AutoFormatText(double x, int sig) {
  sig = std::clamp(sig, 2, 16);
  if (x == 0) return StrffText(x, 1, sig - 1);
  const double lg = std::log(std::fabs(x)) / Zyn_univconst::uc_ln10;
  if (!std::isfinite(lg) || lg >= sig - 1 || lg <= -1) return StrffText(x, sig + 6, -2);
  const int t = static_cast<int>(lg);  // cut toward zero; |lg| < 16 here
  return StrffText(x, 1, sig - t - 1);
}

NumText SigDigText(double x, int width, int sig) {
  const long long w = Limit(width), s = Limit(sig);
  NumText t;
  if (x == 0) return t.AssignStr(x, width, Limit(s - 1));
  if (std::isfinite(x)) {
    // The count of integer digits, 0 or negative below 1.
    const auto e =
        static_cast<long long>(std::floor(std::log(std::fabs(x)) / Zyn_univconst::uc_ln10 + 1));
    if (e > s && e <= w - 1) return t.AssignStr(x, width, 0);
    if (e <= s && e >= s - w + 3) return t.AssignStr(x, width, Limit(s - e));
  }
  return StrffText(x, Limit(std::max(w, s + 6)), -2);
}

void AppendAscii(std::u16string& s, std::string_view ascii) {
  s.append(ascii.begin(), ascii.end());
}

void AppendInt(std::u16string& s, long long v) {
  char digits[24];
  AppendAscii(s, std::string_view(digits, std::to_chars(digits, digits + sizeof digits, v).ptr));
}

// Writes the list text; `write(i)` appends value i.
template <typename WriteValue>
std::u16string ParList(std::size_t count, bool trailing_comma, int max_count, WriteValue write) {
  std::u16string r = u"[";
  const bool cut = max_count > 0 && count > static_cast<std::size_t>(max_count);
  const std::size_t written = cut ? static_cast<std::size_t>(max_count) : count;
  for (std::size_t i = 0; i < written; ++i) {
    write(r, i);
    r.push_back(u',');
  }
  if (cut) r.append(u"...,");
  if (r.back() == u',')
    r.back() = u']';
  else
    r.push_back(u']');
  if (trailing_comma) r.push_back(u',');
  return r;
}

// A clock field of width 2, the blank of a one-digit value replaced by `fill`.
void AppendField(std::u16string& s, long long v, char16_t fill) {
  if (v < 10) s.push_back(fill);
  AppendInt(s, v);
}

}  // namespace

std::u16string strff(double x, int width, int decimals) {
  return StrffText(x, width, decimals).ToString();
}

std::u16string strffForcePlus(double x, int width, int decimals) {
  NumText t = StrffText(x, width, decimals);
  if (x < 0 || std::isnan(x)) return t.ToString();
  std::size_t blanks = 0;
  while (blanks + 1 < t.size && t.chars[blanks] == ' ') ++blanks;
  if (blanks > 0) {
    t.chars[blanks - 1] = '+';
  } else if (t.chars[0] == '0' && t.size > 1 && t.chars[1] != '.') {
    t.chars[0] = '+';  // a zero-filled field keeps its width
  } else {
    t.Prepend('+');
  }
  return t.ToString();
}

std::u16string FormatData(double x, int width, int decimals) {
  const bool in_table = decimals >= 0 && decimals <= 8;
  bool fixed = false;
  if (in_table && !std::isnan(x)) {
    const double a = std::fabs(x);
    fixed = x == 0 || (a <= kFixedUpper[decimals] && a >= kFixedLower[decimals]);
  }
  if (fixed) return zyn::platform::Str(x, width, decimals);
  return strff(x, Limit(static_cast<long long>(Limit(width)) + 6), -2);
}

std::u16string SigDigStr(double x, int width, int sig) {
  return SigDigText(x, width, sig).ToString();
}

std::u16string SigDigStr(double x, int width, int sig, bool strip) {
  const NumText t = SigDigText(x, width, sig);
  if (!strip) return t.ToString();
  const std::string_view text = TrimmedText(t);
  return std::u16string(text.begin(), text.end());
}

std::u16string AutoFormatData(double x, int sig) {
  const NumText t = AutoFormatText(x, sig);
  const std::string_view text = TrimmedText(t);
  return std::u16string(text.begin(), text.end());
}

std::u16string AutoFormatData(double x, int sig, bool comma) {
  std::u16string r = AutoFormatData(x, sig);
  if (comma) std::replace(r.begin(), r.end(), u'.', u',');
  return r;
}

std::u16string BoolToStr(bool b, int form) {
  static constexpr std::array<std::array<std::u16string_view, 2>, 8> kForms = {{
      {u"FALSE", u"TRUE"},
      {u"F", u"T"},
      {u".F.", u".T."},
      {u"0", u"1"},
      {u"0", u"-1"},
      {u"00", u"FF"},
      {u"NO", u"YES"},
      {u"BAD", u"GOOD"},
  }};
  if (form < 0 || form >= static_cast<int>(kForms.size())) form = 0;
  return std::u16string(kForms[static_cast<std::size_t>(form)][b ? 1 : 0]);
}

std::u16string BinString(bool b, std::u16string_view whenTrue, std::u16string_view whenFalse) {
  return std::u16string(b ? whenTrue : whenFalse);
}

TTriState StrToTriState(std::u16string_view s) {
  const std::u16string_view t = Trimmed(s);
  auto is = [t](std::u16string_view word) {
    return t.size() == word.size() &&
           std::equal(t.begin(), t.end(), word.begin(),
                      [](char16_t a, char16_t b) { return zyn::platform::LowCase(a) == b; });
  };
  if (is(u"true") || is(u"1") || is(u"+1") || is(u"yes")) return tsTrue;
  if (is(u"false") || is(u"-1") || is(u"no")) return tsFalse;
  return tsUndefined;
}

std::u16string TriStateToStr(TTriState value, int form) {
  static constexpr std::array<std::array<std::u16string_view, 3>, 3> kForms = {{
      {u"false", u"true", u""},
      {u"-1", u"1", u"0"},
      {u"no", u"yes", u"unknown"},
  }};
  if (form < 0 || form > 2) form = 0;
  const std::size_t v = value == tsFalse ? 0 : value == tsTrue ? 1 : 2;
  return std::u16string(kForms[static_cast<std::size_t>(form)][v]);
}

std::u16string TimeString(double seconds, std::uint8_t form) {
  if (!(seconds > 0) || !std::isfinite(seconds)) seconds = 0;
  // fmod is exact, so the split holds for every size of `seconds`.
  const double within_hour = std::fmod(seconds, 3600.0);
  const double whole_hours = std::round((seconds - within_hour) / 3600.0);
  const auto hours = static_cast<long long>(std::fmod(whole_hours, 65536.0));
  const auto minutes = std::min(static_cast<long long>(within_hour / 60.0), 59LL);
  const auto secs = std::min(static_cast<long long>(within_hour - minutes * 60.0), 59LL);
  const auto hundredths = static_cast<long long>((seconds - std::trunc(seconds)) * 100.0);

  std::u16string r;
  r.reserve(16);  // "65535:59:59.99" is the longest
  switch (form) {
    case 0:
    case 1:
      AppendField(r, hours, u'0');
      r.push_back(u':');
      AppendField(r, minutes, u'0');
      r.push_back(u':');
      AppendField(r, secs, u'0');
      if (form == 0) {
        r.push_back(u'.');
        AppendField(r, hundredths, u'0');
      }
      break;
    case 2:
    case 3:
      AppendField(r, hours, u' ');
      r.push_back(u'h');
      AppendField(r, minutes, u'0');
      if (form == 3) {
        r.push_back(u'\'');
        AppendField(r, secs, u'0');
        r.push_back(u'"');
      }
      break;
    case 4:
      AppendField(r, hours, u'0');
      r.push_back(u':');
      AppendField(r, minutes, u'0');
      break;
    case 5:
      AppendField(r, hours == 0 ? 12 : hours > 12 ? hours - 12 : hours, u' ');
      r.push_back(u':');
      AppendField(r, minutes, u'0');
      r.push_back(hours < 12 ? u'a' : u'p');
      break;
    default:
      break;
  }
  return r;
}

std::u16string CreateParList(const Zyn_zynbase::TIntArray& values, bool trailingComma,
                             int maxCount) {
  return ParList(values.size(), trailingComma, maxCount,
                 [&](std::u16string& r, std::size_t i) { AppendInt(r, values[i]); });
}

std::u16string CreateParList(std::span<const std::int32_t> values, bool trailingComma) {
  return ParList(values.size(), trailingComma, 0,
                 [&](std::u16string& r, std::size_t i) { AppendInt(r, values[i]); });
}

std::u16string CreateParList(const Zyn_zynbase::TDoubleArray& values, bool trailingComma,
                             int maxCount, int sig) {
  return ParList(values.size(), trailingComma, maxCount, [&](std::u16string& r, std::size_t i) {
    AppendAscii(r, TrimmedText(AutoFormatText(values[i], sig)));
  });
}

std::u16string CreateParList(std::span<const double> values, bool trailingComma) {
  return ParList(values.size(), trailingComma, 0, [&](std::u16string& r, std::size_t i) {
    AppendAscii(r, TrimmedText(AutoFormatText(values[i], 3)));
  });
}

std::u16string SortableNumericString(std::u16string_view s, char16_t decimalChar, int intWidth) {
  const std::u16string_view stripped = Trimmed(s);
  const std::size_t at = stripped.find(decimalChar);
  const long long p = at == stripped.npos ? 0 : static_cast<long long>(at) + 1;
  if (p >= intWidth) return std::u16string(stripped);
  const auto blanks = static_cast<std::size_t>(intWidth - p);
  std::u16string r;
  r.reserve(blanks + stripped.size());
  r.assign(blanks, u' ');
  r.append(stripped);
  return r;
}

}  // namespace Zyn_stringl
