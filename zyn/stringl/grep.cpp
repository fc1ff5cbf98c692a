#include "zyn/stringl/grep.h"

#include <algorithm>
#include <bit>
#include <climits>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "zyn/base/zynbase.h"
#include "zyn/platform/casefold.h"
#include "zyn/platform/textfile.h"
#include "zyn/stringl/unit.h"

namespace Zyn_stringl {

namespace {

constexpr int kErrorTooLong = 10;

constexpr std::u16string_view kErrorTexts[] = {
    u"no errors",
    u"reg.exp. must not start with $, *, ?, or +",
    u"circumflex not allowed here",
    u"no character allowed after end of line",
    u"empty set",
    u"circumflex has to be quoted in set",
    u"mismatch of set brackets",
    u"minus not allowed here",
    u"mismatch of group brackets",
    u"*, ?, + have to be applied to groups or sets only",
    u"reg.exp. too long",
};

constexpr char16_t kMember = u'*';
constexpr char16_t kNoMember = u' ';

int HexDigit(char16_t c) {
  if (c >= u'0' && c <= u'9') return c - u'0';
  if (c >= u'a' && c <= u'f') return c - u'a' + 10;
  if (c >= u'A' && c <= u'F') return c - u'A' + 10;
  return -1;
}

// The value of at most two characters read as a hexadecimal number: blanks
// in front are skipped, a '$' in the very first place is passed over, and
// reading stops at the first character that is no digit.
char16_t HexValue(std::u16string_view digits) {
  std::size_t i = 0;
  while (i < digits.size() && digits[i] == u' ') ++i;
  if (i == 0 && i < digits.size() && digits[i] == u'$') ++i;
  int value = 0;
  for (; i < digits.size() && HexDigit(digits[i]) >= 0; ++i)
    value = value * 16 + HexDigit(digits[i]);
  return static_cast<char16_t>(value);
}

// Replaces each "\#hh" that doesn't directly follow a backslash by the
// character of code hh. Runs on the raw pattern text, so the new character
// has whatever meaning it has in the dialect.
void ReplaceHexEscapes(std::u16string& s) {
  std::size_t from = 0;
  for (;;) {
    const std::size_t at = s.find(u"\\#", from);
    if (at == std::u16string::npos) return;
    if (at > 0 && s[at - 1] == u'\\') {
      from = at + 2;
      continue;
    }
    const std::size_t digits = std::min<std::size_t>(2, s.size() - (at + 2));
    const char16_t c = HexValue(std::u16string_view(s).substr(at + 2, digits));
    s.replace(at, 2 + digits, 1, c);
    from = at + 1;
  }
}

enum class State {
  kStart,
  kNormal,
  kAfterSet,
  kAfterGroup,
  kAfterEnd,
  kSetFirst,
  kSetNext,
  kInGroup
};

// The state machine that turns a prepared pattern into tokens. Every token it
// begins is counted in `count`; it never writes outside the table.
class TokenBuilder {
 public:
  TokenBuilder(TRegExp& table, int& count) : table_(table), count_(count) {}

  // Reads `pattern` to its end or to the first error; returns the error.
  int Build(std::u16string_view pattern) {
    pattern_ = pattern;
    pos_ = 0;
    while (pos_ < pattern_.size()) {
      const char16_t c = pattern_[pos_++];
      const int error = Step(c);
      if (error != 0) return error;
    }
    return 0;
  }

 private:
  int Step(char16_t c) {
    switch (state_) {
      case State::kStart:
      case State::kNormal:
      case State::kAfterSet:
      case State::kAfterGroup:
        return Outside(c);
      case State::kAfterEnd:
        return 3;
      case State::kSetFirst:
        return SetFirst(c);
      case State::kSetNext:
        return SetNext(c);
      case State::kInGroup:
        return InGroup(c);
    }
    return 0;
  }

