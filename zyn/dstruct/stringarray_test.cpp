#include "zyn/dstruct/stringarray.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <string>
#include <vector>

#include "testing/zyn_testing.h"
#include "zyn/platform/random.h"

namespace Zyn_dstruct {
namespace {

using zyn::testing::Utf8;

ShortString S(std::u16string_view s) { return ShortString(s); }
ShortString Repeat(char ch, int n) { return ShortString::FromBytes(std::string(n, ch)); }

// Counts OnChange calls of a table.
struct ChangeCounter {
  int count = 0;
  void Attach(TStringArray& a) {
    a.SetOnChange([this](zyn::platform::TObject*) { ++count; });
  }
};

// The texts of column c, rows 1 to NrOfRows(), as UTF-16.
std::vector<std::u16string> Column(const TStringArray& a, int c) {
  std::vector<std::u16string> out;
  for (int r = 1; r <= a.NrOfRows(); ++r) out.push_back(a.GetString(c, r).str());
  return out;
}

void FillColumn(TStringArray& a, int c, const std::vector<std::u16string>& texts) {
  a.SetNrRows(static_cast<int>(texts.size()));
  for (std::size_t i = 0; i < texts.size(); ++i) {
    a.SetString(c, static_cast<int>(i) + 1, S(texts[i]));
  }
}

// --- Storage ----------------------------------------------------------------

TEST(StringArrayTest, NewTableHasOneRowAndColumnZero) {
  TStringArray a;
  EXPECT_EQ(a.NrOfColumns(), 1);
  EXPECT_EQ(a.NrOfRows(), 1);
  EXPECT_EQ(a.AllocRowsBy(), 10);
  EXPECT_EQ(a.RowsAllocated(), 10);
  EXPECT_EQ(a.NumBuffers(), 1);
  EXPECT_EQ(a.FirstFree(1), 1);
  ChangeCounter changes;
  changes.Attach(a);
  a.SetString(0, 1, S(u"zero"));
  a.SetString(1, 1, S(u"abc"));
  EXPECT_EQ(a.Elem(0, 1).str(), u"zero");
  EXPECT_EQ(a.Elem(1, 1).str(), u"abc");
  EXPECT_EQ(changes.count, 2);
  // The cell word and pool of the first write into a fresh column.
  TStringArray b;
  b.SetString(1, 1, S(u"abc"));
  EXPECT_EQ(b.CellWord(1, 1), 0x00010001u);
  EXPECT_EQ(b.FirstFree(1), 5);
}

TEST(StringArrayTest, OutOfRangeCellsReadEmptyAndIgnoreWrites) {
  TStringArray a;
  ChangeCounter changes;
  changes.Attach(a);
  const struct { int c, r; } cases[] = {{2, 1}, {1, 0}, {-1, 1}, {1, 2}, {INT_MIN, INT_MAX}};
  for (const auto& k : cases) {
    SCOPED_TRACE(std::to_string(k.c) + "," + std::to_string(k.r));
    a.SetString(k.c, k.r, S(u"x"));
    EXPECT_TRUE(a.GetString(k.c, k.r).empty());
    EXPECT_EQ(a.CellWord(k.c, k.r), 0u);
    a.SetRowAttrib(k.r, 7);
    EXPECT_EQ(a.GetRowAttrib(k.r), k.r == 1 ? 7 : 0);
  }
  a.SetColAttrib(0, 3);
  a.SetColAttrib(2, 3);
  EXPECT_EQ(a.GetColAttrib(0), 0);
  EXPECT_EQ(a.GetColAttrib(2), 0);
  EXPECT_EQ(a.FirstFree(1), 1);
  EXPECT_EQ(changes.count, 2);  // the two row attributes of row 1
}

TEST(StringArrayTest, LongestTextTakes256Bytes) {
  TStringArray a;
  std::u16string text;
  for (int i = 0; i < 255; ++i) text += static_cast<char16_t>(u'A' + i % 26);
  a.SetString(1, 1, S(text));
  EXPECT_EQ(a.GetString(1, 1).str(), text);
  EXPECT_EQ(a.FirstFree(1), 257);
}

TEST(StringArrayTest, PlacementIsStrictAtTheEndOfAPool) {
  // 126 entries of 256 bytes end at 32256; a 255-byte entry then brings the
  // first free offset to 32512, one more 256-byte entry to 32768.
  TStringArray a;
  a.SetNrRows(200);
  int row = 1;
  for (; row <= 126; ++row) a.SetString(1, row, Repeat('x', 255));
  a.SetString(1, row++, Repeat('y', 254));
  ASSERT_EQ(a.FirstFree(1), 32512);
  a.SetString(1, row, Repeat('z', 255));
  EXPECT_EQ(a.CellWord(1, row), (1u << 16) + 32512u);
  EXPECT_EQ(a.FirstFree(1), 32768);
  EXPECT_EQ(a.NumBuffers(), 1);
  ++row;
  a.SetString(1, row, S(u""));  // even the empty text needs a pool further on
  EXPECT_EQ(a.CellWord(1, row), 0x00020001u);
  EXPECT_EQ(a.NumBuffers(), 2);
  EXPECT_EQ(a.FirstFree(2), 2);

  TStringArray b;
  b.SetNrRows(200);
  for (row = 1; row <= 127; ++row) b.SetString(1, row, Repeat('x', 255));
  ASSERT_EQ(b.FirstFree(1), 32513);
  b.SetString(1, row, Repeat('z', 255));
  EXPECT_EQ(b.CellWord(1, row), 0x00020001u);
  EXPECT_EQ(b.FirstFree(2), 257);
  b.SetString(1, row + 1, Repeat('s', 254));  // a shorter text still fits pool 1
  EXPECT_EQ(b.CellWord(1, row + 1), (1u << 16) + 32513u);
  EXPECT_EQ(b.GetString(1, row).bytes(), std::string(255, 'z'));
}

TEST(StringArrayTest, OverwriteInPlaceOnlyUpToTheStoredLength) {
  TStringArray a;
  a.SetString(1, 1, S(u"sixsix"));
  const std::uint32_t first = a.CellWord(1, 1);
  a.SetString(1, 1, S(u"tw"));
  EXPECT_EQ(a.CellWord(1, 1), first);
  EXPECT_EQ(a.FirstFree(1), 8);
  a.SetString(1, 1, S(u"thr"));
  EXPECT_EQ(a.CellWord(1, 1), 0x00010008u);
  EXPECT_EQ(a.FirstFree(1), 12);
  EXPECT_EQ(a.GetString(1, 1).str(), u"thr");
  a.SetString(1, 1, S(u""));
  EXPECT_EQ(a.CellWord(1, 1), 0x00010008u);
  EXPECT_TRUE(a.GetString(1, 1).empty());
}

TEST(StringArrayTest, GarbageCollectionPacksEachPoolInColumnOrder) {
  TStringArray a;
  a.SetNrCols(2);
  a.SetNrRows(300);
  for (int r = 1; r <= 300; ++r) {
    for (int c = 0; c <= 2; ++c) a.SetString(c, r, Repeat(static_cast<char>('a' + c), 100));
  }
  // Rewrite with longer texts: every old entry becomes dead.
  for (int r = 1; r <= 300; ++r) {
    for (int c = 0; c <= 2; ++c) {
      a.SetString(c, r, ShortString::FromBytes(std::to_string(r * 10 + c) + std::string(120, '.')));
    }
  }
  a.SetString(1, 5, S(u""));
  const int pools = a.NumBuffers();
  ASSERT_GE(pools, 5);
  std::vector<std::vector<std::string>> before(3);
  for (int c = 0; c <= 2; ++c) {
    for (int r = 1; r <= 300; ++r) before[c].emplace_back(a.GetString(c, r).bytes());
  }
  ChangeCounter changes;
  changes.Attach(a);
  a.GarbageCollection();
  EXPECT_EQ(changes.count, 0);
  EXPECT_EQ(a.NumBuffers(), pools);
  std::vector<int> live(pools + 1, 1);
  for (int c = 0; c <= 2; ++c) {
    for (int r = 1; r <= 300; ++r) {
      SCOPED_TRACE(std::to_string(c) + "," + std::to_string(r));
      ASSERT_EQ(a.GetString(c, r).bytes(), before[c][r - 1]);
      const std::uint32_t word = a.CellWord(c, r);
      // Column-major order within a pool: each entry starts where the
      // previous live one of its pool ended.
      EXPECT_EQ(static_cast<int>(word & 0xFFFF), live[word >> 16]);
      live[word >> 16] += static_cast<int>(before[c][r - 1].size()) + 1;
    }
  }
  for (int p = 1; p <= pools; ++p) EXPECT_EQ(a.FirstFree(p), live[p]) << "pool " << p;
  EXPECT_EQ(a.FirstFree(1), 1);  // pool 1 held only the dead first texts
}

TEST(StringArrayTest, ClearDropsAllPoolsButTheFirst) {
  TStringArray a;
  a.SetNrRows(300);
  a.Fill(Repeat('q', 200));
  a.SetRowAttrib(3, 9);
  a.SetColAttrib(1, 4);
  ASSERT_GT(a.NumBuffers(), 1);
  ChangeCounter changes;
  changes.Attach(a);
  a.Clear();
  EXPECT_EQ(changes.count, 0);
  EXPECT_EQ(a.NumBuffers(), 1);
  EXPECT_EQ(a.NrOfRows(), 300);
  EXPECT_TRUE(a.GetString(0, 300).empty());
  EXPECT_EQ(a.GetRowAttrib(3), 0);
  EXPECT_EQ(a.GetColAttrib(1), 0);
  a.SetString(1, 300, S(u"new"));
  EXPECT_EQ(a.CellWord(1, 300), 0x00010001u);
}

TEST(StringArrayTest, FillWritesEveryCellColumnZeroIncluded) {
  TStringArray a;
  a.SetNrCols(2);
  a.SetNrRows(3);
  ChangeCounter changes;
  changes.Attach(a);
  a.Fill(S(u"f"));
  EXPECT_EQ(changes.count, 9);
  for (int c = 0; c <= 2; ++c) EXPECT_EQ(Column(a, c), (std::vector<std::u16string>(3, u"f")));
  a.Fill(S(u""));
  EXPECT_EQ(a.CellWord(0, 1), 0u);
}

TEST(StringArrayTest, AsNumberAndAsInteger) {
  struct Case {
    std::u16string_view text;
    double number;
    int integer;
  };
  const Case cases[] = {
      {u" 3,5 ", 3.5, 4},
      {u"", 0.0, 0},
      {u"   ", 0.0, 0},
      {u"2.5", 2.5, 2},
      {u"-2.5", -2.5, -2},
      {u"1e12", 1e12, 2147483647},
      {u"-1e12", -1e12, -2147483647},
      {u"+7", 7.0, 7},
      {u".5", 0.5, 0},
      {u"1.", 1.0, 1},
      {u"2E-3", 0.002, 0},
      {u"1e-400", 0.0, 0},
      {u"-2147483648", -2147483648.0, -2147483647},
  };
  TStringArray a;
  for (const Case& k : cases) {
    SCOPED_TRACE(Utf8(k.text));
    a.SetString(1, 1, S(k.text));
    EXPECT_DOUBLE_EQ(a.AsNumber(1, 1), k.number);
    EXPECT_EQ(a.AsInteger(1, 1), k.integer);
  }
  EXPECT_EQ(a.AsNumber(5, 5), 0.0);
}

TEST(StringArrayTest, AsNumberRejectsTextWithTheCellInTheMessage) {
  TStringArray a;
  a.SetNrCols(3);
  a.SetNrRows(12);
  for (std::u16string_view bad : {u"3x", u"1 2", u"e5", u"-", u"1e", u"0x10", u"inf", u"1,5,"}) {
    SCOPED_TRACE(Utf8(bad));
    a.SetString(3, 12, S(bad));
    try {
      (void)a.AsInteger(3, 12);
      ADD_FAILURE() << "no exception";
    } catch (const EZYNDStructError& e) {
      EXPECT_EQ(e.Message(),
                u"Class TStringArray: invalid numeric string: [3,12]: " + std::u16string(bad));
    }
  }
  a.SetString(0, 1, S(u" 3x "));
  try {
    (void)a.AsNumber(0, 1);
    ADD_FAILURE() << "no exception";
  } catch (const EZYNDStructError& e) {
    EXPECT_EQ(e.Message(), u"Class TStringArray: invalid numeric string: [0,1]:  3x ");
  }
}

TEST(StringArrayTest, ResizeKeepsOrReallocatesRows) {
  TStringArray a;
  ChangeCounter changes;
  changes.Attach(a);
  EXPECT_TRUE(a.Resize(1, 1));
  EXPECT_FALSE(a.Resize(0, 5));
  EXPECT_FALSE(a.Resize(2, -1));
  EXPECT_EQ(changes.count, 0);

  ASSERT_TRUE(a.Resize(1, 10));
  for (int r = 1; r <= 10; ++r) a.SetString(1, r, S(u"old"));
  a.SetRowAttrib(8, 5);
  changes.count = 0;
  EXPECT_TRUE(a.Resize(1, 11));
  EXPECT_EQ(a.RowsAllocated(), 20);
  EXPECT_TRUE(a.Resize(1, 5));
  EXPECT_TRUE(a.Resize(1, 15));
  EXPECT_EQ(a.RowsAllocated(), 20);
  EXPECT_EQ(changes.count, 3);
  for (int r = 1; r <= 15; ++r) {
    EXPECT_EQ(a.GetString(1, r).str(), r <= 5 ? u"old" : u"") << r;
    EXPECT_EQ(a.GetRowAttrib(r), 0) << r;
  }
  a.SetAllocRowsBy(7);
  EXPECT_TRUE(a.Resize(3, 15));  // new columns reallocate with the new step
  EXPECT_EQ(a.RowsAllocated(), 21);
  EXPECT_EQ(a.GetString(1, 5).str(), u"old");
  EXPECT_TRUE(a.Resize(1, 2));
  EXPECT_EQ(a.RowsAllocated(), 7);
  a.SetAllocRowsBy(0);
  EXPECT_TRUE(a.Resize(2, 3));
  EXPECT_EQ(a.RowsAllocated(), 3);
}

TEST(StringArrayTest, ResizeThatCantBeHadLeavesTheTableAlone) {
  TStringArray a;
  a.SetNrCols(2);
  a.SetNrRows(4);
  a.SetString(2, 4, S(u"kept"));
  ChangeCounter changes;
  changes.Attach(a);
  EXPECT_FALSE(a.Resize(2, INT_MAX));
  EXPECT_EQ(changes.count, 1);
  EXPECT_EQ(a.NrOfColumns(), 2);
  EXPECT_EQ(a.NrOfRows(), 4);
  EXPECT_EQ(a.RowsAllocated(), 10);
  EXPECT_EQ(a.GetString(2, 4).str(), u"kept");
  a.SetString(2, 4, S(u"still usable"));
  EXPECT_EQ(a.GetString(2, 4).str(), u"still usable");
}

TEST(StringArrayTest, AssignMakesAnIndependentTwin) {
  TStringArray a;
  a.SetNrCols(2);
  FillColumn(a, 1, {u"b", u"a", u"c"});
  a.SetString(0, 2, S(u"zero"));
  a.SetRowAttrib(1, 6);
  a.SetColAttrib(2, 8);
  int fired = 0;
  a.SetOnChange([&](zyn::platform::TObject*) { ++fired; });
  a.Sort(1, 0, true);
  fired = 0;

  TStringArray b;
  b.Assign(a);
  EXPECT_EQ(fired, 0);
  EXPECT_EQ(Column(b, 1), (std::vector<std::u16string>{u"a", u"b", u"c"}));
  EXPECT_EQ(b.GetSortOrder(1), 2);
  EXPECT_EQ(b.GetString(0, 1).str(), u"zero");
  EXPECT_EQ(b.GetRowAttrib(2), 6);
  EXPECT_EQ(b.GetColAttrib(2), 8);
  EXPECT_EQ(b.FirstFree(1), a.FirstFree(1));
  b.SetString(1, 1, S(u"changed"));
  EXPECT_EQ(fired, 1);  // the handler came along
  EXPECT_EQ(a.GetString(1, 1).str(), u"a");

  zyn::platform::TComponent other;
  EXPECT_THROW(b.Assign(other), zyn::platform::EConvertError);
  EXPECT_EQ(b.GetString(1, 1).str(), u"changed");
}

// --- Sorting ----------------------------------------------------------------

TEST(StringArrayTest, SortIgnoresAsciiCaseInBothDirections) {
  TStringArray a;
  FillColumn(a, 1, {u"b", u"A", u"c"});
  a.Sort(1, 0, true);
  EXPECT_EQ(Column(a, 1), (std::vector<std::u16string>{u"A", u"b", u"c"}));
  a.Sort(1, 0, false);
  EXPECT_EQ(Column(a, 1), (std::vector<std::u16string>{u"c", u"b", u"A"}));
  // Code units after folding: "ab" < "abc" < "b"; 'Ä' (U+00C4) after 'z'
  // and '€' (byte 0x80, U+20AC) after 'Ä' although its byte is lower.
  FillColumn(a, 1, {u"€", u"b", u"Ä", u"ABC", u"z", u"ab"});
  a.Sort(1, 0, true);
  EXPECT_EQ(Column(a, 1), (std::vector<std::u16string>{u"ab", u"ABC", u"b", u"z", u"Ä", u"€"}));
}

TEST(StringArrayTest, SortWithAndWithoutHandlerAgree) {
  // The sort reads the pools directly when no handler is set; a handler that
  // keeps the text must give the very same order, ties included.
  for (bool ascending : {true, false}) {
    SCOPED_TRACE(ascending ? "ascending" : "descending");
    TStringArray plain;
    plain.SetNrCols(2);
    plain.SetNrRows(500);
    zyn::platform::RandSeed = 77;
    for (int r = 1; r <= 500; ++r) {
      std::string key(1 + zyn::platform::Random(3), ' ');
      for (auto& ch : key) ch = "aAbB\x80\xC4\xE4z"[zyn::platform::Random(8)];
      plain.SetString(1, r, ShortString::FromBytes(key));
      plain.SetString(2, r, ShortString::FromBytes(std::to_string(zyn::platform::Random(5))));
    }
    plain.SetString(1, 7, S(u""));
    TStringArray handled;
    handled.Assign(plain);
    handled.SetOnBeforeSortExchange(
        [](zyn::platform::TObject*, const std::u16string&, std::u16string&) {});
    plain.Sort(1, 2, ascending);
    handled.Sort(1, 2, ascending);
    for (int r = 1; r <= 500; ++r) ASSERT_EQ(plain.GetSortOrder(r), handled.GetSortOrder(r)) << r;
  }
}

TEST(StringArrayTest, SortOfOneRowOnlyReportsProgress) {
  TStringArray a;
  a.SetString(1, 1, S(u"x"));
  ChangeCounter changes;
  changes.Attach(a);
  std::vector<int> percent;
  a.SetOnPercentDone([&](zyn::platform::TObject*, int p) { percent.push_back(p); });
  a.Sort(1, 0, true);
  EXPECT_EQ(percent, (std::vector<int>{0, 100}));
  EXPECT_EQ(changes.count, 0);
  EXPECT_EQ(a.GetSortOrder(1), 1);
}

TEST(StringArrayTest, SortReportsComparisonsAgainstItsEstimate) {
  // Ten sorted rows: gaps 7, 5, 3, 2, 1 compare 3, 5, 7, 8, 9 pairs; the
  // estimate is those 32 plus 10.
  TStringArray a;
  FillColumn(a, 1, {u"0", u"1", u"2", u"3", u"4", u"5", u"6", u"7", u"8", u"9"});
  std::vector<int> percent;
  a.SetOnPercentDone([&](zyn::platform::TObject*, int p) { percent.push_back(p); });
  a.Sort(1, 0, true);
  EXPECT_EQ(percent, (std::vector<int>{0, 7, 19, 36, 55, 76, 100}));
  // Reversed, gap 1 needs more than one pass and the value passes 100.
  percent.clear();
  a.Sort(1, 0, false);
  ASSERT_GE(percent.size(), 3u);
  EXPECT_EQ(Column(a, 1).front(), u"9");
}

TEST(StringArrayTest, SortGapsFor1000Rows) {
  TStringArray a;
  a.SetNrRows(1000);
  for (int r = 1; r <= 1000; ++r)
    a.SetString(1, r, ShortString::FromBytes(std::to_string(r + 1000)));
  int reads = 0;
  std::vector<int> gaps;
  int last = 0;
  a.SetOnBeforeSortExchange(
      [&](zyn::platform::TObject*, const std::u16string&, std::u16string&) { ++reads; });
  a.SetOnPercentDone([&](zyn::platform::TObject*, int) {
    if (reads == 0 && last == 0 && gaps.empty()) return;  // the call with 0
    if (reads == last) return;                            // the call with 100
    gaps.push_back(1000 - (reads - last) / 2);
    last = reads;
  });
  a.Sort(1, 0, true);
  EXPECT_EQ(gaps, (std::vector<int>{769, 591, 454, 349, 268, 206, 158, 121, 93, 71, 54,
                                    41,  31,  23,  17,  13,  10,  7,   5,   3,  2,  1}));
}

TEST(StringArrayTest, SortByOutOfRangeColumnMovesNothingButFiresOnce) {
  TStringArray a;
  FillColumn(a, 1, {u"c", u"b", u"a"});
  ChangeCounter changes;
  changes.Attach(a);
  a.Sort(5, 0, true);
  EXPECT_EQ(changes.count, 1);
  EXPECT_EQ(Column(a, 1), (std::vector<std::u16string>{u"c", u"b", u"a"}));
}

TEST(StringArrayTest, SecondaryColumnBreaksTies) {
  TStringArray a;
  a.SetNrCols(2);
  FillColumn(a, 1, {u"x", u"y", u"X", u"x"});
  a.SetString(2, 1, S(u"3"));
  a.SetString(2, 2, S(u"0"));
  a.SetString(2, 3, S(u"1"));
  a.SetString(2, 4, S(u"2"));
  int reads = 0;
  a.SetOnBeforeSortExchange(
      [&](zyn::platform::TObject*, const std::u16string&, std::u16string&) { ++reads; });
  a.Sort(1, 2, true);
  EXPECT_EQ(Column(a, 2), (std::vector<std::u16string>{u"1", u"2", u"3", u"0"}));
  EXPECT_EQ(reads % 2, 0);
  // Column 0 can't be the secondary key.
  a.UnSort();
  FillColumn(a, 0, {u"b", u"a", u"d", u"c"});
  FillColumn(a, 1, {u"k", u"k", u"k", u"k"});
  a.Sort(1, 0, true);
  EXPECT_EQ(Column(a, 0), (std::vector<std::u16string>{u"b", u"a", u"d", u"c"}));
}

TEST(StringArrayTest, SortOrderUnSortAndCommitSorting) {
  TStringArray a;
  FillColumn(a, 1, {u"c", u"a", u"b"});
  a.SetRowAttrib(2, 42);  // the row of "a"
  a.Sort(1, 0, true);
  EXPECT_EQ(a.GetSortOrder(1), 2);
  EXPECT_EQ(a.GetSortOrder(0), -1);
  EXPECT_EQ(a.GetSortOrder(4), -1);
  EXPECT_EQ(a.GetRowAttrib(1), 42);
  a.UnSort();
  EXPECT_EQ(Column(a, 1), (std::vector<std::u16string>{u"c", u"a", u"b"}));
  a.Sort(1, 0, true);
  ChangeCounter changes;
  changes.Attach(a);
  a.CommitSorting();
  EXPECT_EQ(changes.count, 0);
  EXPECT_EQ(Column(a, 1), (std::vector<std::u16string>{u"a", u"b", u"c"}));
  for (int i = 1; i <= 3; ++i) EXPECT_EQ(a.GetSortOrder(i), i);
  EXPECT_EQ(a.GetRowAttrib(1), 42);
  a.UnSort();
  EXPECT_EQ(Column(a, 1), (std::vector<std::u16string>{u"a", u"b", u"c"}));
  a.SetSortOrder(1, 3);
  a.SetSortOrder(2, 4);  // out of range: ignored
  EXPECT_EQ(Column(a, 1), (std::vector<std::u16string>{u"c", u"b", u"c"}));
}

TEST(StringArrayTest, HandlerChangesTheKeyButNoCell) {
  TStringArray a;
  FillColumn(a, 1, {u"1-b", u"2-c", u"3-a"});
  a.SetOnBeforeSortExchange([](zyn::platform::TObject*, const std::u16string& in,
                               std::u16string& out) { out = in.substr(2); });
  a.Sort(1, 0, true);
  EXPECT_EQ(Column(a, 1), (std::vector<std::u16string>{u"3-a", u"1-b", u"2-c"}));
  // A handler that never answers the same stops after a bounded number of passes.
  int flip = 0;
  a.SetOnBeforeSortExchange([&](zyn::platform::TObject*, const std::u16string&,
                                std::u16string& out) { out = (flip++ % 3) ? u"a" : u"b"; });
  a.Sort(1, 0, true);
  EXPECT_EQ(a.NrOfRows(), 3);
}

// --- Searching --------------------------------------------------------------

TEST(StringArrayTest, FindCellWalksRowsThenColumns) {
  TStringArray a;
  a.SetNrCols(3);
  a.SetNrRows(4);
  a.SetString(0, 1, S(u"zero"));
  a.SetString(3, 2, S(u"Hello World"));
  a.SetString(1, 3, S(u"world"));
  a.SetString(2, 4, S(u"WORLD"));
  struct Case {
    std::u16string_view what;
    bool match_case, exact;
    int col_low, col_high, row_low, row_high;
    bool found;
    int col, row;
  };
  const Case cases[] = {
      {u"world", false, false, -1, 2, -1, -1, true, 3, 2},  // -1 in ColLow alone: all
      {u"world", true, false, 1, 3, 1, 4, true, 1, 3},
      {u"world", false, false, 2, 1, 4, 3, true, 1, 3},   // swapped bounds
      {u"world", false, false, 2, 3, -1, 3, true, 3, 2},  // RowLow -1 clamps to 1
      {u"world", false, false, 0, 0, -1, -1, false, 9, 9},
      {u"ZERO", false, false, 1, -1, 1, 1, true, 0, 1},
      {u"", false, false, -1, -1, -1, -1, false, 9, 9},
      {u"", false, true, -1, -1, -1, -1, true, 1, 1},  // first empty cell
      {u"", false, true, 1, 3, 2, 2, true, 1, 2},
      {u"", false, true, 3, 99, 1, 4, true, 3, 1},
      {u"world", false, true, -1, -1, -1, -1, true, 1, 3},
      {u"WORLD", true, true, 0, 3, 1, 4, true, 2, 4},
      {u"Hello", false, true, -1, -1, -1, -1, false, 9, 9},
  };
  for (const Case& k : cases) {
    SCOPED_TRACE(Utf8(k.what) + (k.exact ? " exact " : " ") + std::to_string(k.col_low) + "," +
                 std::to_string(k.col_high) + "," + std::to_string(k.row_low) + "," +
                 std::to_string(k.row_high));
    int col = 9, row = 9;
    const bool found = k.exact ? a.FindCellExact(k.what, k.match_case, k.col_low, k.col_high,
                                                 k.row_low, k.row_high, col, row)
                               : a.FindCell(k.what, k.match_case, k.col_low, k.col_high, k.row_low,
                                            k.row_high, col, row);
    EXPECT_EQ(found, k.found);
    EXPECT_EQ(col, k.col);
    EXPECT_EQ(row, k.row);
  }
}

TEST(StringArrayTest, FindCellInSortedColumnGivesTheFirstOfARun) {
  TStringArray a;
  FillColumn(a, 1, {u"a", u"b", u"x", u"x", u"x", u"y", u"Z"});
  struct Case {
    std::u16string_view what;
    bool match_case;
    int row_low, row_high;
    bool found;
    int row;
  };
  const Case cases[] = {
      {u"x", false, -1, -1, true, 3}, {u"x", false, 4, 7, true, 3},  // the walk leaves the range
      {u"z", false, -1, -1, true, 7}, {u"Z", true, 1, 7, false, 1},  // sorted without case
      {u"z", true, 1, 7, false, 7},   {u"a", false, 7, 1, true, 1},  {u"b", false, 2, 2, true, 2},
      {u"c", false, 1, 7, false, 3},  {u"0", false, 1, 7, false, 1},
  };
  for (const Case& k : cases) {
    SCOPED_TRACE(Utf8(k.what) + " " + std::to_string(k.row_low) + "," + std::to_string(k.row_high));
    int row = -5;
    EXPECT_EQ(a.FindCellInSortedColumn(k.what, k.match_case, 1, k.row_low, k.row_high, true, row),
              k.found);
    EXPECT_EQ(row, k.row);
  }
  a.Sort(1, 0, false);
  int row = 0;
  EXPECT_TRUE(a.FindCellInSortedColumn(u"x", false, 1, -1, -1, false, row));
  EXPECT_EQ(row, 3);
  EXPECT_TRUE(a.FindCellInSortedColumn(u"a", false, 9, -1, -1, false, row));  // column clamps
  EXPECT_EQ(row, 7);
}

// --- Rows -------------------------------------------------------------------

TEST(StringArrayTest, EmptyRowsAndColumnsLookAtBlanksOnly) {
  TStringArray a;
  a.SetNrCols(2);
  a.SetNrRows(3);
  a.SetString(0, 1, S(u"only column 0"));
  a.SetString(1, 1, S(u"   "));
  a.SetString(2, 2, S(u"\t"));
  EXPECT_TRUE(a.RowEmpty(1));
  EXPECT_FALSE(a.RowEmpty(2));
  EXPECT_TRUE(a.RowEmpty(3));
  EXPECT_TRUE(a.RowEmpty(99));
  EXPECT_TRUE(a.ColumnEmpty(1));
  EXPECT_FALSE(a.ColumnEmpty(0));
  EXPECT_FALSE(a.ColumnEmpty(2));
  EXPECT_TRUE(a.ColumnEmpty(-3));
}

TEST(StringArrayTest, AddInsertRemoveAndCopyRows) {
  TStringArray a;
  FillColumn(a, 1, {u"r1", u"r2", u"r3", u"r4", u"r5", u"r6", u"r7", u"r8", u"r9", u"r10"});
  a.SetRowAttrib(10, 3);
  EXPECT_EQ(a.AddRow(), 11);
  EXPECT_EQ(a.RowsAllocated(), 20);
  EXPECT_TRUE(a.GetString(1, 11).empty());
  a.InsertRow(11);  // in front of the last row
  EXPECT_EQ(a.NrOfRows(), 12);
  a.SetString(1, 11, S(u"new"));
  a.RemoveRow(12);
  a.RemoveRow(1);
  a.RemoveRow(0);
  EXPECT_EQ(Column(a, 1), (std::vector<std::u16string>{u"r2", u"r3", u"r4", u"r5", u"r6", u"r7",
                                                       u"r8", u"r9", u"r10", u"new"}));
  EXPECT_EQ(a.GetRowAttrib(9), 3);
  EXPECT_EQ(a.GetRowAttrib(10), 0);
  a.CopyRow(9, 1);
  a.CopyRow(1, 11);
  EXPECT_EQ(a.GetString(1, 1).str(), u"r10");
  EXPECT_EQ(a.GetRowAttrib(1), 3);

  TStringArray one;
  one.SetString(0, 1, S(u"a"));
  one.SetRowAttrib(1, 1);
  one.RemoveRow(1);
  EXPECT_EQ(one.NrOfRows(), 1);
  EXPECT_TRUE(one.GetString(0, 1).empty());
  EXPECT_EQ(one.GetRowAttrib(1), 0);
}

TEST(StringArrayTest, RowChangesUnderAPendingSort) {
  TStringArray a;
  FillColumn(a, 1, {u"c", u"a", u"b"});  // physical c, a, b
  a.Sort(1, 0, true);                    // shows a, b, c
  a.InsertRow(2);                        // in front of "b", physical row 3
  EXPECT_EQ(Column(a, 1), (std::vector<std::u16string>{u"c", u"", u"a", u"b"}));
  a.Sort(1, 0, false);  // shows c, b, a, ""
  a.InsertRow(4);       // in front of the empty row, physical row 2
  EXPECT_EQ(Column(a, 1), (std::vector<std::u16string>{u"c", u"a", u"", u"", u"b"}));
  a.Sort(1, 0, true);  // "", "", a, b, c
  a.RemoveRow(5);      // "c", physical row 1
  EXPECT_EQ(Column(a, 1), (std::vector<std::u16string>{u"a", u"", u"", u"b"}));
  for (int i = 1; i <= 4; ++i) EXPECT_EQ(a.GetSortOrder(i), i);
}

}  // namespace
}  // namespace Zyn_dstruct
