#include "zyn/platform/numconv.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>

#include "zyn/platform/object.h"
#include "zyn/platform/val.h"

namespace zyn::platform {
namespace {

std::u16string Quoted(std::u16string_view s, std::u16string_view text) {
  std::u16string message = u"'";
  message += s;
  message += u"' ";
  message += text;
  return message;
}

std::u16string_view StripBlanks(std::u16string_view s) {
  while (!s.empty() && s.front() == u' ') s.remove_prefix(1);
  while (!s.empty() && s.back() == u' ') s.remove_suffix(1);
  return s;
}

}  // namespace

std::int32_t StrToInt(std::u16string_view S) {
  int value = 0;
  int code = 0;
  Val(S, value, code);
  if (code != 0) throw EConvertError(Quoted(S, u"is not a valid integer value"));
  return value;
}

double StrToFloat(std::u16string_view S) {
  int code = 0;
  const double value = Val(StripBlanks(S), code);
  if (code != 0 || !std::isfinite(value)) {
    throw EConvertError(Quoted(S, u"is not a valid floating point value"));
  }
  return value;
}

std::u16string FloatToStr(double Value) {
  if (std::isnan(Value)) return u"NAN";
  if (std::isinf(Value)) return Value < 0 ? u"-INF" : u"INF";
  if (Value == 0.0) return u"0";

  // The shortest digits that read back exactly, as "d.ddde-x"; laid out anew
  // below in the runtime's general form.
  std::array<char, 32> buffer{};
  const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), Value,
                                    std::chars_format::scientific);
  const std::string_view sci(buffer.data(), static_cast<std::size_t>(result.ptr - buffer.data()));
  const std::size_t e_at = sci.find('e');
  std::string digits;
  for (char c : sci.substr(0, e_at)) {
    if (c >= '0' && c <= '9') digits.push_back(c);
  }
  const int exponent = std::atoi(std::string(sci.substr(e_at + 1)).c_str());

  std::string text;
  if (Value < 0) text.push_back('-');
  const int n = static_cast<int>(digits.size());
  if (exponent >= -5 && exponent < 15) {
    if (exponent < 0) {
      text += "0.";
      text.append(static_cast<std::size_t>(-exponent - 1), '0');
      text += digits;
    } else if (n <= exponent + 1) {
      text += digits;
      text.append(static_cast<std::size_t>(exponent + 1 - n), '0');
    } else {
      text.append(digits, 0, static_cast<std::size_t>(exponent + 1));
      text.push_back('.');
      text.append(digits, static_cast<std::size_t>(exponent + 1));
    }
  } else {
    text.push_back(digits[0]);
    if (n > 1) {
      text.push_back('.');
      text.append(digits, 1);
    }
    text.push_back('E');
    text += std::to_string(exponent);
  }
  return std::u16string(text.begin(), text.end());
}

}  // namespace zyn::platform