  int Outside(char16_t c) {
    switch (c) {
      case u'.':
        return Begin(taAnyByte, 0, State::kNormal);
      case u'$':
        if (state_ == State::kStart) return 1;
        return Begin(taEol, 0, State::kAfterEnd);
      case u'*':
        return Multiply(taMult0);
      case u'+':
        return Multiply(taMult1);
      case u'?':
        return Multiply(taOpti);
      case u'(':
        // A group right behind a group continues its token.
        if (state_ == State::kAfterGroup) {
          state_ = State::kInGroup;
          return 0;
        }
        return Begin(taNormal, 0, State::kInGroup);
      case u')':
        return 8;
      case u'[':
        if (int error = Begin(taSet, -1, State::kSetFirst); error != 0) return error;
        Last().Params.fill(kNoMember);
        return 0;
      case u']':
        return 6;
      case u'^':
        if (state_ != State::kStart) return 2;
        return Begin(taBol, 0, State::kNormal);
      case u'\\': {
        const char16_t next = TakeNext();
        if (state_ == State::kNormal || state_ == State::kAfterSet) last_char_ = next;
        return state_ == State::kNormal ? AddLiteral(next) : NewLiteral(next);
      }
      case u'-':
        if (state_ == State::kAfterSet) return 7;
        [[fallthrough]];
      default:
        if (state_ == State::kAfterSet) last_char_ = c;
        return state_ == State::kNormal ? AddLiteral(c) : NewLiteral(c);
    }
  }

  int SetFirst(char16_t c) {
    switch (c) {
      case u']':
        return 4;
      case u'^':
        invert_ = true;
        break;
      case u'-':
        return 7;
      case u'\\':
        AddMember(TakeNext());
        break;
      default:
        AddMember(c);
    }
    state_ = State::kSetNext;
    return 0;
  }

  int SetNext(char16_t c) {
    switch (c) {
      case u']':
        if (invert_) {
          for (char16_t& entry : Last().Params) entry = entry == kMember ? kNoMember : kMember;
          invert_ = false;
        }
        state_ = State::kAfterSet;
        return 0;
      case u'^':
        return 5;
      case u'-':
        // The range end is taken as it stands; a '-' ending the pattern adds nothing.
        if (pos_ < pattern_.size()) AddRange(pattern_[pos_++]);
        return 0;
      case u'\\':
        AddMember(TakeNext());
        return 0;
      default:
        AddMember(c);
        return 0;
    }
  }

  int InGroup(char16_t c) {
    switch (c) {
      case u')':
        state_ = State::kAfterGroup;
        return 0;
      case u'^':
        return 2;
      case u'\\':
        return AppendChar(TakeNext());
      default:
        return AppendChar(c);
    }
  }

  // The multiplier `act` applied to the last token, by the rules of the
  // state the machine is in; the state stays.
  int Multiply(TGrepTokenAct act) {
    if (state_ == State::kStart || count_ == 0) return 1;
    TGrepToken& last = Last();
    switch (state_) {
      case State::kNormal:
        if (last.Action == taAnyByte) {
          last.Action = act;
          last.NumChars = 0;
          return 0;
        }
        if (last.Action != taNormal) return 9;
        if (last.NumChars <= 1) {
          last.Action = act;
          return 0;
        }
        // Only the last character of a literal run is multiplied.
        if (count_ == kMaxGrepTokens) return kErrorTooLong;
        {
          const char16_t c = last.Params[static_cast<std::size_t>(last.NumChars)];
          --last.NumChars;
          Begin(act, 1, state_);
          Last().Params[1] = c;
        }
        return 0;
      case State::kAfterSet:
        if (last.Action != taSet) return 9;
        last.Action = act;
        last.NumChars = -1;
        return 0;
      case State::kAfterGroup:
        if (last.Action != taNormal) return 9;
        last.Action = act;
        return 0;
      default:
        return 9;
    }
  }

  // Begins token count_ + 1 with `act` and `num_chars` and moves to `next`.
  int Begin(TGrepTokenAct act, int num_chars, State next) {
    if (count_ == kMaxGrepTokens) return kErrorTooLong;
    ++count_;
    Last().Action = act;
    Last().NumChars = num_chars;
    state_ = next;
    return 0;
  }

