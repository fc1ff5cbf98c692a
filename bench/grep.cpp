// TGrep against std::regex (and PCRE2 with its JIT where its headers were
// found) on 1 MiB of English-like text with line breaks, counting every
// match: search, then search again behind the match. Five patterns: a
// literal whose first letter is common, `a[0-9]*b`, `[A-Z][a-z]+ing`,
// `[0-9]end` and `x.*y`. All engines count the same matches (the counter
// "matches" shows it); compare the times of one pattern across engines.

#include "zyn/stringl/grep.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <random>
#include <regex>
#include <string>
#include <string_view>

#include "zyn/platform/text.h"

#ifdef ZYN_BENCH_HAVE_PCRE2
#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>
#endif

namespace {

constexpr std::size_t kTextSize = 1 << 20;

// Words drawn at random into sentences of capitalised first words and lines
// of about 70 characters. 'n' is frequent ("and", "in", "need", "nothing"),
// "needle" itself rare.
const std::string& Text() {
  static const std::string text = [] {
    constexpr std::array<std::string_view, 32> kWords = {
        "the",   "and",     "in",      "on",   "need",    "needs",  "nothing", "needful",
        "of",    "running", "walking", "a",    "to",      "sing",   "king",    "now",
        "never", "noon",    "nine",    "done", "seeding", "needed", "an",      "is",
        "it",    "was",     "a12b",    "7end", "x",       "y",      "ending",  "winning"};
    std::mt19937 rng(2024);
    std::string t;
    std::size_t line = 0;
    bool capital = true;
    while (t.size() < kTextSize) {
      std::string word(kWords[rng() % kWords.size()]);
      if (rng() % 4000 == 0) word = "needle";
      if (capital)
        word[0] = static_cast<char>(word[0] >= 'a' && word[0] <= 'z' ? word[0] - 32 : word[0]);
      capital = rng() % 9 == 0;
      t += word;
      t += capital ? ". " : " ";
      line += word.size() + 1;
      if (line > 70) {
        t.back() = '\n';
        line = 0;
      }
    }
    t.resize(kTextSize);
    return t;
  }();
  return text;
}

const std::u16string& Text16() {
  static const std::u16string text = zyn::platform::FromUTF8(Text());
  return text;
}

// The patterns in both dialects; they find the same matches on this text.
// Inside a pattern TGrep's multipliers are lazy, and its `.` takes line
// breaks too.
struct Pattern {
  const char16_t* zyn;
  const char* ecma;
};
constexpr Pattern kPatterns[] = {
    {u"needle", "needle"},     {u"a[0-9]*b", "a[0-9]*b"}, {u"[A-Z][a-z]+ing", "[A-Z][a-z]+?ing"},
    {u"[0-9]end", "[0-9]end"}, {u"x.*y", "x[\\s\\S]*?y"},
};

void Finish(benchmark::State& state, std::int64_t matches) {
  state.counters["matches"] = static_cast<double>(matches);
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * kTextSize));
}

void BM_TGrep(benchmark::State& state) {
  Zyn_stringl::TGrep grep;
  grep.SetRegExp(kPatterns[state.range(0)].zyn);
  std::int64_t matches = 0;
  for (auto _ : state) {
    matches = 0;
    int start = 0;
    for (int from = 1;; ++matches) {
      grep.SetSearchStartPos(from);
      if (!grep.MatchString(Text16(), start)) break;
      from = std::max(grep.MatchEndPos(), start) + 1;
    }
  }
  Finish(state, matches);
}

void BM_StdRegex(benchmark::State& state) {
  const std::regex re(kPatterns[state.range(0)].ecma);
  std::int64_t matches = 0;
  for (auto _ : state) {
    matches = std::distance(std::sregex_iterator(Text().begin(), Text().end(), re),
                            std::sregex_iterator());
  }
  Finish(state, matches);
}

BENCHMARK(BM_TGrep)->DenseRange(0, 4)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_StdRegex)->DenseRange(0, 4)->Unit(benchmark::kMicrosecond);

#ifdef ZYN_BENCH_HAVE_PCRE2
void BM_Pcre2(benchmark::State& state) {
  const char* source = kPatterns[state.range(0)].ecma;
  int error = 0;
  PCRE2_SIZE offset = 0;
  pcre2_code* code = pcre2_compile(reinterpret_cast<PCRE2_SPTR>(source), PCRE2_ZERO_TERMINATED, 0,
                                   &error, &offset, nullptr);
  pcre2_jit_compile(code, PCRE2_JIT_COMPLETE);
  pcre2_match_data* data = pcre2_match_data_create_from_pattern(code, nullptr);
  const std::string& text = Text();
  std::int64_t matches = 0;
  for (auto _ : state) {
    matches = 0;
    for (PCRE2_SIZE from = 0;; ++matches) {
      if (pcre2_match(code, reinterpret_cast<PCRE2_SPTR>(text.data()), text.size(), from, 0, data,
                      nullptr) <= 0) {
        break;
      }
      const PCRE2_SIZE* ovector = pcre2_get_ovector_pointer(data);
      from = std::max(ovector[1], ovector[0] + 1);
    }
  }
  pcre2_match_data_free(data);
  pcre2_code_free(code);
  Finish(state, matches);
}
BENCHMARK(BM_Pcre2)->DenseRange(0, 4)->Unit(benchmark::kMicrosecond);
#endif

}  // namespace

BENCHMARK_MAIN();
