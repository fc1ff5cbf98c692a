#include "zyn/platform/variant.h"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "zyn/platform/object.h"
#include "zyn/platform/text.h"
#include "zyn/platform/val.h"

namespace zyn::platform {
namespace {

std::u16string Widen(std::string_view ascii) { return {ascii.begin(), ascii.end()}; }

[[noreturn]] void CastError(int kind, std::u16string_view target) {
  std::u16string message = u"Could not convert a Variant of type ";
  message += VarTypeName(kind);
  message += u" into type ";
  message += target;
  throw EConvertError(std::move(message));
}

template <typename F>
std::u16string Shortest(F x) {
  if (std::isnan(x)) return u"NAN";
  if (std::isinf(x)) return x < 0 ? u"-INF" : u"INF";
  char buffer[64];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, x);
  return Widen({buffer, result.ptr});
}

// Days since 1970-01-01 to a civil date of the proleptic Gregorian calendar.
void CivilFromDays(std::int64_t z, std::int64_t& y, unsigned& m, unsigned& d) {
  z += 719468;
  const std::int64_t era = (z >= 0 ? z : z - 146096) / 146097;
  const auto doe = static_cast<unsigned>(z - era * 146097);
  const unsigned yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
  y = static_cast<std::int64_t>(yoe) + era * 400;
  const unsigned doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
  const unsigned mp = (5 * doy + 2) / 153;
  d = doy - (153 * mp + 2) / 5 + 1;
  m = mp < 10 ? mp + 3 : mp - 9;
  if (m <= 2) ++y;
}

void AppendDigits(std::u16string& out, std::int64_t value, int width) {
  char buffer[24];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
  for (int pad = width - static_cast<int>(result.ptr - buffer); pad > 0; --pad) out += u'0';
  out.append(buffer, result.ptr);
}

// The value of text read by Val, raising the cast error for bad text.
double TextToDouble(std::u16string_view text, int kind) {
  int code = 0;
  const double value = Val(text, code);
  if (code != 0) CastError(kind, u"Double");
  return value;
}

// Rounds to the nearest integer, ties to even, as the runtime's Round.
double RoundHalfEven(double x) {
  const double r = std::round(x);  // ties away from zero
  if (std::fabs(x - std::trunc(x)) == 0.5 && std::fmod(r, 2.0) != 0)
    return r - std::copysign(1.0, x);
  return r;
}

}  // namespace

bool IsVarType(int kind) noexcept {
  switch (kind) {
    case varEmpty:
    case varNull:
    case varSmallint:
    case varInteger:
    case varSingle:
    case varDouble:
    case varCurrency:
    case varDate:
    case varBoolean:
    case varShortInt:
    case varByte:
    case varWord:
    case varLongWord:
    case varInt64:
    case varString:
    case varUString:
      return true;
    default:
      return false;
  }
}

std::u16string_view VarTypeName(int kind) noexcept {
  switch (kind) {
    case varEmpty:
      return u"Empty";
    case varNull:
      return u"Null";
    case varSmallint:
      return u"Smallint";
    case varInteger:
      return u"Integer";
    case varSingle:
      return u"Single";
    case varDouble:
      return u"Double";
    case varCurrency:
      return u"Currency";
    case varDate:
      return u"Date";
    case varBoolean:
      return u"Boolean";
    case varShortInt:
      return u"ShortInt";
    case varByte:
      return u"Byte";
    case varWord:
      return u"Word";
    case varLongWord:
      return u"LongWord";
    case varInt64:
      return u"Int64";
    case varString:
      return u"String";
    case varUString:
      return u"UnicodeString";
    default:
      return u"Unknown";
  }
}

Variant Variant::Null() noexcept { return Variant(varNull, std::monostate{}); }

Variant Variant::FromAnsi(std::string_view bytes) {
  Variant v;
  v.kind_ = varString;
  v.value_ = std::string(bytes);
  return v;
}

std::int64_t Variant::IntValue() const noexcept {
  const auto* i = std::get_if<std::int64_t>(&value_);
  return i ? *i : 0;
}

double Variant::RealValue() const noexcept {
  const auto* d = std::get_if<double>(&value_);
  return d ? *d : 0.0;
}

std::string_view Variant::Ansi() const noexcept {
  const auto* s = std::get_if<std::string>(&value_);
  return s ? std::string_view(*s) : std::string_view();
}

std::u16string_view Variant::Wide() const noexcept {
  const auto* s = std::get_if<std::u16string>(&value_);
  return s ? std::u16string_view(*s) : std::u16string_view();
}

std::u16string Variant::AsString() const {
  switch (kind_) {
    case varEmpty:
      return {};
    case varSmallint:
    case varInteger:
    case varShortInt:
    case varByte:
    case varWord:
    case varLongWord:
    case varInt64: {
      std::u16string out;
      AppendDigits(out, IntValue(), 0);
      return out;
    }
    case varSingle:
      return ShortestFloatText(static_cast<float>(RealValue()));
    case varDouble:
      return ShortestFloatText(RealValue());
    case varCurrency:
      return CurrencyText(TCurrency{IntValue()});
    case varDate: {
      std::u16string out;
      if (!DateTimeText(TDateTime{RealValue()}, out)) CastError(kind_, u"String");
      return out;
    }
    case varBoolean:
      return IntValue() != 0 ? u"True" : u"False";
    case varString:
      return AnsiToString(Ansi());
    case varUString:
      return std::u16string(Wide());
    default:
      CastError(kind_, u"String");
  }
}

