// zyn/platform/text.h
//
// The library's two text types and the conversions between them and UTF-8.
// `std::u16string` is the string of the whole library: one char16_t per code
// unit, no knowledge of surrogate pairs. 8-bit text is Windows-1252; the five
// bytes that code page leaves undefined map to U+0081, U+008D, U+008F, U+0090
// and U+009D, so that every byte survives a trip to UTF-16 and back.

#ifndef ZYN_PLATFORM_TEXT_H_
#define ZYN_PLATFORM_TEXT_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace zyn::platform {

namespace text_detail {
// Code points of the bytes 0x80 to 0x9F in Windows-1252.
inline constexpr std::array<char16_t, 32> kCp1252High = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};
}  // namespace text_detail

// The byte a character becomes in the 8-bit code page; '?' for a character
// the code page can't hold.
constexpr unsigned char AnsiFromChar(char16_t c) {
  if (c < 0x80 || (c >= 0xA0 && c <= 0xFF)) return static_cast<unsigned char>(c);
  for (std::size_t i = 0; i < text_detail::kCp1252High.size(); ++i) {
    if (text_detail::kCp1252High[i] == c) return static_cast<unsigned char>(0x80 + i);
  }
  return '?';
}

// The character an 8-bit code-page byte stands for.
constexpr char16_t CharFromAnsi(unsigned char b) {
  return (b >= 0x80 && b < 0xA0) ? text_detail::kCp1252High[b - 0x80] : char16_t{b};
}

// Whole-string forms of the two conversions above.
std::string StringToAnsi(std::u16string_view s);
std::u16string AnsiToString(std::string_view bytes);

// UTF-16 to UTF-8. Surrogate pairs are joined. A lone surrogate from U+DC80 to
// U+DCFF is written as the single byte it escapes (see FromUTF8); any other
// lone surrogate becomes U+FFFD.
std::string ToUTF8(std::u16string_view s);

// UTF-8 to UTF-16. A byte that doesn't start or continue a valid sequence
// becomes the lone surrogate U+DC00 + byte, so ToUTF8(FromUTF8(b)) == b for
// every byte sequence b.
std::u16string FromUTF8(std::string_view s);

// A counted 8-bit text of at most `Capacity` characters in the 8-bit code page,
// as the cells of TStringArray and the language tables hold them. Longer input
// is cut to the capacity. Unused storage is kept zero, so equality is plain.
template <std::size_t Capacity>
class BasicShortString {
  static_assert(Capacity >= 1 && Capacity <= 255, "a short string holds 1 to 255 bytes");

 public:
  constexpr BasicShortString() = default;

  template <std::size_t N>
  constexpr BasicShortString(const char16_t (&literal)[N])  // NOLINT: implicit on purpose
      : BasicShortString(std::u16string_view(literal, N - 1)) {}

  constexpr explicit BasicShortString(std::u16string_view s) {
    length_ = static_cast<std::uint8_t>(s.size() < Capacity ? s.size() : Capacity);
    for (std::size_t i = 0; i < length_; ++i) chars_[i] = AnsiFromChar(s[i]);
  }

  // Takes the bytes as they stand, cut to the capacity.
  static constexpr BasicShortString FromBytes(std::string_view bytes) {
    BasicShortString r;
    r.length_ = static_cast<std::uint8_t>(bytes.size() < Capacity ? bytes.size() : Capacity);
    for (std::size_t i = 0; i < r.length_; ++i) r.chars_[i] = static_cast<unsigned char>(bytes[i]);
    return r;
  }

  static constexpr std::size_t capacity() { return Capacity; }
  constexpr std::size_t size() const { return length_; }
  constexpr bool empty() const { return length_ == 0; }
  constexpr unsigned char operator[](std::size_t i) const { return chars_[i]; }

  std::string_view bytes() const { return {reinterpret_cast<const char*>(chars_.data()), length_}; }
  std::u16string str() const { return AnsiToString(bytes()); }

  friend constexpr bool operator==(const BasicShortString&, const BasicShortString&) = default;

 private:
  std::uint8_t length_ = 0;
  std::array<unsigned char, Capacity> chars_{};
};

using ShortString = BasicShortString<255>;

}  // namespace zyn::platform

#endif  // ZYN_PLATFORM_TEXT_H_