  int NewLiteral(char16_t c) {
    if (int error = Begin(taNormal, 0, State::kNormal); error != 0) return error;
    return AppendChar(c);
  }

  // Appends to the last literal; a full one is continued in a new token,
  // which matches the same texts.
  int AddLiteral(char16_t c) {
    if (Last().Action != taNormal || Last().NumChars == kMaxGrepTokenChars) return NewLiteral(c);
    return AppendChar(c);
  }

  // Appends `c` to the last token whatever its kind: a group continued
  // behind a multiplied group grows the multiplied string.
  int AppendChar(char16_t c) {
    TGrepToken& last = Last();
    if (last.NumChars >= kMaxGrepTokenChars) return kErrorTooLong;
    ++last.NumChars;
    last.Params[static_cast<std::size_t>(last.NumChars)] = c;
    return 0;
  }

  // Set members have codes 0 to 255; a character above is remembered as
  // LastChar but is no member.
  void AddMember(char16_t c) {
    if (c < Last().Params.size()) Last().Params[c] = kMember;
    last_char_ = c;
  }

  void AddRange(char16_t end) {
    const char16_t low = std::min(last_char_, end);
    const char16_t high = std::max(last_char_, end);
    const int top = std::min<int>(high, static_cast<int>(Last().Params.size()) - 1);
    for (int code = low; code <= top; ++code)
      Last().Params[static_cast<std::size_t>(code)] = kMember;
    last_char_ = low;
  }

  // The character behind a backslash, consumed; code 0 at the pattern's end.
  char16_t TakeNext() { return pos_ < pattern_.size() ? pattern_[pos_++] : u'\0'; }

  TGrepToken& Last() { return table_[static_cast<std::size_t>(count_ - 1)]; }

