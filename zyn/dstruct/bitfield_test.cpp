#include "zyn/dstruct/bitfield.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "zyn/platform/random.h"

namespace Zyn_dstruct {
namespace {

using zyn::platform::EConvertError;
using Zyn_zynbase::TIntArray;

// A reference field: bit i of the field is ref[i].
std::vector<bool> BitsOf(const TBitFld& f) {
  std::vector<bool> bits(static_cast<std::size_t>(f.Size()) + 1);
  for (int i = 0; i <= f.Size(); ++i) bits[static_cast<std::size_t>(i)] = f.GetBit(i);
  return bits;
}

// Sets a pseudo-random pattern with roughly one bit in `every` true.
std::vector<bool> FillPattern(TBitFld& f, unsigned seed, unsigned every) {
  std::vector<bool> bits(static_cast<std::size_t>(f.Size()) + 1);
  f.Clear();
  for (int i = 0; i <= f.Size(); ++i) {
    seed = seed * 1103515245u + 12345u;
    const bool on = (seed >> 16) % every == 0;
    f.SetBit(i, on);
    bits[static_cast<std::size_t>(i)] = on;
  }
  return bits;
}

// Sizes around byte and word edges: the last used byte is full or partial,
// and the word loop has a tail or none.
const int kSizes[] = {1, 7, 8, 9, 15, 63, 64, 65, 71, 127, 128, 1000};

TEST(TBitFldTest, NewFieldHas1001FalseBits) {
  TBitFld f;
  EXPECT_EQ(f.Size(), 1000);
  EXPECT_EQ(f.CountTrueBits(), 0);
  EXPECT_EQ(f.FirstTrueBit(), -1);
  f.SetBit(1000, true);
  EXPECT_TRUE(f.Bit(1000));
  EXPECT_EQ(f.CountTrueBits(), 1);
}

TEST(TBitFldTest, IndicesOutsideZeroToSizeAreIgnored) {
  for (int size : kSizes) {
    SCOPED_TRACE("Size " + std::to_string(size));
    TBitFld f;
    f.SetSize(size);
    for (int ix : {-1, size + 1, size + 8, std::numeric_limits<int>::min(),
                   std::numeric_limits<int>::max()}) {
      f.SetBit(ix, true);
      f.ToggleBit(ix);
      EXPECT_FALSE(f.GetBit(ix)) << ix;
    }
    EXPECT_EQ(f.CountTrueBits(), 0);
    f.ToggleBit(size);
    EXPECT_TRUE(f.GetBit(size));
    EXPECT_EQ(f.FirstTrueBit(), size);
    EXPECT_EQ(f.CountTrueBits(), 1);
  }
}

// Invert also flips the bits above Size in the last byte; count, first bit and
// list must not see them.
TEST(TBitFldTest, WholeFieldQueriesIgnoreBitsAboveSize) {
  for (int size : kSizes) {
    SCOPED_TRACE("Size " + std::to_string(size));
    TBitFld f;
    f.SetSize(size);
    f.Invert();
    EXPECT_EQ(f.CountTrueBits(), size + 1);
    EXPECT_EQ(f.FirstTrueBit(), 0);
    TIntArray list{99, 98};
    f.MakeListOfBits(list, false);
    EXPECT_TRUE(list.empty());
    f.MakeListOfBits(list, true);
    ASSERT_EQ(list.size(), static_cast<std::size_t>(size) + 1);
    EXPECT_EQ(list.back(), size);
    f.Invert();
    EXPECT_EQ(f.CountTrueBits(), 0);
    EXPECT_EQ(f.FirstTrueBit(), -1);
    f.MakeListOfBits(list, false);
    ASSERT_EQ(list.size(), static_cast<std::size_t>(size) + 1);
    for (int i = 0; i <= size; ++i) EXPECT_EQ(list[static_cast<std::size_t>(i)], i);
  }
}

TEST(TBitFldTest, QueriesAgreeWithBitByBitReference) {
  for (int size : kSizes) {
    for (unsigned every : {1u, 2u, 5u, 40u}) {
      SCOPED_TRACE("Size " + std::to_string(size) + " every " + std::to_string(every));
      TBitFld f;
      f.SetSize(size);
      const std::vector<bool> ref = FillPattern(f, static_cast<unsigned>(size) * 7 + every, every);
      int count = 0;
      int first = -1;
      TIntArray on, off;
      for (int i = 0; i <= size; ++i) {
        if (ref[static_cast<std::size_t>(i)]) {
          ++count;
          if (first < 0) first = i;
          on.push_back(i);
        } else {
          off.push_back(i);
        }
      }
      EXPECT_EQ(f.CountTrueBits(), count);
      EXPECT_EQ(f.FirstTrueBit(), first);
      TIntArray list;
      f.MakeListOfBits(list, true);
      EXPECT_EQ(list, on);
      f.MakeListOfBits(list, false);
      EXPECT_EQ(list, off);
    }
  }
}

TEST(TBitFldTest, CombineWithAppliesOperationToPartnerComplement) {
  struct Case {
    TLogicOp op;
    bool (*expect)(bool a, bool b);
    const char* name;
  };
  const Case cases[] = {
      {loAND, [](bool a, bool b) { return a && b; }, "AND"},
      {loOR, [](bool a, bool b) { return a || b; }, "OR"},
      {loXOR, [](bool a, bool b) { return a != b; }, "XOR"},
      {loANDNot, [](bool a, bool b) { return a && !b; }, "ANDNot"},
      {loORNot, [](bool a, bool b) { return a || !b; }, "ORNot"},
      {loXORNot, [](bool a, bool b) { return a == b; }, "XORNot"},
  };
  for (int size : {9, 64, 100, 1000}) {
    for (const Case& c : cases) {
      SCOPED_TRACE(std::string(c.name) + " Size " + std::to_string(size));
      TBitFld a, b;
      a.SetSize(size);
      b.SetSize(size);
      const std::vector<bool> ra = FillPattern(a, 1, 2);
      const std::vector<bool> rb = FillPattern(b, 2, 3);
      a.CombineWith(&b, c.op);
      for (int i = 0; i <= size; ++i) {
        const auto k = static_cast<std::size_t>(i);
        ASSERT_EQ(a.GetBit(i), c.expect(ra[k], rb[k])) << "bit " << i;
      }
      EXPECT_EQ(BitsOf(b), rb);  // the partner stays as it was
    }
  }
}

TEST(TBitFldTest, CombineWithMismatchIsSilent) {
  TBitFld a, b;
  const std::vector<bool> ra = FillPattern(a, 3, 2);
  b.SetSize(999);
  b.Invert();
  a.CombineWith(&b, loXOR);
  EXPECT_EQ(BitsOf(a), ra);
  a.CombineWith(nullptr, loOR);
  EXPECT_EQ(BitsOf(a), ra);
  a.CombineWith(&a, static_cast<TLogicOp>(9));
  EXPECT_EQ(BitsOf(a), ra);
  a.CombineWith(&a, loXOR);  // the field with itself
  EXPECT_EQ(a.CountTrueBits(), 0);
}

TEST(TBitFldTest, RandomFillLeavesExactCount) {
  struct Case {
    double percent;
    int nbits;  // used when percent is negative infinity
    int expect;
  };
  const double kByCount = -std::numeric_limits<double>::infinity();
  const Case cases[] = {
      {0.0, 0, 0},
      {50.0, 0, 500},
      {150.0, 0, 1000},
      {-5.0, 0, 0},
      {0.04, 0, 0},
      {33.33, 0, 333},
      {std::nan(""), 0, 0},
      {kByCount, 0, 0},
      {kByCount, 1, 1},
      {kByCount, 500, 500},
      {kByCount, 501, 501},
      {kByCount, 1000, 1000},
      {kByCount, 2000, 1000},
      {kByCount, -3, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE("percent " + std::to_string(c.percent) + " nbits " + std::to_string(c.nbits));
    TBitFld f;
    f.SetBit(7, true);  // earlier contents don't survive
    if (c.percent == kByCount) {
      f.RandomFill(c.nbits);
    } else {
      f.RandomFill(c.percent);
    }
    EXPECT_EQ(f.CountTrueBits(), c.expect);
  }
}

TEST(TBitFldTest, RandomFillFollowsTheSharedGenerator) {
  zyn::platform::RandSeed = 1234;
  TBitFld a;
  a.RandomFill(30);
  zyn::platform::RandSeed = 1234;
  TBitFld b;
  b.RandomFill(30);
  EXPECT_EQ(BitsOf(a), BitsOf(b));
  // Every index is reachable, the two ends included.
  TBitFld small;
  small.SetSize(1);
  bool seen[2] = {false, false};
  for (int i = 0; i < 64; ++i) {
    small.RandomFill(1);
    ASSERT_EQ(small.CountTrueBits(), 1);
    seen[small.FirstTrueBit()] = true;
  }
  EXPECT_TRUE(seen[0] && seen[1]);
}

TEST(TBitFldTest, SetSizeKeepsRemainingBytes) {
  TBitFld f;
  f.SetBit(3, true);
  f.SetBit(12, true);  // byte 1: kept when the size shrinks to 8
  f.SetBit(30, true);  // byte 3: dropped
  f.SetSize(0);
  f.SetSize(-5);
  EXPECT_EQ(f.Size(), 1000);
  f.SetSize(8);
  EXPECT_EQ(f.Size(), 8);
  EXPECT_EQ(f.CountTrueBits(), 1);
  EXPECT_FALSE(f.GetBit(12));
  f.SetSize(40);
  EXPECT_TRUE(f.GetBit(3));
  EXPECT_TRUE(f.GetBit(12));  // nothing is cleared when the size changes
  EXPECT_FALSE(f.GetBit(30));
}

TEST(TBitFldTest, CloneAndAssignCopySizeAndBits) {
  TBitFld source;
  source.SetSize(77);
  const std::vector<bool> bits = FillPattern(source, 5, 3);
  TBitFld cloned;
  cloned.Clone(&source);
  EXPECT_EQ(BitsOf(cloned), bits);
  cloned.Clone(nullptr);
  EXPECT_EQ(cloned.Size(), 77);

  TBitFld assigned;
  assigned.Assign(source);
  EXPECT_EQ(BitsOf(assigned), bits);
  source.SetBit(0, !bits[0]);  // the copy has storage of its own
  EXPECT_EQ(assigned.GetBit(0), bits[0]);

  TByteMatrix other;
  EXPECT_THROW(assigned.Assign(other), EConvertError);
  EXPECT_EQ(BitsOf(assigned), bits);
  zyn::platform::TComponent plain;
  EXPECT_THROW(plain.Assign(source), EConvertError);
}

TEST(TBitFldTest, OwnerDestroysIt) {
  auto owner = std::make_unique<zyn::platform::TComponent>();
  auto* f = new TBitFld(owner.get());
  EXPECT_EQ(owner->ComponentCount(), 1);
  EXPECT_EQ(owner->Components(0), f);
}

// ---------------------------------------------------------------------------
// TByteMatrix

struct ChangeCounter {
  int count = 0;
  zyn::platform::TObject* sender = nullptr;
  void Attach(TByteMatrix& m) {
    m.SetOnChange([this](zyn::platform::TObject* s) {
      ++count;
      sender = s;
    });
  }
};

// Fills the matrix with distinct values, col * 16 + row.
void Number(TByteMatrix& m) {
  for (int c = 1; c <= m.NrOfColumns(); ++c) {
    for (int r = 1; r <= m.NrOfRows(); ++r) m.SetByte(c, r, static_cast<std::uint8_t>(c * 16 + r));
  }
}

TEST(TByteMatrixTest, NewMatrixIsOneZeroCell) {
  TByteMatrix m;
  EXPECT_EQ(m.NrOfColumns(), 1);
  EXPECT_EQ(m.NrOfRows(), 1);
  EXPECT_EQ(m.GetByte(1, 1), 0);
}

TEST(TByteMatrixTest, ResizeKeepsOverlapAndReportsRealChangesOnly) {
  struct Case {
    int cols, rows;
    bool changed;
  };
  const Case cases[] = {{3, 4, false}, {0, 5, false}, {5, 0, false}, {-1, -1, false},
                        {5, 4, true},  {3, 6, true},  {2, 2, true},  {1, 1, true}};
  for (const Case& c : cases) {
    SCOPED_TRACE(std::to_string(c.cols) + "x" + std::to_string(c.rows));
    TByteMatrix m;
    m.Resize(3, 4);
    Number(m);
    ChangeCounter changes;
    changes.Attach(m);
    EXPECT_EQ(m.Resize(c.cols, c.rows), c.changed);
    EXPECT_EQ(changes.count, c.changed ? 1 : 0);
    const int cols = c.changed ? c.cols : 3;
    const int rows = c.changed ? c.rows : 4;
    ASSERT_EQ(m.NrOfColumns(), cols);
    ASSERT_EQ(m.NrOfRows(), rows);
    for (int x = 1; x <= cols; ++x) {
      for (int y = 1; y <= rows; ++y) {
        const int expect = x <= 3 && y <= 4 ? x * 16 + y : 0;
        EXPECT_EQ(m.GetByte(x, y), expect) << x << "," << y;
      }
    }
  }
}

TEST(TByteMatrixTest, CountSettersRaiseToOne) {
  TByteMatrix m;
  m.Resize(4, 5);
  m.SetNrOfRows(0);
  EXPECT_EQ(m.NrOfRows(), 1);
  EXPECT_EQ(m.NrOfColumns(), 4);
  m.SetNrOfColumns(-7);
  EXPECT_EQ(m.NrOfColumns(), 1);
  m.SetNrOfColumns(6);
  EXPECT_EQ(m.NrOfColumns(), 6);
  EXPECT_EQ(m.NrOfRows(), 1);
}

TEST(TByteMatrixTest, BadCellsReadNeutralAndIgnoreWrites) {
  struct Case {
    int ix, iy, bit;
  };
  const Case cases[] = {{0, 1, 0},
                        {4, 1, 0},
                        {1, 0, 0},
                        {1, 3, 0},
                        {1, 1, -1},
                        {1, 1, 8},
                        {std::numeric_limits<int>::min(), 1, 0}};
  for (const Case& c : cases) {
    SCOPED_TRACE(std::to_string(c.ix) + "," + std::to_string(c.iy) + " bit " +
                 std::to_string(c.bit));
    TByteMatrix m;
    m.Resize(3, 2);
    m.Fill(0xFF);
    ChangeCounter changes;
    changes.Attach(m);
    m.SetBit(c.ix, c.iy, c.bit, false);
    m.ToggleBit(c.ix, c.iy, c.bit);
    if (c.bit == 0) m.SetByte(c.ix, c.iy, 0);
    EXPECT_EQ(changes.count, 0);
    EXPECT_FALSE(m.GetBit(c.ix, c.iy, c.bit));
    if (c.bit == 0) {
      EXPECT_EQ(m.GetByte(c.ix, c.iy), 0);
    }
    for (int x = 1; x <= 3; ++x) {
      for (int y = 1; y <= 2; ++y) EXPECT_EQ(m.GetByte(x, y), 0xFF);
    }
  }
}

TEST(TByteMatrixTest, CellWritesFireEvenWithoutChange) {
  TByteMatrix m;
  m.Resize(2, 2);
  ChangeCounter changes;
  changes.Attach(m);
  m.SetByte(2, 1, 0);
  m.SetBit(2, 1, 0, false);
  EXPECT_EQ(changes.count, 2);
  EXPECT_EQ(changes.sender, &m);
  m.SetBit(2, 1, 7, true);
  m.ToggleBit(2, 1, 0);
  EXPECT_EQ(m.GetByte(2, 1), 0x81);
  EXPECT_TRUE(m.GetBit(2, 1, 7));
  EXPECT_FALSE(m.GetBit(2, 1, 6));
  m.ToggleBit(2, 1, 7);
  EXPECT_EQ(m.Byte(2, 1), 0x01);
  EXPECT_EQ(changes.count, 5);
}

TEST(TByteMatrixTest, MirrorsExchangeFromOutsideIn) {
  for (int cols : {1, 2, 3, 4}) {
    for (int rows : {1, 2, 3, 15, 16, 17, 33}) {
      SCOPED_TRACE(std::to_string(cols) + "x" + std::to_string(rows));
      TByteMatrix m;
      m.Resize(cols, rows);
      Number(m);
      ChangeCounter changes;
      changes.Attach(m);
      m.MirrorColumns();
      EXPECT_EQ(changes.count, 1);
      for (int c = 1; c <= cols; ++c) {
        for (int r = 1; r <= rows; ++r) {
          ASSERT_EQ(m.GetByte(c, r), static_cast<std::uint8_t>((cols + 1 - c) * 16 + r));
        }
      }
      Number(m);
      changes.count = 0;
      m.MirrorRows();
      EXPECT_EQ(changes.count, 1);
      for (int c = 1; c <= cols; ++c) {
        for (int r = 1; r <= rows; ++r) {
          ASSERT_EQ(m.GetByte(c, r), static_cast<std::uint8_t>(c * 16 + rows + 1 - r));
        }
      }
    }
  }
}

TEST(TByteMatrixTest, CombineWithIsCellwiseAndSilent) {
  struct Case {
    TLogicOp op;
    std::uint8_t expect;
  };
  // a = 0b1100'1010, b = 0b1010'0110
  const Case cases[] = {{loAND, 0x82},    {loOR, 0xEE},    {loXOR, 0x6C},
                        {loANDNot, 0x48}, {loORNot, 0xDB}, {loXORNot, 0x93}};
  for (const Case& c : cases) {
    SCOPED_TRACE(static_cast<int>(c.op));
    TByteMatrix a, b;
    a.Resize(3, 7);  // 21 cells: a word and a tail
    b.Resize(3, 7);
    a.Fill(0xCA);
    b.Fill(0xA6);
    ChangeCounter changes;
    changes.Attach(a);
    a.CombineWith(&b, c.op);
    EXPECT_EQ(changes.count, 0);
    for (int x = 1; x <= 3; ++x) {
      for (int y = 1; y <= 7; ++y) ASSERT_EQ(a.GetByte(x, y), c.expect);
    }
  }
  TByteMatrix a, b;
  a.Resize(2, 3);
  b.Resize(3, 2);
  a.Fill(1);
  b.Fill(2);
  a.CombineWith(&b, loOR);
  a.CombineWith(nullptr, loOR);
  EXPECT_EQ(a.GetByte(2, 3), 1);
}

TEST(TByteMatrixTest, AssignCopiesCellsAndHandlerWithoutFiring) {
  TByteMatrix source;
  source.Resize(3, 5);
  Number(source);
  ChangeCounter changes;
  changes.Attach(source);
  TByteMatrix dest;
  dest.Assign(source);
  EXPECT_EQ(changes.count, 0);
  ASSERT_EQ(dest.NrOfColumns(), 3);
  ASSERT_EQ(dest.NrOfRows(), 5);
  EXPECT_EQ(dest.GetByte(3, 5), 3 * 16 + 5);
  dest.SetByte(1, 1, 9);  // fires the handler it took over, with itself as sender
  EXPECT_EQ(changes.count, 1);
  EXPECT_EQ(changes.sender, &dest);
  EXPECT_EQ(source.GetByte(1, 1), 1 * 16 + 1);

  TBitFld bits;
  EXPECT_THROW(dest.Assign(bits), EConvertError);
  EXPECT_EQ(dest.GetByte(1, 1), 9);
}

TEST(TByteMatrixTest, ImpossibleSizeRaisesUnitError) {
  TByteMatrix m;
  m.SetName(u"Grid");
  m.Resize(2, 2);
  m.Fill(7);
  const int huge = std::numeric_limits<int>::max();
  try {
    m.Resize(huge, huge);
    FAIL() << "no exception";
  } catch (const EZYNDStructError& e) {
    EXPECT_EQ(e.Message(), u"Component \"Grid\": not enough memory on heap");
  }
  EXPECT_EQ(m.NrOfColumns(), 2);
  EXPECT_EQ(m.GetByte(2, 2), 7);
}

}  // namespace
}  // namespace Zyn_dstruct
