// TGrep against std::regex (and PCRE2 where its headers were found) on a
// 1 MiB text whose only hits sit near its end: a literal, `a[0-9]*b`, an
// anchored `^abc`, a set followed by letters, and `x.*y`. All engines find
// the same match (the counter "start" shows where); compare the times of
// one pattern across engines.

#include "zyn/stringl/grep.h"

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
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

// Filler without an 'x', a "needle", an 'a' before digits and a 'b', or a
// digit before "end"; the hits follow in the last bytes.
const std::string& Text() {
  static const std::string text = [] {
    const std::string_view filler = "the quick brown dog jumps over the lazy cat a12c 7 ";
    const std::string_view tail = " needle a123b 9end xqqy ";
    std::string t;
    while (t.size() + tail.size() < kTextSize) t += filler;
    t.resize(kTextSize - tail.size() - 16);
    t += tail;
    t.resize(kTextSize, '.');
    return t;
  }();
  return text;
}

const std::u16string& Text16() {
  static const std::u16string text = zyn::platform::FromUTF8(Text());
  return text;
}

// The patterns in both dialects; they mean the same on this text.
struct Pattern {
  const char16_t* zyn;
  const char* ecma;
};
constexpr Pattern kPatterns[] = {
    {u"needle", "needle"},     {u"a[0-9]*b", "a[0-9]*b"}, {u"^abc", "^abc"},
    {u"[0-9]end", "[0-9]end"}, {u"x.*y", "x.*?y"},
};

void BM_TGrep(benchmark::State& state) {
  const Pattern& pattern = kPatterns[state.range(0)];
  Zyn_stringl::TGrep grep;
  grep.SetRegExp(pattern.zyn);
  int start = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(grep.MatchString(Text16(), start));
  }
  state.counters["start"] = start;
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * kTextSize));
}

void BM_StdRegex(benchmark::State& state) {
  const std::regex re(kPatterns[state.range(0)].ecma);
  std::smatch m;
  for (auto _ : state) {
    benchmark::DoNotOptimize(std::regex_search(Text(), m, re));
  }
  state.counters["start"] = m.empty() ? 0.0 : static_cast<double>(m.position(0) + 1);
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * kTextSize));
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
  int found = 0;
  for (auto _ : state) {
    found = pcre2_match(code, reinterpret_cast<PCRE2_SPTR>(text.data()), text.size(), 0, 0, data,
                        nullptr);
    benchmark::DoNotOptimize(found);
  }
  state.counters["start"] =
      found > 0 ? static_cast<double>(pcre2_get_ovector_pointer(data)[0] + 1) : 0.0;
  pcre2_match_data_free(data);
  pcre2_code_free(code);
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * kTextSize));
}
BENCHMARK(BM_Pcre2)->DenseRange(0, 4)->Unit(benchmark::kMicrosecond);
#endif

}  // namespace

BENCHMARK_MAIN();