  TRegExp& table_;
  int& count_;
  std::u16string_view pattern_;
  std::size_t pos_ = 0;
  State state_ = State::kStart;
  char16_t last_char_ = u'A';
  bool invert_ = false;
};

// The attempt loop looks for the code units at which token 1 can pass. They
// are kept as up to four ranges, each its lowest unit and its width minus one;
// more ranges than that are scanned unit by unit.
constexpr int kMaxUnitRanges = 4;
using UnitRanges = std::array<char16_t, 2 * kMaxUnitRanges>;

bool InRanges(char16_t c, const UnitRanges& bounds, int count) {
  for (int i = 0; i < count; ++i) {
    if (static_cast<char16_t>(c - bounds[2 * i]) <= bounds[2 * i + 1]) return true;
  }
  return false;
}

// The first unit of [from, end) that lies in one of `count` ranges, or `end`.
// With SSE2 eight or sixteen units are tested at once; the result is that of
// the loop behind it, which also takes the last few units.
const char16_t* FindInRanges(const char16_t* from, const char16_t* end, const UnitRanges& bounds,
                             int count) {
  if (count <= 0) return end;
#if defined(__SSE2__)
  __m128i low[kMaxUnitRanges]{};
  __m128i width[kMaxUnitRanges]{};
  for (int i = 0; i < count; ++i) {
    low[i] = _mm_set1_epi16(static_cast<short>(bounds[2 * i]));
    width[i] = _mm_set1_epi16(static_cast<short>(bounds[2 * i + 1]));
  }
  const __m128i zero = _mm_setzero_si128();
  // One bit pair per unit of the eight from `at` that lie in a range.
  const auto hits = [&](const char16_t* at) {
    const __m128i units = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
    __m128i hit = zero;
    for (int i = 0; i < count; ++i) {
      // unit - low <= width, unsigned: the saturated difference to width is 0.
      const __m128i over = _mm_subs_epu16(_mm_sub_epi16(units, low[i]), width[i]);
      hit = _mm_or_si128(hit, _mm_cmpeq_epi16(over, zero));
    }
    return static_cast<unsigned>(_mm_movemask_epi8(hit));
  };
  // Hits often come close together: the first eight units go alone.
  const auto eight = [&](const char16_t*& at) {
    if (end - at < 8) return false;
    if (const unsigned mask = hits(at); mask != 0) {
      at += std::countr_zero(mask) / 2;
      return true;
    }
    at += 8;
    return false;
  };
  if (eight(from)) return from;
  for (; end - from >= 16; from += 16) {
    if (const unsigned mask = hits(from) | hits(from + 8) << 16; mask != 0)
      return from + std::countr_zero(mask) / 2;
  }
  if (eight(from)) return from;
#endif
  for (; from != end; ++from) {
    if (InRanges(*from, bounds, count)) return from;
  }
  return end;
}

// The first unit of [from, end) that lies in the `first` ranges while the
// unit `offset` behind it lies in the `last` ranges, or `end`; the caller
// makes sure that units up to `end + offset` may be read. Checking both ends
// of a literal at once passes over most places where only its first
// character stands.
const char16_t* FindBothEnds(const char16_t* from, const char16_t* end, const UnitRanges& first,
                             int first_count, const UnitRanges& last, int last_count,
                             std::ptrdiff_t offset) {
  if (first_count <= 0 || last_count <= 0) return end;
#if defined(__SSE2__)
  struct Ranges {
    __m128i low[kMaxUnitRanges]{};
    __m128i width[kMaxUnitRanges]{};
    int count = 0;
  };
  const auto prepare = [](const UnitRanges& bounds, int count) {
    Ranges r;
    r.count = count;
    for (int i = 0; i < count; ++i) {
      r.low[i] = _mm_set1_epi16(static_cast<short>(bounds[2 * i]));
      r.width[i] = _mm_set1_epi16(static_cast<short>(bounds[2 * i + 1]));
    }
    return r;
  };
  const Ranges head = prepare(first, first_count);
  const Ranges tail = prepare(last, last_count);
  const __m128i zero = _mm_setzero_si128();
  const auto in = [&zero](const Ranges& r, const char16_t* at) {
    const __m128i units = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
    __m128i hit = zero;
    for (int i = 0; i < r.count; ++i) {
      const __m128i over = _mm_subs_epu16(_mm_sub_epi16(units, r.low[i]), r.width[i]);
      hit = _mm_or_si128(hit, _mm_cmpeq_epi16(over, zero));
    }
    return hit;
  };
  const auto hits = [&](const char16_t* at) {
    return static_cast<unsigned>(
        _mm_movemask_epi8(_mm_and_si128(in(head, at), in(tail, at + offset))));
  };
  for (; end - from >= 16; from += 16) {
    if (const unsigned mask = hits(from) | hits(from + 8) << 16; mask != 0)
      return from + std::countr_zero(mask) / 2;
  }
  for (; end - from >= 8; from += 8) {
    if (const unsigned mask = hits(from); mask != 0) return from + std::countr_zero(mask) / 2;
  }
#endif
  for (; from != end; ++from) {
    if (InRanges(*from, first, first_count) && InRanges(from[offset], last, last_count))
      return from;
  }
  return end;
}

// The text units that read as the literal character `c` under ASCII folding
// `fold`, as ranges into `bounds`; their count.
int LiteralUnitRanges(char16_t c, bool fold, UnitRanges& bounds) {
  int count = 0;
  const auto add = [&](char16_t unit) {
    bounds[static_cast<std::size_t>(2 * count)] = unit;
    bounds[static_cast<std::size_t>(2 * count + 1)] = 0;
    ++count;
  };
  if (!fold) {
    add(c);
  } else if (c >= u'a' && c <= u'z') {
    add(static_cast<char16_t>(c - 32));
    add(c);
  } else if (c < u'A' || c > u'Z') {  // an upper-case letter never reads as itself
    add(c);
  }
  return count;
}

// The text units at which `token`, the first of a table, can pass its test
// when the text is read with ASCII folding `fold`: for a literal those that
// read as its first character, for a set the members. Writes them as ranges
// into `bounds` and gives their count, or -1 when the token is of another
// kind or needs more than kMaxUnitRanges ranges.
int FirstUnitRanges(const TGrepToken& token, bool fold, UnitRanges& bounds) {
  const bool literal = token.Action == taNormal && token.NumChars > 0;
  if (!literal && token.Action != taSet) return -1;
  const char16_t first = token.Params[1];
  // Units below 256 read as units below 256.
  const auto passes = [&](int unit) {
    const char16_t read =
        fold ? zyn::platform::LowCase(static_cast<char16_t>(unit)) : static_cast<char16_t>(unit);
    return literal ? read == first : token.Params[read] == kMember;
  };
  int count = 0;
  const auto add = [&](int low, int high) {
    if (count == kMaxUnitRanges) return false;
    bounds[static_cast<std::size_t>(2 * count)] = static_cast<char16_t>(low);
    bounds[static_cast<std::size_t>(2 * count + 1)] = static_cast<char16_t>(high - low);
    ++count;
    return true;
  };
  for (int unit = 0; unit < 256; ++unit) {
    if (!passes(unit)) continue;
    const int low = unit;
    while (unit < 255 && passes(unit + 1)) ++unit;
    if (!add(low, unit)) return -1;
  }
  // No folding reaches a literal character above 255: only itself reads as it.
  if (literal && first > 255) add(first, first);
  return count;
}

// Positions handed on by the matcher stay below this bound, so that adding a
// token's length never overflows: a longer text is searched in its first
// kMaxTextLength characters only, and a start position is held below it.
constexpr int kMaxTextLength = INT_MAX - 4096;

// A position below 1 holds no character, so every token's test there has the
// same outcome wherever it lies, and a token moves a position by at most one
// unless it is a multiplied `.`. From positions at or below kSameBelow an
// attempt thus passes the same tokens and ends the same way (its positions
// merely shifted); a search that failed there goes on at kSameBelow.
constexpr int kSameBelow = -kMaxGrepTokens;

// Below every position a search can start at.
constexpr int kNoCandidate = INT_MIN;

// One search of a text with a compiled table: the recursive backtracking
// matcher. Holds only references and positions; allocates nothing.
class Matcher {
 public:
  // `first_units` and `first_ranges` are what FirstUnitRanges gives for the
  // first token of `table` and `fold`; `last_units` and `last_ranges` the
  // ranges of the last character of a literal token 1 of two or more
  // characters (last_ranges -1 otherwise).
  Matcher(TRegExp& table, int count, std::u16string_view text, bool fold,
          const UnitRanges& first_units, int first_ranges, const UnitRanges& last_units,
          int last_ranges, std::int32_t& match_end)
      : table_(table),
        count_(count),
        text_(text),
        len_(static_cast<int>(std::min<std::size_t>(text.size(), kMaxTextLength))),
        fold_(fold),
        first_units_(first_units),
        first_ranges_(first_ranges),
        last_units_(last_units),
        last_ranges_(last_ranges),
        match_end_(match_end) {}

