#include "zyn/dstruct/bitfield.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "zyn/platform/random.h"

namespace Zyn_dstruct {
namespace {

using Zyn_zynbase::TIntArray;

// A field of Size `size` whose bit i is bit i % 8 of `byte` for i % 17 != 0
// (so not a mere byte pattern); returns the indices of its true bits.
TIntArray Pattern(TBitFld& f, int size, std::uint8_t byte) {
  f.SetSize(size);
  TIntArray on;
  for (int i = 0; i <= size; ++i) {
    f.SetBit(i, i % 17 != 0 && (byte >> (i % 8) & 1));
    if (f.GetBit(i)) on.push_back(i);
  }
  return on;
}

TIntArray Ones(const TBitFld& f) {
  TIntArray list{42};
  f.MakeListOfBits(list, true);
  return list;
}

// Sizes around byte and word edges: the last used byte full or partial, the
// word loops with a tail or none.
TEST(TBitFldTest, QueriesAgreeWithBitByBitReading) {
  EXPECT_EQ(TBitFld().Size(), 1000);
  for (int size : {1, 7, 8, 9, 63, 64, 65, 127, 1000}) {
    for (std::uint8_t byte : {0x00, 0x80, 0x5A, 0xFF}) {
      SCOPED_TRACE("Size " + std::to_string(size) + " byte " + std::to_string(byte));
      TBitFld f;
      const TIntArray on = Pattern(f, size, byte);
      for (int ix : {-1, size + 1, size + 8, std::numeric_limits<int>::min()}) {
        f.SetBit(ix, true);
        f.ToggleBit(ix);
        EXPECT_FALSE(f.GetBit(ix)) << ix;
      }
      EXPECT_EQ(f.CountTrueBits(), static_cast<int>(on.size()));
      EXPECT_EQ(f.FirstTrueBit(), on.empty() ? -1 : on.front());
      EXPECT_EQ(Ones(f), on);
      TIntArray off;
      f.MakeListOfBits(off, false);
      EXPECT_EQ(off.size() + on.size(), static_cast<std::size_t>(size) + 1);
      // Invert also flips the bits above Size in the last byte; no query sees them.
      f.Invert();
      EXPECT_EQ(Ones(f), off);
      EXPECT_EQ(f.CountTrueBits(), static_cast<int>(off.size()));
    }
  }
}

TEST(TBitFldTest, RandomFillLeavesExactCount) {
  // Earlier contents don't survive; Percent and NBits are limited to the field.
  const auto filled = [](auto amount) {
    TBitFld f;
    f.SetBit(7, true);
    f.RandomFill(amount);
    return f.CountTrueBits();
  };
  const std::pair<double, int> by_percent[] = {{0, 0},  {50, 500},    {150, 1000},
                                               {-5, 0}, {33.33, 333}, {std::nan(""), 0}};
  for (auto [percent, expect] : by_percent) EXPECT_EQ(filled(percent), expect) << percent;
  const std::pair<int, int> by_count[] = {{1, 1}, {501, 501}, {2000, 1000}, {-3, 0}};
  for (auto [nbits, expect] : by_count) EXPECT_EQ(filled(nbits), expect) << nbits;
  TBitFld a, b, tiny;
  zyn::platform::RandSeed = 1234;  // same seed, same field
  a.RandomFill(30);
  zyn::platform::RandSeed = 1234;
  b.RandomFill(30);
  EXPECT_EQ(Ones(a), Ones(b));
  tiny.SetSize(1);  // both ends can be drawn
  int sum = 0;
  for (int i = 0; i < 64; ++i) {
    tiny.RandomFill(1);
    sum += 1 << (2 * tiny.FirstTrueBit());
  }
  EXPECT_TRUE(sum % 4 != 0 && sum >= 4);
}

TEST(TBitFldTest, SizeChangesAndCopies) {
  TBitFld f, cloned, assigned;
  for (int ix : {3, 12, 30}) f.SetBit(ix, true);
  f.SetSize(0);
  f.SetSize(8);  // keeps bytes 0 to 2
  EXPECT_EQ(f.CountTrueBits(), 1);
  f.SetSize(40);
  EXPECT_EQ(Ones(f), (TIntArray{3, 12}));  // nothing is cleared on a size change
  cloned.Clone(&f);
  cloned.Clone(nullptr);
  assigned.Assign(f);
  f.ToggleBit(0);
  EXPECT_EQ(cloned.Size() + assigned.Size(), 80);
  EXPECT_EQ(Ones(cloned), (TIntArray{3, 12}));
  EXPECT_EQ(Ones(assigned), (TIntArray{3, 12}));
  TByteMatrix other;
  EXPECT_THROW(assigned.Assign(other), zyn::platform::EConvertError);
  EXPECT_THROW(other.Assign(assigned), zyn::platform::EConvertError);
  EXPECT_EQ(Ones(assigned), (TIntArray{3, 12}));
}

// ---------------------------------------------------------------------------
// TByteMatrix

// Counts OnChange calls of m: 1 with m as the sender, 1000 with another.
const int* CountChanges(TByteMatrix& m) {
  auto count = std::make_shared<int>(0);
  m.SetOnChange([count, &m](zyn::platform::TObject* s) { *count += s == &m ? 1 : 1000; });
  return count.get();
}

void Number(TByteMatrix& m, int cols, int rows) {
  m.Resize(cols, rows);
  for (int c = 1; c <= cols; ++c) {
    for (int r = 1; r <= rows; ++r) m.SetByte(c, r, static_cast<std::uint8_t>(c * 16 + r));
  }
}

TEST(TByteMatrixTest, ResizeKeepsOverlapAndFiresOnRealChangesOnly) {
  const std::array<int, 3> cases[] = {{3, 4, 0}, {0, 5, 0}, {5, -1, 0}, {5, 4, 1}, {2, 6, 1}};
  for (auto [cols, rows, changed] : cases) {
    SCOPED_TRACE(std::to_string(cols) + "x" + std::to_string(rows));
    TByteMatrix m;
    Number(m, 3, 4);
    const int* changes = CountChanges(m);
    EXPECT_EQ(m.Resize(cols, rows), changed == 1);
    EXPECT_EQ(*changes, changed);
    if (!changed) cols = 3, rows = 4;
    ASSERT_EQ(m.NrOfColumns() * 100 + m.NrOfRows(), cols * 100 + rows);
    for (int x = 1; x <= cols; ++x) {
      for (int y = 1; y <= rows; ++y) EXPECT_EQ(m.GetByte(x, y), x <= 3 && y <= 4 ? x * 16 + y : 0);
    }
  }
  TByteMatrix m;
  EXPECT_EQ(m.NrOfColumns() + m.NrOfRows() + m.GetByte(1, 1), 2);
  m.Resize(4, 5);
  m.SetNrOfRows(0);
  m.SetNrOfColumns(6);
  EXPECT_EQ(m.NrOfColumns() * 100 + m.NrOfRows(), 601);
}

TEST(TByteMatrixTest, CellAccess) {
  TByteMatrix m;
  m.Resize(3, 2);
  m.Fill(0xF0);
  const int* changes = CountChanges(m);
  const std::array<int, 3> bad[] = {{0, 1, 0}, {4, 1, 0},  {1, 0, 0},
                                    {1, 3, 0}, {1, 1, -1}, {1, 1, 8}};
  for (auto [x, y, bit] : bad) {
    m.SetBit(x, y, bit, false);
    m.ToggleBit(x, y, bit);
    EXPECT_FALSE(m.GetBit(x, y, bit));
    if (bit == 0) {
      m.SetByte(x, y, 0);
      EXPECT_EQ(m.GetByte(x, y), 0);
    }
  }
  EXPECT_EQ(*changes, 0);
  m.SetByte(2, 1, 0xF0);  // fires even without a change
  m.SetBit(2, 1, 0, true);
  m.ToggleBit(2, 1, 7);
  EXPECT_EQ(m.GetByte(2, 1), 0x71);
  EXPECT_TRUE(m.GetBit(2, 1, 6));
  EXPECT_EQ(*changes, 3);
}

TEST(TByteMatrixTest, MirrorsExchangeFromOutsideIn) {
  for (int cols : {1, 3, 4}) {
    for (int rows : {1, 2, 15, 16, 17, 33}) {
      SCOPED_TRACE(std::to_string(cols) + "x" + std::to_string(rows));
      TByteMatrix m, n;
      Number(m, cols, rows);
      Number(n, cols, rows);
      const int* changes = CountChanges(m);
      m.MirrorColumns();
      n.MirrorRows();
      EXPECT_EQ(*changes, 1);
      for (int c = 1; c <= cols; ++c) {
        for (int r = 1; r <= rows; ++r) {
          ASSERT_EQ(m.GetByte(c, r), static_cast<std::uint8_t>((cols + 1 - c) * 16 + r));
          ASSERT_EQ(n.GetByte(c, r), static_cast<std::uint8_t>(c * 16 + rows + 1 - r));
        }
      }
    }
  }
}

// a = 1100'1010, b = 1010'0110; the complement falls on the partner b.
TEST(CombineWithTest, MergesBitsAndBytesAndAssignFiresNothing) {
  const std::pair<TLogicOp, std::uint8_t> ops[] = {{loAND, 0x82},   {loOR, 0xEE},
                                                   {loXOR, 0x6C},   {loANDNot, 0x48},
                                                   {loORNot, 0xDB}, {loXORNot, 0x93}};
  for (auto [op, expect] : ops) {
    SCOPED_TRACE(op);
    TBitFld a, b;
    Pattern(a, 100, 0xCA);
    Pattern(b, 100, 0xA6);
    a.CombineWith(&b, op);
    for (int i = 1; i <= 100; ++i) {
      ASSERT_TRUE(i % 17 == 0 || a.GetBit(i) == ((expect >> (i % 8) & 1) != 0)) << i;
    }
    TByteMatrix m, n, transposed;
    m.Resize(3, 7);  // 21 cells: words and a tail
    n.Resize(3, 7);
    transposed.Resize(7, 3);
    m.Fill(0xCA);
    n.Fill(0xA6);
    const int* changes = CountChanges(m);
    m.CombineWith(&transposed, op);
    m.CombineWith(&n, op);
    EXPECT_EQ(*changes, 0);
    EXPECT_EQ(m.GetByte(1, 1), expect);
    EXPECT_EQ(m.GetByte(3, 7), expect);
  }
  // Another size, no partner or no operation: nothing happens.
  TBitFld a, b;
  const TIntArray on = Pattern(a, 100, 0xCA);
  Pattern(b, 99, 0xFF);
  a.CombineWith(&b, loXOR);
  a.CombineWith(nullptr, loOR);
  a.CombineWith(&a, static_cast<TLogicOp>(9));
  EXPECT_EQ(Ones(a), on);
  // Assign takes the handler along without firing it.
  TByteMatrix source, dest;
  Number(source, 3, 5);
  const int* changes = CountChanges(source);
  dest.Assign(source);
  EXPECT_EQ(*changes, 0);
  EXPECT_EQ(dest.GetByte(3, 5), 3 * 16 + 5);
  dest.SetByte(1, 1, 9);  // the handler came along; it sees another sender
  EXPECT_EQ(*changes, 1000);
}

TEST(TByteMatrixTest, ImpossibleSizeRaisesUnitError) {
  // AddressSanitizer's operator new aborts on a request it can't meet, even
  // with allocator_may_return_null, instead of throwing std::bad_alloc.
#if defined(__SANITIZE_ADDRESS__)
  GTEST_SKIP() << "operator new aborts under AddressSanitizer";
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
  GTEST_SKIP() << "operator new aborts under AddressSanitizer";
#endif
#endif
  TByteMatrix m;
  m.SetName(u"Grid");
  m.Fill(7);
  const int huge = std::numeric_limits<int>::max();
  try {
    m.Resize(huge, huge);
    FAIL() << "no exception";
  } catch (const EZYNDStructError& e) {
    EXPECT_EQ(e.Message(), u"Component \"Grid\": not enough memory on heap");
  }
  EXPECT_EQ(m.NrOfColumns() + m.GetByte(1, 1), 8);
}

}  // namespace
}  // namespace Zyn_dstruct