double Variant::AsDouble() const {
  switch (kind_) {
    case varEmpty:
      return 0.0;
    case varSmallint:
    case varInteger:
    case varShortInt:
    case varByte:
    case varWord:
    case varLongWord:
    case varInt64:
    case varBoolean:
      return static_cast<double>(IntValue());
    case varCurrency:
      return static_cast<double>(IntValue()) / 10000.0;
    case varSingle:
    case varDouble:
    case varDate:
      return RealValue();
    case varString:
      return TextToDouble(AnsiToString(Ansi()), kind_);
    case varUString:
      return TextToDouble(Wide(), kind_);
    default:
      CastError(kind_, u"Double");
  }
}

std::int32_t Variant::AsInteger() const {
  double real = 0;
  switch (kind_) {
    case varEmpty:
      return 0;
    case varSmallint:
    case varInteger:
    case varShortInt:
    case varByte:
    case varWord:
    case varLongWord:
    case varInt64:
    case varBoolean:
      // Two's complement makes this the wrap round to the low 32 bits.
      return static_cast<std::int32_t>(IntValue());
    case varCurrency:
      real = static_cast<double>(IntValue()) / 10000.0;
      break;
    case varSingle:
    case varDouble:
    case varDate:
      real = RealValue();
      break;
    case varString:
    case varUString: {
      const std::u16string text =
          kind_ == varString ? AnsiToString(Ansi()) : std::u16string(Wide());
      int value = 0;
      int code = 0;
      Val(text, value, code);
      if (code != 0) CastError(kind_, u"Integer");
      return value;
    }
    default:
      CastError(kind_, u"Integer");
  }
  real = RoundHalfEven(real);
  if (!(real >= -2147483648.0 && real <= 2147483647.0)) CastError(kind_, u"Integer");
  return static_cast<std::int32_t>(real);
}

bool operator==(const Variant& a, const Variant& b) noexcept {
  if (a.kind_ != b.kind_) return false;
  const auto* x = std::get_if<double>(&a.value_);
  const auto* y = std::get_if<double>(&b.value_);
  if (x && y) {
    if (std::isnan(*x) || std::isnan(*y)) return std::isnan(*x) && std::isnan(*y);
    return *x == *y && std::signbit(*x) == std::signbit(*y);
  }
  return a.value_ == b.value_;
}

std::u16string ShortestFloatText(double x) { return Shortest(x); }
std::u16string ShortestFloatText(float x) { return Shortest(x); }

bool DateTimeText(TDateTime d, std::u16string& out) {
  // 0001-01-01 and 9999-12-31 in days since 1899-12-30.
  constexpr double kFirstDay = -693593;
  constexpr double kLastDay = 2958465;
  const double v = d.Value;
  if (!std::isfinite(v) || v <= kFirstDay - 1 || v >= kLastDay + 1) return false;
  auto days = static_cast<std::int64_t>(std::trunc(v));
  auto ms = static_cast<std::int64_t>(std::llround(std::fabs(v - std::trunc(v)) * 86400000.0));
  if (ms >= 86400000) {
    ms -= 86400000;
    ++days;
  }
  if (days < kFirstDay || days > kLastDay) return false;
  std::int64_t year = 0;
  unsigned month = 0;
  unsigned day = 0;
  CivilFromDays(days - 25569, year, month, day);  // 25569: 1899-12-30 to 1970-01-01
  std::u16string text;
  AppendDigits(text, year, 4);
  text += u'-';
  AppendDigits(text, month, 2);
  text += u'-';
  AppendDigits(text, day, 2);
  if (ms != 0) {
    text += u'T';
    AppendDigits(text, ms / 3600000, 2);
    text += u':';
    AppendDigits(text, ms / 60000 % 60, 2);
    text += u':';
    AppendDigits(text, ms / 1000 % 60, 2);
    if (ms % 1000 != 0) {
      text += u'.';
      AppendDigits(text, ms % 1000, 3);
    }
  }
  out = std::move(text);
  return true;
}

std::u16string CurrencyText(TCurrency c) {
  std::u16string out;
  // The magnitude as unsigned, so that the smallest amount has one too.
  const std::uint64_t magnitude = c.Scaled < 0 ? 0 - static_cast<std::uint64_t>(c.Scaled)
                                               : static_cast<std::uint64_t>(c.Scaled);
  if (c.Scaled < 0) out += u'-';
  char buffer[24];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, magnitude / 10000);
  out.append(buffer, result.ptr);
  std::uint64_t fraction = magnitude % 10000;
  if (fraction != 0) {
    out += u'.';
    for (std::uint64_t unit = 1000; fraction != 0; unit /= 10) {
      out += static_cast<char16_t>(u'0' + fraction / unit);
      fraction %= unit;
    }
  }
  return out;
}

}  // namespace zyn::platform