  // Tries token `t` at position `p` and, if it passes, the tokens behind it.
  bool Match(int p, int t) {
    TGrepToken& token = Token(t);
    if (!Passes(token, p, t)) return false;
    token.ValidFrom = p;
    if (t >= count_) {
      match_end_ = EndOf(token, p);
      return true;
    }
    return HandOver(token, p, t + 1);
  }

  // The first position from `p` on at which token 1 can pass its test, or
  // kNoCandidate if there is none up to the end of the text. Attempts skipped this way
  // would fail at once and write nothing, so every result stays the same.
  int NextCandidate(int p) const {
    const TGrepToken& first = table_[0];
    const bool literal = first.Action == taNormal && first.NumChars > 0;
    if (!literal && first.Action != taSet) return p;
    p = std::max(p, 1);       // token 1 passes nowhere before the text
    if (first_ranges_ < 0) {  // a set of many ranges
      while (p <= len_ && !IsMember(first, p)) ++p;
      return p <= len_ ? p : kNoCandidate;
    }
    // A literal is looked for by its first and last characters (or its only
    // one), then compared whole.
    const int last_start = literal ? len_ - first.NumChars + 1 : len_;
    const char16_t* const units = text_.data();
    const bool both_ends = literal && last_ranges_ >= 0;
    for (; p <= last_start; ++p) {
      const char16_t* const end = units + last_start;
      const char16_t* const hit =
          both_ends ? FindBothEnds(units + (p - 1), end, first_units_, first_ranges_, last_units_,
                                   last_ranges_, first.NumChars - 1)
                    : FindInRanges(units + (p - 1), end, first_units_, first_ranges_);
      if (hit == end) return kNoCandidate;
      p = static_cast<int>(hit - units) + 1;
      if (!literal || CharsAt(first, p, first.NumChars)) return p;
    }
    return kNoCandidate;
  }

