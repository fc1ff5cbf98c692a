// Whole-field operations of TBitFld and TByteMatrix, which work a machine
// word at a time, beside the bit-by-bit (or cell-by-cell) loop a user would
// write with the element accessors, and std::bitset for counting.

#include "zyn/dstruct/bitfield.h"

#include <benchmark/benchmark.h>

#include <bitset>
#include <cstdint>
#include <memory>

#include "zyn/platform/random.h"

namespace {

using Zyn_dstruct::TBitFld;
using Zyn_dstruct::TByteMatrix;

constexpr int kBits = 1 << 20;  // the field has kBits + 1 bits
constexpr int kCols = 64;
constexpr int kRows = 4096;

void HalfFilled(TBitFld& f) {
  f.SetSize(kBits);
  zyn::platform::RandSeed = 42;
  f.RandomFill(50.0);
}

void SetBits(benchmark::State& state) { state.SetItemsProcessed(state.iterations() * (kBits + 1)); }

void BM_BitFld_Count_Words(benchmark::State& state) {
  TBitFld f;
  HalfFilled(f);
  for (auto _ : state) benchmark::DoNotOptimize(f.CountTrueBits());
  SetBits(state);
}

void BM_BitFld_Count_BitByBit(benchmark::State& state) {
  TBitFld f;
  HalfFilled(f);
  for (auto _ : state) {
    int n = 0;
    for (int i = 0; i <= f.Size(); ++i) n += f.GetBit(i);
    benchmark::DoNotOptimize(n);
  }
  SetBits(state);
}

void BM_BitFld_Count_StdBitset(benchmark::State& state) {
  TBitFld f;
  HalfFilled(f);
  auto bits = std::make_unique<std::bitset<kBits + 1>>();
  for (int i = 0; i <= kBits; ++i) bits->set(static_cast<std::size_t>(i), f.GetBit(i));
  for (auto _ : state) benchmark::DoNotOptimize(bits->count());
  SetBits(state);
}

void BM_BitFld_Combine_Words(benchmark::State& state) {
  TBitFld a, b;
  HalfFilled(a);
  HalfFilled(b);
  for (auto _ : state) {
    a.CombineWith(&b, Zyn_dstruct::loXORNot);
    benchmark::ClobberMemory();
  }
  SetBits(state);
}

void BM_BitFld_Combine_BitByBit(benchmark::State& state) {
  TBitFld a, b;
  HalfFilled(a);
  HalfFilled(b);
  for (auto _ : state) {
    for (int i = 0; i <= a.Size(); ++i) a.SetBit(i, a.GetBit(i) != !b.GetBit(i));
    benchmark::ClobberMemory();
  }
  SetBits(state);
}

void BM_BitFld_Invert_Words(benchmark::State& state) {
  TBitFld f;
  HalfFilled(f);
  for (auto _ : state) {
    f.Invert();
    benchmark::ClobberMemory();
  }
  SetBits(state);
}

void BM_BitFld_Invert_BitByBit(benchmark::State& state) {
  TBitFld f;
  HalfFilled(f);
  for (auto _ : state) {
    for (int i = 0; i <= f.Size(); ++i) f.ToggleBit(i);
    benchmark::ClobberMemory();
  }
  SetBits(state);
}

void BM_BitFld_Clear_Words(benchmark::State& state) {
  TBitFld f;
  HalfFilled(f);
  for (auto _ : state) {
    f.Clear();
    benchmark::ClobberMemory();
  }
  SetBits(state);
}

void BM_BitFld_Clear_BitByBit(benchmark::State& state) {
  TBitFld f;
  HalfFilled(f);
  for (auto _ : state) {
    for (int i = 0; i <= f.Size(); ++i) f.SetBit(i, false);
    benchmark::ClobberMemory();
  }
  SetBits(state);
}

void Numbered(TByteMatrix& m) {
  m.Resize(kCols, kRows);
  for (int c = 1; c <= kCols; ++c) {
    for (int r = 1; r <= kRows; ++r) m.SetByte(c, r, static_cast<std::uint8_t>(c * 7 + r));
  }
}

void SetCells(benchmark::State& state) {
  state.SetBytesProcessed(state.iterations() * kCols * kRows);
}

void BM_ByteMatrix_MirrorRows_Words(benchmark::State& state) {
  TByteMatrix m;
  Numbered(m);
  for (auto _ : state) {
    m.MirrorRows();
    benchmark::ClobberMemory();
  }
  SetCells(state);
}

void BM_ByteMatrix_MirrorRows_CellByCell(benchmark::State& state) {
  TByteMatrix m;
  Numbered(m);
  for (auto _ : state) {
    for (int c = 1; c <= kCols; ++c) {
      for (int lo = 1, hi = kRows; lo < hi; ++lo, --hi) {
        const std::uint8_t x = m.GetByte(c, lo);
        m.SetByte(c, lo, m.GetByte(c, hi));
        m.SetByte(c, hi, x);
      }
    }
    benchmark::ClobberMemory();
  }
  SetCells(state);
}

void BM_ByteMatrix_MirrorColumns_Words(benchmark::State& state) {
  TByteMatrix m;
  Numbered(m);
  for (auto _ : state) {
    m.MirrorColumns();
    benchmark::ClobberMemory();
  }
  SetCells(state);
}

void BM_ByteMatrix_MirrorColumns_CellByCell(benchmark::State& state) {
  TByteMatrix m;
  Numbered(m);
  for (auto _ : state) {
    for (int lo = 1, hi = kCols; lo < hi; ++lo, --hi) {
      for (int r = 1; r <= kRows; ++r) {
        const std::uint8_t x = m.GetByte(lo, r);
        m.SetByte(lo, r, m.GetByte(hi, r));
        m.SetByte(hi, r, x);
      }
    }
    benchmark::ClobberMemory();
  }
  SetCells(state);
}

void BM_ByteMatrix_Fill_Words(benchmark::State& state) {
  TByteMatrix m;
  Numbered(m);
  for (auto _ : state) {
    m.Fill(0x5A);
    benchmark::ClobberMemory();
  }
  SetCells(state);
}

void BM_ByteMatrix_Fill_CellByCell(benchmark::State& state) {
  TByteMatrix m;
  Numbered(m);
  for (auto _ : state) {
    for (int c = 1; c <= kCols; ++c) {
      for (int r = 1; r <= kRows; ++r) m.SetByte(c, r, 0x5A);
    }
    benchmark::ClobberMemory();
  }
  SetCells(state);
}

void BM_ByteMatrix_Combine_Words(benchmark::State& state) {
  TByteMatrix a, b;
  Numbered(a);
  Numbered(b);
  for (auto _ : state) {
    a.CombineWith(&b, Zyn_dstruct::loXOR);
    benchmark::ClobberMemory();
  }
  SetCells(state);
}

void BM_ByteMatrix_Combine_CellByCell(benchmark::State& state) {
  TByteMatrix a, b;
  Numbered(a);
  Numbered(b);
  for (auto _ : state) {
    for (int c = 1; c <= kCols; ++c) {
      for (int r = 1; r <= kRows; ++r) {
        a.SetByte(c, r, static_cast<std::uint8_t>(a.GetByte(c, r) ^ b.GetByte(c, r)));
      }
    }
    benchmark::ClobberMemory();
  }
  SetCells(state);
}

BENCHMARK(BM_BitFld_Count_Words);
BENCHMARK(BM_BitFld_Count_BitByBit);
BENCHMARK(BM_BitFld_Count_StdBitset);
BENCHMARK(BM_BitFld_Combine_Words);
BENCHMARK(BM_BitFld_Combine_BitByBit);
BENCHMARK(BM_BitFld_Invert_Words);
BENCHMARK(BM_BitFld_Invert_BitByBit);
BENCHMARK(BM_BitFld_Clear_Words);
BENCHMARK(BM_BitFld_Clear_BitByBit);
BENCHMARK(BM_ByteMatrix_MirrorRows_Words);
BENCHMARK(BM_ByteMatrix_MirrorRows_CellByCell);
BENCHMARK(BM_ByteMatrix_MirrorColumns_Words);
BENCHMARK(BM_ByteMatrix_MirrorColumns_CellByCell);
BENCHMARK(BM_ByteMatrix_Fill_Words);
BENCHMARK(BM_ByteMatrix_Fill_CellByCell);
BENCHMARK(BM_ByteMatrix_Combine_Words);
BENCHMARK(BM_ByteMatrix_Combine_CellByCell);

}  // namespace

BENCHMARK_MAIN();
