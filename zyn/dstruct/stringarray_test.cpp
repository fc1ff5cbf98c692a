#include "zyn/dstruct/stringarray.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <string>
#include <tuple>
#include <vector>

#include "testing/zyn_testing.h"
#include "zyn/platform/random.h"

namespace Zyn_dstruct {
namespace {

using zyn::platform::FromUTF8;
using zyn::platform::TObject;
using zyn::testing::ReadFileBytes;
using zyn::testing::TempDir;
using zyn::testing::Utf8;
using zyn::testing::WriteFileBytes;
using Texts = std::vector<std::u16string>;

ShortString S(std::u16string_view s) { return ShortString(s); }
ShortString Repeat(char ch, int n) { return ShortString::FromBytes(std::string(n, ch)); }
std::u16string Name(const std::filesystem::path& p) { return FromUTF8(p.string()); }

// Counts the OnChange calls of a table from its construction on.
struct ChangeCounter {
  explicit ChangeCounter(TStringArray& a) {
    a.SetOnChange([this](TObject*) { ++count; });
  }
  int count = 0;
};

// The texts of column c, rows 1 to NrOfRows(), as UTF-16.
Texts Column(const TStringArray& a, int c) {
  Texts out;
  for (int r = 1; r <= a.NrOfRows(); ++r) out.push_back(a.GetString(c, r).str());
  return out;
}

void FillColumn(TStringArray& a, int c, const Texts& texts) {
  a.SetNrRows(static_cast<int>(texts.size()));
  for (int r = 1; r <= a.NrOfRows(); ++r) a.SetString(c, r, S(texts[r - 1]));
}

// --- Storage ----------------------------------------------------------------

TEST(StringArrayTest, CellWordsFollowThePlacementRule) {
  TStringArray a;
  a.SetString(1, 1, S(u"abc"));
  EXPECT_EQ(a.CellWord(1, 1), 0x00010001u);
  EXPECT_EQ(a.FirstFree(1), 5);
  a.SetString(0, 1, Repeat('L', 255));  // 256 bytes
  EXPECT_EQ(a.GetString(0, 1).bytes(), std::string(255, 'L'));
  EXPECT_EQ(a.FirstFree(1), 261);
  // 6, then 2 characters in place; 3 no longer fit the entry, now of length 2.
  a.SetString(1, 1, S(u"sixsix"));
  EXPECT_EQ(a.CellWord(1, 1), 0x00010105u);
  a.SetString(1, 1, S(u"tw"));
  EXPECT_EQ(a.CellWord(1, 1), 0x00010105u);
  a.SetString(1, 1, S(u"thr"));
  EXPECT_EQ(a.CellWord(1, 1), 0x0001010Cu);
  EXPECT_EQ(a.FirstFree(1), 272);
}

TEST(StringArrayTest, PlacementIsStrictAtTheEndOfAPool) {
  // 127 entries of 256 bytes bring the first free offset to 32513; with a
  // 255-byte entry in place of the last one it is 32512. From there a 256-byte
  // entry ends at 32767, and not even the empty text fits behind it.
  const std::tuple<int, int, std::uint32_t, std::uint32_t, int> cases[] = {
      {254, 32512, 0x00017F00u, 0x00020001u, 2}, {255, 32513, 0x00020001u, 0x00017F01u, 257}};
  for (const auto& [last, first_free, word128, word129, free2] : cases) {
    SCOPED_TRACE(first_free);
    TStringArray a;
    a.SetNrRows(200);
    for (int r = 1; r <= 127; ++r) a.SetString(1, r, Repeat('x', r == 127 ? last : 255));
    ASSERT_EQ(a.FirstFree(1), first_free);
    a.SetString(1, 128, Repeat('z', 255));
    a.SetString(1, 129, S(u""));
    EXPECT_EQ(a.CellWord(1, 128), word128);
    EXPECT_EQ(a.CellWord(1, 129), word129);
    EXPECT_EQ(a.FirstFree(2), free2);
    EXPECT_EQ(a.GetString(1, 128).bytes(), std::string(255, 'z'));
    EXPECT_EQ(a.NumBuffers(), 2);
  }
}

TEST(StringArrayTest, OutOfRangeCellsReadEmptyAndIgnoreWrites) {
  TStringArray a;
  ChangeCounter changes(a);
  const struct { int c, r; } cases[] = {{2, 1}, {1, 0}, {-1, 1}, {1, 2}, {INT_MIN, INT_MAX}};
  for (const auto& k : cases) {
    SCOPED_TRACE(std::to_string(k.c) + "," + std::to_string(k.r));
    a.SetString(k.c, k.r, S(u"x"));
    EXPECT_TRUE(a.GetString(k.c, k.r).empty());
    a.SetRowAttrib(k.r, 7);
    EXPECT_EQ(a.GetRowAttrib(k.r), k.r == 1 ? 7 : 0);
    a.SetColAttrib(k.c, 3);
    EXPECT_EQ(a.GetColAttrib(k.c), k.c == 1 ? 3 : 0);
  }
  EXPECT_EQ(a.FirstFree(1), 1);
  EXPECT_EQ(changes.count, 4);  // the attributes of row 1 and column 1, twice each
}

TEST(StringArrayTest, GarbageCollectionPacksEachPoolInColumnOrder) {
  const auto text = [](int c, int r) { return std::to_string(r * 10 + c) + std::string(120, '.'); };
  TStringArray a;
  a.Resize(2, 300);
  a.Fill(Repeat('a', 100));
  // Longer texts take new entries: pools 1 and 2 end up holding only dead bytes.
  for (int r = 1; r <= 300; ++r)
    for (int c = 0; c <= 2; ++c) a.SetString(c, r, ShortString::FromBytes(text(c, r)));
  const int pools = a.NumBuffers();
  ChangeCounter changes(a);
  a.GarbageCollection();
  EXPECT_EQ(changes.count, 0);
  EXPECT_EQ(a.NumBuffers(), pools);
  std::vector<int> next(pools + 1, 1);  // where the next live entry of each pool must start
  for (int c = 0; c <= 2; ++c) {
    for (int r = 1; r <= 300; ++r) {
      ASSERT_EQ(a.GetString(c, r).bytes(), text(c, r)) << c << "," << r;
      const std::uint32_t word = a.CellWord(c, r);
      ASSERT_EQ(static_cast<int>(word & 0xFFFF), next[word >> 16]) << c << "," << r;
      next[word >> 16] += static_cast<int>(text(c, r).size()) + 1;
    }
  }
  for (int p = 1; p <= pools; ++p) EXPECT_EQ(a.FirstFree(p), next[p]) << "pool " << p;
  EXPECT_EQ(a.FirstFree(1), 1);
}

TEST(StringArrayTest, ClearAndFill) {
  TStringArray a;
  a.Resize(2, 300);
  ChangeCounter changes(a);
  a.Fill(Repeat('q', 200));
  EXPECT_EQ(changes.count, 900);  // once per cell, column 0 included
  a.SetRowAttrib(3, 9);
  a.SetColAttrib(1, 4);
  ASSERT_GT(a.NumBuffers(), 1);
  a.Fill(S(u""));  // clears, and fires nothing
  EXPECT_EQ(changes.count, 902);
  EXPECT_EQ(a.NumBuffers(), 1);
  EXPECT_EQ(a.NrOfRows(), 300);
  EXPECT_EQ(a.CellWord(0, 300), 0u);
  EXPECT_EQ(a.GetRowAttrib(3), 0);
  EXPECT_EQ(a.GetColAttrib(1), 0);
  a.SetString(1, 300, S(u"new"));
  EXPECT_EQ(a.CellWord(1, 300), 0x00010001u);
}

TEST(StringArrayTest, AsNumberAndAsInteger) {
  const int kMax = 2147483647;
  const std::tuple<std::u16string_view, double, int> numbers[] = {
      {u" 3,5 ", 3.5, 4},        {u"", 0, 0},           {u"   ", 0, 0},
      {u"2.5", 2.5, 2},          {u"-2.5", -2.5, -2},   {u".5", 0.5, 0},
      {u"1e-400", 0, 0},         {u"1e12", 1e12, kMax}, {u"-1e12", -1e12, -kMax},
      {u"1e400", HUGE_VAL, kMax}};
  TStringArray a;
  a.Resize(3, 12);
  for (const auto& [text, number, integer] : numbers) {
    SCOPED_TRACE(Utf8(text));
    a.SetString(3, 12, S(text));
    EXPECT_DOUBLE_EQ(a.AsNumber(3, 12), number);
    EXPECT_EQ(a.AsInteger(3, 12), integer);
  }
  for (std::u16string_view bad : {u"3x", u"1 2", u"e5", u"1,5,"}) {
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
  EXPECT_EQ(a.AsNumber(5, 5), 0.0);
}

TEST(StringArrayTest, ResizeKeepsOrReallocatesRows) {
  TStringArray a;
  ChangeCounter changes(a);
  EXPECT_TRUE(a.Resize(1, 1));
  EXPECT_FALSE(a.Resize(0, 5));
  EXPECT_FALSE(a.Resize(2, -1));
  EXPECT_EQ(changes.count, 0);
  ASSERT_TRUE(a.Resize(1, 10));
  a.Fill(S(u"old"));
  a.SetRowAttrib(8, 5);
  changes.count = 0;
  EXPECT_TRUE(a.Resize(1, 11));
  EXPECT_EQ(a.RowsAllocated(), 20);
  EXPECT_TRUE(a.Resize(1, 5));
  EXPECT_TRUE(a.Resize(1, 15));
  EXPECT_EQ(a.RowsAllocated(), 20);
  EXPECT_EQ(changes.count, 3);
  EXPECT_EQ(Column(a, 1), (Texts{u"old", u"old", u"old", u"old", u"old", u"", u"", u"", u"", u"",
                                 u"", u"", u"", u"", u""}));
  EXPECT_EQ(a.GetRowAttrib(8), 0);
  a.SetAllocRowsBy(7);
  EXPECT_TRUE(a.Resize(3, 15));
  EXPECT_EQ(a.RowsAllocated(), 21);
  EXPECT_EQ(a.GetString(0, 5).str(), u"old");
  // A row count that rounds up beyond int can't be had: False, the table as
  // it was, OnChange all the same.
  changes.count = 0;
  EXPECT_FALSE(a.Resize(3, INT_MAX));
  EXPECT_EQ(changes.count, 1);
  EXPECT_EQ(a.NrOfRows(), 15);
  EXPECT_EQ(a.RowsAllocated(), 21);
  a.SetAllocRowsBy(0);
  EXPECT_TRUE(a.Resize(2, 3));
  EXPECT_EQ(a.RowsAllocated(), 3);
}

TEST(StringArrayTest, AssignMakesAnIndependentTwin) {
  TStringArray a;
  a.SetNrCols(2);
  FillColumn(a, 1, {u"b", u"a", u"c"});
  a.SetString(0, 2, S(u"zero"));
  a.SetRowAttrib(1, 6);
  a.SetColAttrib(2, 8);
  a.Sort(1, 0, true);
  int fired = 0;
  a.SetOnChange([&](TObject*) { ++fired; });
  TStringArray b;
  b.Assign(a);
  EXPECT_EQ(fired, 0);
  EXPECT_EQ(Column(b, 1), (Texts{u"a", u"b", u"c"}));  // the pending order came along
  EXPECT_EQ(b.GetString(0, 1).str(), u"zero");
  EXPECT_EQ(b.GetRowAttrib(2), 6);
  EXPECT_EQ(b.GetColAttrib(2), 8);
  b.SetString(1, 1, S(u"changed"));
  EXPECT_EQ(fired, 1);  // and the handler
  EXPECT_EQ(a.GetString(1, 1).str(), u"a");
  zyn::platform::TComponent other;
  EXPECT_THROW(b.Assign(other), zyn::platform::EConvertError);
  EXPECT_EQ(b.GetString(1, 1).str(), u"changed");
}

// --- Sorting ----------------------------------------------------------------

TEST(StringArrayTest, SortIgnoresAsciiCaseInBothDirections) {
  TStringArray a;
  // UTF-16 units after folding: 'Ä' (U+00C4) after 'z', and '€' (byte 0x80,
  // U+20AC) after 'Ä' although its byte is lower.
  FillColumn(a, 1, {u"€", u"b", u"Ä", u"ABC", u"z", u"ab"});
  a.Sort(1, 0, true);
  EXPECT_EQ(Column(a, 1), (Texts{u"ab", u"ABC", u"b", u"z", u"Ä", u"€"}));
  a.Sort(1, 0, false);
  EXPECT_EQ(Column(a, 1), (Texts{u"€", u"Ä", u"z", u"b", u"ABC", u"ab"}));
}

TEST(StringArrayTest, SortWithAndWithoutHandlerAgree) {
  // Without a handler the sort compares eight-byte prefixes first and reads
  // the pools directly; a handler that keeps the texts must give the very
  // same order, ties included: texts short and long, equal for more than
  // eight bytes, with NUL bytes and bytes whose characters lie above 255.
  // A progress handler that changes the table halfway must not matter either.
  for (const bool ascending : {true, false}) {
    for (const bool meddle : {false, true}) {
      SCOPED_TRACE(::testing::Message() << ascending << meddle);
      TStringArray plain;
      plain.Resize(2, 500);
      zyn::platform::RandSeed = 77;
      for (int r = 1; r <= 500; ++r) {
        std::string key(static_cast<std::size_t>(zyn::platform::Random(14)), ' ');
        for (auto& ch : key) ch = "aAbB\x80\xC4\xE4z\0"[zyn::platform::Random(9)];
        if (r % 3 == 0) key = "aAaAaAaAa" + key.substr(0, 4);
        plain.SetString(1, r, ShortString::FromBytes(key));
        plain.SetString(2, r, ShortString::FromBytes(std::to_string(zyn::platform::Random(5))));
      }
      TStringArray handled;
      handled.Assign(plain);
      handled.SetOnBeforeSortExchange([](TObject*, const std::u16string&, std::u16string&) {});
      for (TStringArray* a : {&plain, &handled}) {
        if (!meddle) continue;
        a->SetOnPercentDone([a, calls = 0](TObject*, int) mutable {
          if (++calls == 4) a->SetString(1, 7, ShortString::FromBytes("AAAAAAAAAAAA"));
          if (calls == 6) a->SetNrRows(450);
          if (calls == 9) a->SetString(1, 9, ShortString::FromBytes("B"));
        });
      }
      plain.Sort(1, 2, ascending);
      handled.Sort(1, 2, ascending);
      ASSERT_EQ(plain.NrOfRows(), handled.NrOfRows());
      for (int r = 1; r <= plain.NrOfRows(); ++r) {
        ASSERT_EQ(plain.SortOrder(r), handled.SortOrder(r)) << r;
      }
    }
  }
  // A handler decides by what it gives back; no cell changes.
  TStringArray a;
  FillColumn(a, 1, {u"1-b", u"2-c", u"3-a"});
  a.SetOnBeforeSortExchange(
      [](TObject*, const std::u16string& in, std::u16string& out) { out = in.substr(2); });
  a.Sort(1, 0, true);
  EXPECT_EQ(Column(a, 1), (Texts{u"3-a", u"1-b", u"2-c"}));
  // One that never answers the same still lets the sort end.
  int flip = 0;
  a.SetOnBeforeSortExchange([&](TObject*, const std::u16string&, std::u16string& out) {
    out = (flip++ % 3) ? u"a" : u"b";
  });
  a.Sort(1, 0, true);
}

TEST(StringArrayTest, SortReportsProgressAgainstItsEstimate) {
  TStringArray a;
  std::vector<int> percent;
  a.SetOnPercentDone([&](TObject*, int p) { percent.push_back(p); });
  ChangeCounter changes(a);
  a.Sort(1, 0, true);  // one row: no pass, no OnChange
  EXPECT_EQ(percent, (std::vector<int>{0, 100}));
  EXPECT_EQ(changes.count, 0);
  // Ten sorted rows: gaps 7, 5, 3, 2, 1 compare 3, 5, 7, 8, 9 pairs; the
  // estimate is those 32 plus 10.
  FillColumn(a, 1, {u"0", u"1", u"2", u"3", u"4", u"5", u"6", u"7", u"8", u"9"});
  percent.clear();
  changes.count = 0;
  a.Sort(1, 0, true);
  EXPECT_EQ(percent, (std::vector<int>{0, 7, 19, 36, 55, 76, 100}));
  EXPECT_EQ(changes.count, 1);
}

TEST(StringArrayTest, SortGapsFor1000Rows) {
  TStringArray a;
  a.SetNrRows(1000);
  for (int r = 1; r <= 1000; ++r)
    a.SetString(1, r, ShortString::FromBytes(std::to_string(r + 1000)));
  // Each comparison reads two texts; a pass at gap g compares 1000 - g pairs.
  int reads = 0;
  int last = 0;
  std::vector<int> gaps;
  a.SetOnBeforeSortExchange([&](TObject*, const std::u16string&, std::u16string&) { ++reads; });
  a.SetOnPercentDone([&](TObject*, int) {
    if (reads != last) gaps.push_back(1000 - (reads - last) / 2);
    last = reads;
  });
  a.Sort(1, 0, true);
  EXPECT_EQ(gaps, (std::vector<int>{769, 591, 454, 349, 268, 206, 158, 121, 93, 71, 54,
                                    41,  31,  23,  17,  13,  10,  7,   5,   3,  2,  1}));
}

TEST(StringArrayTest, SecondaryColumnBreaksTiesOnly) {
  TStringArray a;
  a.SetNrCols(2);
  FillColumn(a, 1, {u"x", u"y", u"X", u"x"});
  FillColumn(a, 2, {u"3", u"0", u"1", u"2"});
  FillColumn(a, 0, {u"d", u"c", u"b", u"a"});
  a.Sort(1, 2, true);
  EXPECT_EQ(Column(a, 2), (Texts{u"1", u"2", u"3", u"0"}));
  a.UnSort();
  a.Sort(1, 0, true);  // column 0 is never a secondary key: the ties stay as the passes left them
  EXPECT_EQ(Column(a, 0), (Texts{u"d", u"a", u"b", u"c"}));
  a.UnSort();
  ChangeCounter changes(a);
  a.Sort(7, 0, true);  // a column out of range: all equal, nothing moves
  EXPECT_EQ(Column(a, 0), (Texts{u"d", u"c", u"b", u"a"}));
  EXPECT_EQ(changes.count, 1);
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
  EXPECT_EQ(Column(a, 1), (Texts{u"c", u"a", u"b"}));
  a.Sort(1, 0, true);
  ChangeCounter changes(a);
  a.CommitSorting();
  EXPECT_EQ(changes.count, 0);
  for (int i = 1; i <= 3; ++i) EXPECT_EQ(a.GetSortOrder(i), i);
  a.UnSort();
  EXPECT_EQ(Column(a, 1), (Texts{u"a", u"b", u"c"}));
  EXPECT_EQ(a.GetRowAttrib(1), 42);
  a.SetSortOrder(1, 3);
  a.SetSortOrder(2, 4);  // out of range: ignored
  EXPECT_EQ(Column(a, 1), (Texts{u"c", u"b", u"c"}));
}

// --- Searching --------------------------------------------------------------

TEST(StringArrayTest, FindCellWalksRowsThenColumns) {
  TStringArray a;
  a.Resize(3, 4);
  a.SetString(0, 1, S(u"zero"));
  a.SetString(3, 2, S(u"Hello World"));
  a.SetString(1, 3, S(u"world"));
  a.SetString(2, 4, S(u"WORLD"));
  // FindStr, MatchCase, exact, ColLow, ColHigh, RowLow, RowHigh; Col and row found (9, 9: none).
  const std::tuple<std::u16string_view, bool, bool, int, int, int, int, int, int> cases[] = {
      {u"world", false, false, -1, 2, -1, -1, 3, 2},  // -1 in ColLow alone: all columns
      {u"world", true, false, 1, 3, 1, 4, 1, 3},
      {u"world", false, false, 2, 1, 4, 3, 1, 3},   // bounds swapped
      {u"world", false, false, 2, 3, -1, 3, 3, 2},  // RowLow -1 alone clamps to 1
      {u"world", false, false, 0, 0, -1, -1, 9, 9},
      {u"ZERO", false, false, 1, -1, 1, 1, 0, 1},
      {u"", false, false, -1, -1, -1, -1, 9, 9},  // the empty text is nowhere...
      {u"", false, true, -1, -1, -1, -1, 1, 1},   // ...but equals an empty cell
      {u"", false, true, 3, 99, 1, 4, 3, 1},
      {u"world", false, true, -1, -1, -1, -1, 1, 3},
      {u"WORLD", true, true, 0, 3, 1, 4, 2, 4},
      {u"Hello", false, true, -1, -1, -1, -1, 9, 9},
  };
  int i = 0;
  for (const auto& [what, match_case, exact, col_low, col_high, row_low, row_high, c, r] : cases) {
    SCOPED_TRACE("row " + std::to_string(i++));
    const auto find = exact ? &TStringArray::FindCellExact : &TStringArray::FindCell;
    int col = 9, row = 9;
    EXPECT_EQ((a.*find)(what, match_case, col_low, col_high, row_low, row_high, col, row), c != 9);
    EXPECT_EQ(col, c);
    EXPECT_EQ(row, r);
  }
}

TEST(StringArrayTest, FindCellInSortedColumnGivesTheFirstOfARun) {
  TStringArray a;
  FillColumn(a, 1, {u"a", u"b", u"x", u"x", u"x", u"y", u"Z"});
  // FindStr, MatchCase, RowLow, RowHigh; the result and the row.
  const std::tuple<std::u16string_view, bool, int, int, bool, int> cases[] = {
      {u"x", false, -1, -1, true, 3}, {u"x", false, 4, 7, true, 3},  // the walk leaves the range
      {u"z", false, -1, -1, true, 7}, {u"Z", true, 1, 7, false, 1},  // sorted without case
      {u"z", true, 1, 7, false, 7},   {u"a", false, 7, 1, true, 1},
      {u"b", false, 2, 2, true, 2},   {u"c", false, 1, 7, false, 3},
  };
  int i = 0;
  for (const auto& [what, match_case, row_low, row_high, found, r] : cases) {
    SCOPED_TRACE("row " + std::to_string(i++));
    int row = -5;
    EXPECT_EQ(a.FindCellInSortedColumn(what, match_case, 1, row_low, row_high, true, row), found);
    EXPECT_EQ(row, r);
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
  a.Resize(2, 3);
  a.SetString(0, 1, S(u"only column 0"));
  a.SetString(1, 1, S(u"   "));
  a.SetString(2, 2, S(u"\t"));
  EXPECT_EQ((std::vector<bool>{a.RowEmpty(1), a.RowEmpty(2), a.RowEmpty(3), a.RowEmpty(99)}),
            (std::vector<bool>{true, false, true, true}));
  EXPECT_EQ(
      (std::vector<bool>{a.ColumnEmpty(0), a.ColumnEmpty(1), a.ColumnEmpty(2), a.ColumnEmpty(-3)}),
      (std::vector<bool>{false, true, false, true}));
}

TEST(StringArrayTest, AddInsertRemoveAndCopyRows) {
  TStringArray a;
  FillColumn(a, 1, {u"r1", u"r2", u"r3", u"r4", u"r5", u"r6", u"r7", u"r8", u"r9", u"r10"});
  a.SetRowAttrib(10, 3);
  EXPECT_EQ(a.AddRow(), 11);
  EXPECT_EQ(a.RowsAllocated(), 20);
  a.InsertRow(11);  // in front of the last row
  a.SetString(1, 11, S(u"new"));
  a.RemoveRow(12);
  a.RemoveRow(1);
  a.RemoveRow(0);
  EXPECT_EQ(Column(a, 1),
            (Texts{u"r2", u"r3", u"r4", u"r5", u"r6", u"r7", u"r8", u"r9", u"r10", u"new"}));
  EXPECT_EQ(a.GetRowAttrib(9), 3);
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
  EXPECT_EQ(Column(a, 1), (Texts{u"c", u"", u"a", u"b"}));
  a.Sort(1, 0, false);  // shows c, b, a, ""
  a.InsertRow(4);       // in front of the empty row, physical row 2
  EXPECT_EQ(Column(a, 1), (Texts{u"c", u"a", u"", u"", u"b"}));
  a.Sort(1, 0, true);  // "", "", a, b, c
  a.RemoveRow(5);      // "c", physical row 1
  EXPECT_EQ(Column(a, 1), (Texts{u"a", u"", u"", u"b"}));
  for (int i = 1; i <= 4; ++i) EXPECT_EQ(a.GetSortOrder(i), i);
}

// --- XML form ---------------------------------------------------------------

// The dimensions, then the bytes of every cell row by row.
std::vector<std::string> Cells(const TStringArray& a) {
  std::vector<std::string> out{std::to_string(a.NrOfColumns()), std::to_string(a.NrOfRows())};
  for (int r = 1; r <= a.NrOfRows(); ++r)
    for (int c = 0; c <= a.NrOfColumns(); ++c) out.emplace_back(a.GetString(c, r).bytes());
  return out;
}

TEST(StringArrayXmlTest, WritesTheDocumentedBlock) {
  TStringArray a;
  a.SetNrCols(2);
  FillColumn(a, 1, {u"b", u"", u"c"});
  a.SetString(0, 2, S(u"a<b"));
  a.Sort(1, 0, false);  // the visible order c, b, "" is what is saved
  TempDir dir;
  zyn::platform::Textfile f;
  f.Assign(Name(dir / "t.xml"));
  f.Rewrite();
  a.WriteToOpenXMLFile(f, false, u"my \"id\"");
  f.Close();
  EXPECT_EQ(ReadFileBytes(dir / "t.xml"),
            "\r\n<!-- TStringArray / Zynforge -->\r\n"
            "<strarray sig=\"Zynforge\" vers=\"1.0\" id=\"my _id_\">\r\n"
            "  <numcols val=2 />\r\n  <numrows val=3 />\r\n"
            "  <cell col=1 row=1>c</cell>\r\n  <cell col=1 row=2>b</cell>\r\n"
            "  <cell col=0 row=3>a&#60;b</cell>\r\n</strarray>\r\n");
}

TEST(StringArrayXmlTest, HostileTextsSurviveSaveAndLoad) {
  std::string bytes;
  for (int b = 0; b < 256; ++b) bytes += static_cast<char>(b);
  const std::string texts[] = {
      bytes.substr(0, 128),  bytes.substr(128), "\"q\" 'q' </cell> </strarray> <cell col=1 row=1>",
      "a\r\nb\rc\nd",        "&#60; &amp; &",   "  blanks  ",
      std::string(255, '>'), "<!-- x -->"};
  TStringArray a;
  a.Resize(3, 12);  // the empty rows behind the texts come back too
  for (int i = 0; i < 8; ++i) a.SetString(i % 4, 1 + i, ShortString::FromBytes(texts[i]));
  TempDir dir;
  a.SaveAsXMLFile(Name(dir / "t.xml"), u"hostile");
  for (unsigned char ch : ReadFileBytes(dir / "t.xml")) {
    ASSERT_TRUE(ch == '\r' || ch == '\n' || (ch >= 0x20 && ch < 0x7F)) << int(ch);
  }
  TStringArray b;
  ChangeCounter changes(b);
  ASSERT_TRUE(b.LoadFromXMLFile(Name(dir / "t.xml"), u"HOSTILE"));
  EXPECT_EQ(changes.count, 1);
  EXPECT_EQ(Cells(a), Cells(b));
}

TEST(StringArrayXmlTest, SeveralTablesInOneFile) {
  TStringArray one, two, t;
  one.SetString(1, 1, S(u"first"));
  FillColumn(two, 1, {u"", u"second"});
  TempDir dir;
  zyn::platform::Textfile f;
  f.Assign(Name(dir / "t.xml"));
  f.Rewrite();
  one.WriteToOpenXMLFile(f, true, u"T1");
  two.WriteToOpenXMLFile(f, false, u"t2");
  f.Reset();
  ASSERT_TRUE(t.ReadFromOpenXMLFile(f, u" t2 "));
  EXPECT_EQ(Cells(t), Cells(two));
  EXPECT_FALSE(t.ReadFromOpenXMLFile(f, u"t1"));  // behind it, without a rewind
  EXPECT_EQ(Cells(t), Cells(two));
  f.Reset();
  ASSERT_TRUE(t.ReadFromOpenXMLFile(f, u"t1"));
  EXPECT_EQ(Cells(t), Cells(one));
  ASSERT_TRUE(t.ReadFromOpenXMLFile(f, u""));  // the next block, whatever its id
  EXPECT_EQ(Cells(t), Cells(two));
  f.Close();
  EXPECT_FALSE(t.LoadFromXMLFile(Name(dir / "missing.xml"), u""));
}

TEST(StringArrayXmlTest, DamagedBlocksLeaveTheTableAlone) {
  const std::string start = "<strarray sig=\"Zynforge\" id=\"t\">\n";
  const std::string dims = "<numcols val=1 />\n<numrows val=1 />\n";
  const std::string cases[] = {
      "",
      "<strarray id=\"t\">\n" + dims + "</strarray>\n",  // no signature
      start + dims + "<cell col=1 row=1>x</cell>\n",     // no end tag
      start + "<numrows val=1 />\n</strarray>\n",
      start + "<numcols val=x />\n<numrows val=1 />\n</strarray>\n",
      start + "<numcols val=1 />\n<numrows val=2147483647 />\n</strarray>\n",
      start + "<numcols val=100000 />\n<numrows val=100000 />\n</strarray>\n",
      start + dims + "<cell col=1 row=1>open\n</strarray>\n",
  };
  TempDir dir;
  for (const std::string& text : cases) {
    SCOPED_TRACE(text);
    WriteFileBytes(dir / "t.xml", text);
    TStringArray a;
    FillColumn(a, 1, {u"", u"kept"});
    ChangeCounter changes(a);
    EXPECT_FALSE(a.LoadFromXMLFile(Name(dir / "t.xml"), u"t"));
    EXPECT_EQ(changes.count, 0);
    EXPECT_EQ(Column(a, 1), (Texts{u"", u"kept"}));
  }
}

TEST(StringArrayXmlTest, ReadsHandWrittenBlocks) {
  // One line, other case, quoted values, raw bytes that aren't UTF-8, cells
  // out of range dropped, a later cell replacing an earlier one.
  TempDir dir;
  WriteFileBytes(dir / "t.xml",
                 "<STRARRAY SIG=ZYNFORGE ID=\"Hand\"><NumCols val=\"2\" /><numrows VAL=2 />"
                 "<cell col=2 row=2>\xE4&#9;&#999;&#;</cell><cell col=3 row=1>no</cell>"
                 "<cell col=0 row=1>one</cell><cell row=1 col=0>two</cell><x>y</x></strarray>");
  TStringArray a;
  ASSERT_TRUE(a.LoadFromXMLFile(Name(dir / "t.xml"), u"hand"));
  EXPECT_EQ(Cells(a),
            (std::vector<std::string>{"2", "2", "two", "", "", "", "", "\xE4\t&#999;&#;"}));
}

}  // namespace
}  // namespace Zyn_dstruct