 private:
  TGrepToken& Token(int t) { return table_[static_cast<std::size_t>(t - 1)]; }

  // The character at position p, folded for a search that ignores case.
  // Callers make sure that 1 <= p <= len_.
  char16_t At(int p) const {
    const char16_t c = text_[static_cast<std::size_t>(p - 1)];
    return fold_ ? zyn::platform::LowCase(c) : c;
  }

  // Only codes 0 to 255 can be members; a position outside the text holds
  // no character and is no member.
  bool IsMember(const TGrepToken& token, int p) const {
    if (p < 1 || p > len_) return false;
    const char16_t c = At(p);
    return c < token.Params.size() && token.Params[c] == kMember;
  }

  // The first `n` characters of the token's string stand from p on.
  bool CharsAt(const TGrepToken& token, int p, int n) const {
    for (int k = 0; k < n; ++k) {
      if (At(p + k) != token.Params[static_cast<std::size_t>(k + 1)]) return false;
    }
    return true;
  }

  // The whole string of the token stands from p on.
  bool StringAt(const TGrepToken& token, int p) const {
    return p >= 1 && p <= len_ - token.NumChars + 1 && CharsAt(token, p, token.NumChars);
  }

  // The string stands from p on as far as the text reaches (p <= len_).
  bool PrefixAt(const TGrepToken& token, int p) const {
    return p >= 1 && p <= len_ && CharsAt(token, p, std::min(token.NumChars, len_ - p + 1));
  }

  // False only where token t's test must fail at p, so that Match(p, t)
  // would give false and write nothing: a cheap look before the call.
  bool MayPass(int t, int p) const {
    const TGrepToken& token = table_[static_cast<std::size_t>(t - 1)];
    if (token.Action == taSet) return IsMember(token, p);
    if (token.Action != taNormal || token.NumChars == 0) return true;
    return p >= 1 && p <= len_ - token.NumChars + 1 && At(p) == token.Params[1];
  }

  bool Passes(const TGrepToken& token, int p, int t) const {
    switch (token.Action) {
      case taNormal:
        return token.NumChars == 0 ? p <= len_ + 1 : StringAt(token, p);
      case taAnyByte:
      case taOpti:
        return true;
      case taEol:
        return p > len_ && t >= count_;
      case taBol:
        return p == 1;
      case taSet:
        return IsMember(token, p);
      case taMult0:
        return p <= len_;
      case taMult1:
        if (len_ == 0) return false;
        if (token.NumChars == 0) return true;
        return token.NumChars < 0 ? IsMember(token, p) : PrefixAt(token, p);
    }
    return false;
  }

