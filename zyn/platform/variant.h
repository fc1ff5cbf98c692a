// zyn/platform/variant.h
//
// Variant, the platform's tagged value: one value of a small set of kinds,
// each known by the kind number the runtime gave it (varInteger = 3, ...),
// with the conversions to text, double and integer its users rely on.

#ifndef ZYN_PLATFORM_VARIANT_H_
#define ZYN_PLATFORM_VARIANT_H_

#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

namespace zyn::platform {

// The kind of a Variant, by the runtime's numbers.
enum TVarType : std::uint16_t {
  varEmpty = 0,      // nothing assigned
  varNull = 1,       // the SQL-like "no value"
  varSmallint = 2,   // 16-bit signed
  varInteger = 3,    // 32-bit signed
  varSingle = 4,     // 32-bit float
  varDouble = 5,     // 64-bit float
  varCurrency = 6,   // fixed point, four decimals
  varDate = 7,       // TDateTime
  varBoolean = 11,   //
  varShortInt = 16,  // 8-bit signed
  varByte = 17,      // 8-bit unsigned
  varWord = 18,      // 16-bit unsigned
  varLongWord = 19,  // 32-bit unsigned
  varInt64 = 20,     // 64-bit signed
  varString = 256,   // 8-bit text in the 8-bit code page
  varUString = 258,  // UTF-16 text
};

// True for the kind numbers above.
bool IsVarType(int kind) noexcept;

// A fixed-point amount with four decimals; `Scaled` is the amount times 10000.
struct TCurrency {
  std::int64_t Scaled = 0;
  friend constexpr bool operator==(TCurrency, TCurrency) = default;
};

// A point in time: whole days since 1899-12-30 00:00, and the time of day as
// the fraction. For a negative value the fraction still counts forward from
// the start of its day: -1.25 is 1899-12-29 06:00.
struct TDateTime {
  double Value = 0;
};

class Variant {
 public:
  // varEmpty.
  Variant() noexcept = default;
  // varNull.
  static Variant Null() noexcept;

  template <std::same_as<bool> B>
  Variant(B b) noexcept : kind_(varBoolean), value_(std::int64_t{b}) {}  // NOLINT: implicit
  Variant(std::int8_t v) noexcept : kind_(varShortInt), value_(std::int64_t{v}) {}
  Variant(std::uint8_t v) noexcept : kind_(varByte), value_(std::int64_t{v}) {}
  Variant(std::int16_t v) noexcept : kind_(varSmallint), value_(std::int64_t{v}) {}
  Variant(std::uint16_t v) noexcept : kind_(varWord), value_(std::int64_t{v}) {}
  Variant(std::int32_t v) noexcept : kind_(varInteger), value_(std::int64_t{v}) {}
  Variant(std::uint32_t v) noexcept : kind_(varLongWord), value_(std::int64_t{v}) {}
  Variant(std::int64_t v) noexcept : kind_(varInt64), value_(v) {}
  Variant(float v) noexcept : kind_(varSingle), value_(double{v}) {}
  Variant(double v) noexcept : kind_(varDouble), value_(v) {}
  Variant(TCurrency v) noexcept : kind_(varCurrency), value_(v.Scaled) {}
  Variant(TDateTime v) noexcept : kind_(varDate), value_(v.Value) {}
  // varUString.
  Variant(std::u16string v) noexcept : kind_(varUString), value_(std::move(v)) {}
  Variant(std::u16string_view v) : Variant(std::u16string(v)) {}
  Variant(const char16_t* v) : Variant(std::u16string(v)) {}
  // 8-bit text has to be asked for by FromAnsi: a char pointer is no Boolean.
  Variant(const char*) = delete;
  // varString: the bytes as they are, each a character of the 8-bit code page.
  static Variant FromAnsi(std::string_view bytes);

  TVarType VarType() const noexcept { return kind_; }
  bool IsNull() const noexcept { return kind_ == varNull; }
  bool IsEmpty() const noexcept { return kind_ == varEmpty; }

  // The stored value, without conversion. IntValue: the integer kinds,
  // Boolean (0 or 1) and currency (Scaled), else 0. RealValue: single,
  // double and date, else 0.0. Ansi: the bytes of varString, Wide: the text
  // of varUString, else empty.
  std::int64_t IntValue() const noexcept;
  double RealValue() const noexcept;
  std::string_view Ansi() const noexcept;
  std::u16string_view Wide() const noexcept;

  // The value as text: integers in decimal; single and double in the
  // shortest text that reads back to the same number ("0.1", "1e+20",
  // "NAN", "INF", "-INF"); currency with up to four decimals ("-12.5");
  // Boolean "True" or "False"; a date in ISO 8601 ("2024-03-01",
  // "2024-03-01T13:05:00", "2024-03-01T13:05:00.250", to the millisecond);
  // varString through the 8-bit code page; varEmpty "". varNull, and a date
  // outside the years 1 to 9999, raise EConvertError.
  std::u16string AsString() const;
  // The value as double: numbers as they are, currency / 10000, a date's
  // day count, Boolean 1 or 0, varEmpty 0, text read by Val as a whole.
  // varNull and text that is no number raise EConvertError.
  double AsDouble() const;
  // The value as a 32-bit integer: integer kinds wrap round to 32 bits
  // (2^32 + 5 gives 5), floats, currency and dates round to the nearest
  // (ties to even) and must fit, Boolean 1 or 0, varEmpty 0, text read by
  // Val. varNull, NaN, a float out of range and bad text raise EConvertError.
  std::int32_t AsInteger() const;

  // Same kind and same value; two NaNs of a kind are equal, 0.0 and -0.0 not.
  friend bool operator==(const Variant& a, const Variant& b) noexcept;

 private:
  Variant(TVarType kind, std::monostate) noexcept : kind_(kind) {}

  TVarType kind_ = varEmpty;
  std::variant<std::monostate, std::int64_t, double, std::string, std::u16string> value_;
};

// The name of a kind for messages: "Integer", "Null", ...; "Unknown" for a
// number that is no kind.
std::u16string_view VarTypeName(int kind) noexcept;

// The shortest text of a double (or of a float) that reads back to the same
// value, with "." and no locale; "NAN", "INF", "-INF" for the non-finite.
std::u16string ShortestFloatText(double x);
std::u16string ShortestFloatText(float x);

// The ISO 8601 text AsString gives a date; false (and `out` untouched) for a
// date outside the years 1 to 9999 or not finite.
bool DateTimeText(TDateTime d, std::u16string& out);

// The text of a currency amount: up to four decimals, no trailing zeros.
std::u16string CurrencyText(TCurrency c);

}  // namespace zyn::platform

#endif  // ZYN_PLATFORM_VARIANT_H_
