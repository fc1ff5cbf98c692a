// zyn/stringl/grep.h
//
// TGrep, the library's small regular-expression component. A pattern compiles
// into a fixed table of at most 64 tokens, which a recursive backtracking
// matcher then runs over a text. The dialect is the library's own: a group
// "(abc)" is a quoted literal string, there is no alternation, and `*`, `+`,
// `?` apply to one character, one set, `.` or one group.
//
//   TGrep grep;
//   grep.SetRegExp(u"a[0-9]*b");
//   int start = 0;
//   if (grep.MatchString(u"xa12b", start)) { /* start 2, MatchEndPos() 5 */ }

#ifndef ZYN_STRINGL_GREP_H_
#define ZYN_STRINGL_GREP_H_

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "zyn/platform/object.h"

namespace Zyn_stringl {

// The kind of a token.
enum TGrepTokenAct : std::uint8_t {
  taNormal,   // a literal string (also a group)
  taAnyByte,  // `.`
  taEol,      // `$`
  taBol,      // `^`
  taSet,      // `[...]`
  taMult0,    // `*`: zero or more of its operand
  taMult1,    // `+`: one or more
  taOpti      // `?`: zero or one
};

// 256 characters, indexed 0 to 255.
using TCharArr256 = std::array<char16_t, 256>;

// One compiled token. `NumChars`: for taNormal the number of literal
// characters; for the multipliers what they multiply (-1 a set, 0 any
// character, n > 0 a literal string of length n); -1 for taSet; 0 otherwise.
// `Params` holds the literal characters in entries 1 to NumChars, or, for a
// set, u'*' at each member code and u' ' elsewhere. `ValidFrom` is the text
// position at which the token last passed its test (0 after a compile).
struct TGrepToken {
  TGrepTokenAct Action = taNormal;
  std::int32_t NumChars = 0;
  TCharArr256 Params{};
  std::int32_t ValidFrom = 0;
};

// Capacity of the token table and of one literal token.
inline constexpr int kMaxGrepTokens = 64;
inline constexpr int kMaxGrepTokenChars = 255;

// The token table. Token t (1 to 64) is element t - 1.
using TRegExp = std::array<TGrepToken, kMaxGrepTokens>;

// The text of an error number as LastError() reports it: 0 gives "no errors",
// 1 to 9 the compiler's errors, 10 "reg.exp. too long" (a pattern that needs
// more than the table holds). Any other number gives an empty text.
std::u16string_view GrepErrorText(int Error);

class TGrep : public zyn::platform::TComponent {
 public:
  // Starts without a pattern: no tokens, SearchStartPos 1, StopOnError true.
  explicit TGrep(TComponent* AOwner = nullptr);
  ~TGrep() override;

  // The pattern text as last given to SetRegExp.
  const std::u16string& RegExp() const noexcept { return FRegExpStr; }
  // Stores and compiles `Value`. On a compile error with StopOnError() true
  // throws EZYNStringlError "Component "<Name>": error in regular expression -
  // <error text>"; the text stays stored and the table stands as far as built.
  void SetRegExp(std::u16string_view Value);

  bool IgnoreCase() const noexcept { return FIgnoreCase; }
  // Stores `Value` and compiles RegExp() again. Never throws; a compile
  // error stands in LastError().
  void SetIgnoreCase(bool Value);

  // The text position at which MatchString begins its search; a position
  // below 1 holds no character, like one behind the end.
  int SearchStartPos() const noexcept { return FSrcStartPos; }
  void SetSearchStartPos(int Value) noexcept { FSrcStartPos = Value; }

  bool StopOnError() const noexcept { return FStopOnError; }
  void SetStopOnError(bool Value) noexcept { FStopOnError = Value; }

  // RegExpToken[index]: a copy of token `index`, which is first limited to at
  // most NrOfRegExpTokens(), then to at least 1.
  TGrepToken GetRegExpToken(int index) const;
  TGrepToken RegExpToken(int index) const { return GetRegExpToken(index); }

  int MatchStartPos() const noexcept { return FMatchStartPos; }
  int MatchEndPos() const noexcept { return FMatchEndPos; }
  int NrOfRegExpTokens() const noexcept { return FLengRegExp; }
  int LastError() const noexcept { return FError; }

  // Compiles `pattern` into the table (RegExp() is not changed) and returns
  // the error number, 0 on success. Raises nothing. Tokens above the new
  // count keep their Action and Params.
  int CompileRegExp(std::u16string_view pattern);

  // Searches `text` from SearchStartPos() on. True on a match, with
  // `startPos` and MatchStartPos() at its first character and MatchEndPos()
  // at its last. After a failed search `startPos` and MatchStartPos() hold
  // where token 1 last passed its test (0 if never since the compile).
  // Allocates nothing and raises nothing.
  bool MatchString(std::u16string_view text, int& startPos);

  // Writes one line per token and a line with the text of LastError() to
  // the text file `fileName`, replacing it. Lets the platform's input/output
  // exception through when the file can't be created or written.
  void PrintRegExp(std::u16string_view fileName) const;

 private:
  int FLengRegExp = 0;
  bool FStopOnError = true;
  TRegExp FregExp{};
  std::u16string FRegExpStr;
  bool FIgnoreCase = false;
  std::int32_t FError = 0;
  std::int32_t FMatchEndPos = 0;
  std::int32_t FMatchStartPos = 0;
  std::int32_t FSrcStartPos = 1;
  // The code units at which token 1 can pass, as up to four ranges (low,
  // high - low) for the search's skipping; -1 when ranges don't describe them.
  std::array<char16_t, 8> first_units_{};
  int first_unit_ranges_ = -1;
  // The same for the last character of a literal token 1 of two or more
  // characters, which the skipping checks at the same time; -1 otherwise.
  std::array<char16_t, 8> last_units_{};
  int last_unit_ranges_ = -1;
};

}  // namespace Zyn_stringl

#endif  // ZYN_STRINGL_GREP_H_