  // Lazy: each multiplier first hands over with the fewest copies it may
  // take, then adds one copy at a time.
  bool HandOver(const TGrepToken& token, int p, int next) {
    const int n = token.NumChars;
    switch (token.Action) {
      case taNormal:
        return Match(p + n, next);
      case taAnyByte:
      case taSet:
        return Match(p + 1, next);
      case taBol:
        return Match(1, next);
      case taEol:
        return false;  // its test only passes as the last token
      case taMult0:
      case taMult1: {
        const bool at_least_one = token.Action == taMult1;
        if (n == 0) {
          // A literal behind `.*` can only stand where its first character
          // does: the tries in between are passed over.
          const TGrepToken& following = Token(next);
          UnitRanges heads{};
          const int head_ranges = following.Action == taNormal && following.NumChars > 0
                                      ? LiteralUnitRanges(following.Params[1], fold_, heads)
                                      : -1;
          for (int q = at_least_one ? p + 1 : p; q <= len_ + 1; ++q) {
            if (head_ranges >= 0 && q >= 1) {
              const int last_start = len_ - following.NumChars + 1;
              if (q > last_start) return false;
              const char16_t* const units = text_.data();
              const char16_t* const hit =
                  FindInRanges(units + (q - 1), units + last_start, heads, head_ranges);
              if (hit == units + last_start) return false;
              q = static_cast<int>(hit - units) + 1;
            }
            if (Match(q, next)) return true;
            q = std::max(q, kSameBelow - 1);
          }
          return false;
        }
        if (n < 0) {
          for (int q = at_least_one ? p + 1 : p;; ++q) {
            if (MayPass(next, q) && Match(q, next)) return true;
            if (!IsMember(token, q)) return false;
          }
        }
        // A first copy cut off by the end of the text takes the rest of it.
        for (int q = at_least_one ? std::min(p + n, len_ + 1) : p;; q += n) {
          if (MayPass(next, q) && Match(q, next)) return true;
          if (!StringAt(token, q)) return false;
        }
      }
      case taOpti:
        if (MayPass(next, p) && Match(p, next)) return true;
        if (n == 0) return p <= len_ && Match(p + 1, next);
        if (n < 0) return IsMember(token, p) && Match(p + 1, next);
        return StringAt(token, p) && Match(p + n, next);
    }
    return false;
  }

  // Where a match ends whose last token passed at p: greedy for a
  // multiplier, which takes all it can and compares nothing behind it.
  int EndOf(const TGrepToken& token, int p) const {
    const int n = token.NumChars;
    switch (token.Action) {
      case taNormal:
        return p + n - 1;
      case taAnyByte:
      case taSet:
        return p;
      case taEol:
        return len_;
      case taBol:
        return 1;
      case taMult0:
      case taMult1:
        if (n == 0) return len_;
        if (n < 0) return RunEnd(token, p);
        if (token.Action == taMult1 && !StringAt(token, p)) return len_;  // cut-off first copy
        return CopiesEnd(token, p);
      case taOpti:
        if (n == 0) return std::min(p, len_);
        if (n < 0) return IsMember(token, p) ? p : p - 1;
        return StringAt(token, p) ? p + n - 1 : p - 1;
    }
    return p;
  }

  // The last position of the unbroken run of members from p; p - 1 if none.
  int RunEnd(const TGrepToken& token, int p) const {
    while (IsMember(token, p)) ++p;
    return p - 1;
  }

  // p - 1 plus the length of the whole copies of the string from p on.
  int CopiesEnd(const TGrepToken& token, int p) const {
    while (StringAt(token, p)) p += token.NumChars;
    return p - 1;
  }

  TRegExp& table_;
  const int count_;
  const std::u16string_view text_;
  const int len_;
  const bool fold_;
  const UnitRanges& first_units_;
  const int first_ranges_;
  const UnitRanges& last_units_;
  const int last_ranges_;
  std::int32_t& match_end_;
};

// The labels of the printed table, by Action: eleven characters each.
constexpr std::u16string_view kTokenLabels[] = {
    u" taNormal: ", u"taAnyByte: ", u"    taEol: ", u"    taBol: ",
    u"    taSet: ", u"  taMult0: ", u"  taMult1: ", u"   taOpti: ",
};

void AppendMembers(std::u16string& line, const TCharArr256& params) {
  for (std::size_t code = 0; code < params.size(); ++code) {
    if (params[code] == kMember) line += static_cast<char16_t>(code);
  }
}

void AppendChars(std::u16string& line, const TGrepToken& token) {
  line.append(&token.Params[1], static_cast<std::size_t>(std::max(token.NumChars, 0)));
}

// One line of the printed table: the label, then what the token holds.
std::u16string TokenLine(const TGrepToken& token) {
  std::u16string line(kTokenLabels[token.Action]);
  switch (token.Action) {
    case taNormal:
      AppendChars(line, token);
      break;
    case taSet:
      AppendMembers(line, token.Params);
      break;
    case taMult0:
    case taMult1:
    case taOpti:
      if (token.NumChars < 0) {
        line += u"(set) ";
        AppendMembers(line, token.Params);
      } else if (token.NumChars == 0) {
        line += u"(anychar) ";
      } else {
        line += u"(string) ";
        AppendChars(line, token);
      }
      break;
    default:
      break;
  }
  return line;
}

}  // namespace

std::u16string_view GrepErrorText(int Error) {
  if (Error < 0 || Error >= static_cast<int>(std::size(kErrorTexts))) return {};
  return kErrorTexts[Error];
}

TGrep::TGrep(TComponent* AOwner) : TComponent(AOwner) {}

TGrep::~TGrep() = default;

void TGrep::SetRegExp(std::u16string_view Value) {
  FRegExpStr = Value;
  CompileRegExp(FRegExpStr);
  if (FStopOnError && FError >= 1) {
    throw EZYNStringlError(Zyn_zynbase::ComponentMessage(
        *this,
        std::u16string(u"error in regular expression - ") + std::u16string(GrepErrorText(FError))));
  }
}

void TGrep::SetIgnoreCase(bool Value) {
  FIgnoreCase = Value;
  CompileRegExp(FRegExpStr);
}

TGrepToken TGrep::GetRegExpToken(int index) const {
  index = std::max(std::min(index, FLengRegExp), 1);
  return FregExp[static_cast<std::size_t>(index - 1)];
}

int TGrep::CompileRegExp(std::u16string_view pattern) {
  FError = 0;
  std::u16string prepared =
      FIgnoreCase ? zyn::platform::LowerCase(pattern) : std::u16string(pattern);
  ReplaceHexEscapes(prepared);
  FLengRegExp = 0;
  for (TGrepToken& token : FregExp) {
    token.NumChars = 0;
    token.ValidFrom = 0;
  }
  FError = TokenBuilder(FregExp, FLengRegExp).Build(prepared);
  // The search skips by token 1 even when the table holds no token.
  first_unit_ranges_ = FirstUnitRanges(FregExp[0], FIgnoreCase, first_units_);
  const TGrepToken& first = FregExp[0];
  last_unit_ranges_ =
      first.Action == taNormal && first.NumChars >= 2 && first_unit_ranges_ >= 0
          ? LiteralUnitRanges(first.Params[static_cast<std::size_t>(first.NumChars)], FIgnoreCase,
                              last_units_)
          : -1;
  return FError;
}

bool TGrep::MatchString(std::u16string_view text, int& startPos) {
  TGrepToken& first = FregExp[0];
  const int len = static_cast<int>(std::min<std::size_t>(text.size(), kMaxTextLength));
  // A lone `*` token takes the whole text, wherever the search would begin.
  if (FLengRegExp == 1 && first.Action == taMult0) {
    if (FSrcStartPos > len && len != 0) return false;
    FMatchEndPos = len;
    FMatchStartPos = startPos = first.ValidFrom = 1;
    return true;
  }
  Matcher matcher(FregExp, FLengRegExp, text, FIgnoreCase, first_units_, first_unit_ranges_,
                  last_units_, last_unit_ranges_, FMatchEndPos);
  const bool anchored = first.Action == taBol;
  int p = std::clamp(FSrcStartPos, -kMaxTextLength, kMaxTextLength);
  bool found = false;
  for (;;) {
    if (!anchored && (p = matcher.NextCandidate(p)) == kNoCandidate) break;
    found = matcher.Match(p, 1);
    if (found || anchored || p >= len) break;
    p = std::max(p + 1, kSameBelow);
  }
  FMatchStartPos = startPos = first.ValidFrom;
  return found;
}

void TGrep::PrintRegExp(std::u16string_view fileName) const {
  zyn::platform::Textfile file;
  file.Assign(fileName);
  file.Rewrite();
  for (int t = 0; t < FLengRegExp; ++t) {
    file.WriteLn(TokenLine(FregExp[static_cast<std::size_t>(t)]));
  }
  file.WriteLn(GrepErrorText(FError));
  file.Close();
}

}  // namespace Zyn_stringl
