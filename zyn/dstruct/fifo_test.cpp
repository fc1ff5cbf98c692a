#include "zyn/dstruct/fifo.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <deque>
#include <string>

namespace Zyn_dstruct {
namespace {

TEST(TFifoTest, OneCellStaysFree) {
  for (int size : {1, 2, 3, 256}) {  // 256: a new ring as it comes
    SCOPED_TRACE("Size " + std::to_string(size));
    TFifo fifo;
    fifo.SetSize(size);
    EXPECT_EQ(fifo.Size(), size);
    for (int i = 0; i < size - 1; ++i) ASSERT_TRUE(fifo.PutByte(static_cast<std::uint8_t>(i)));
    EXPECT_FALSE(fifo.PutByte(0xEE));
    EXPECT_EQ(fifo.CountBytes(), size - 1);
    // A full ring drops its oldest byte to make room.
    EXPECT_TRUE(fifo.ForceByte(0xFF));
    EXPECT_EQ(fifo.CountBytes(), size - 1);
    std::uint8_t b = 0x55;
    if (size > 2) {
      ASSERT_TRUE(fifo.GetByte(b));
      EXPECT_EQ(b, 1);  // the second byte put in
    }
  }
}

TEST(TFifoTest, SizeOneHoldsNothing) {
  TFifo fifo;
  fifo.SetSize(1);
  std::uint8_t b = 0x42;
  EXPECT_FALSE(fifo.PutByte(1));
  EXPECT_TRUE(fifo.ForceByte(2));
  EXPECT_EQ(fifo.CountBytes(), 0);
  EXPECT_FALSE(fifo.GetByte(b));
  EXPECT_FALSE(fifo.SenseByte(0, b));
  EXPECT_EQ(b, 0x42);
}

TEST(TFifoTest, EmptyRingLeavesArgumentsUnchanged) {
  TFifo fifo;
  std::uint8_t b = 0x42;
  EXPECT_FALSE(fifo.GetByte(b));
  EXPECT_EQ(b, 0x42);
  fifo.PutByte(1);
  fifo.PutByte(2);
  for (int ix : {2, 3, -1, -1000}) {
    SCOPED_TRACE(ix);
    EXPECT_FALSE(fifo.SenseByte(ix, b));
    EXPECT_EQ(b, 0x42);
  }
}

// Puts, takes, forces, puts back and looks ahead at random, against a deque
// that holds at most Size - 1 bytes. Small sizes make the pointers wrap often.
TEST(TFifoTest, AgreesWithReferenceQueueAcrossWraps) {
  for (int size : {2, 3, 5, 16}) {
    SCOPED_TRACE("Size " + std::to_string(size));
    TFifo fifo;
    fifo.SetSize(size);
    std::deque<std::uint8_t> ref;
    const std::size_t capacity = static_cast<std::size_t>(size) - 1;
    unsigned seed = 99;
    for (int step = 0; step < 4000; ++step) {
      seed = seed * 1103515245u + 12345u;
      const auto value = static_cast<std::uint8_t>(seed >> 24);
      std::uint8_t got = 0;
      switch ((seed >> 16) % 5) {
        case 0:
          ASSERT_EQ(fifo.PutByte(value), ref.size() < capacity);
          if (ref.size() < capacity) ref.push_back(value);
          break;
        case 1: {
          const bool full = ref.size() == capacity;
          ASSERT_EQ(fifo.ForceByte(value), full);
          if (full) ref.pop_front();
          ref.push_back(value);
          break;
        }
        case 2:
          ASSERT_EQ(fifo.GetByte(got), !ref.empty());
          if (!ref.empty()) {
            ASSERT_EQ(got, ref.front());
            ref.pop_front();
            // Taken just now, so there is room to put it back.
            if (value & 1) {
              ASSERT_TRUE(fifo.LoadBack(got));
              ref.push_front(got);
            }
          }
          break;
        case 3:
          for (std::size_t ix = 0; ix <= ref.size(); ++ix) {
            ASSERT_EQ(fifo.SenseByte(static_cast<int>(ix), got), ix < ref.size());
            if (ix < ref.size()) {
              ASSERT_EQ(got, ref[ix]);
            }
          }
          break;
        case 4:
          ASSERT_EQ(fifo.CountBytes(), static_cast<int>(ref.size()));
          break;
      }
    }
  }
}

TEST(TFifoTest, ClearKeepsSizeAndEmpties) {
  TFifo fifo;
  fifo.SetSize(4);
  fifo.PutByte(1);
  fifo.PutByte(2);
  fifo.Clear();
  EXPECT_EQ(fifo.CountBytes(), 0);
  EXPECT_EQ(fifo.Size(), 4);
  EXPECT_TRUE(fifo.PutByte(3));
  std::uint8_t b = 0;
  EXPECT_TRUE(fifo.SenseByte(0, b));
  EXPECT_EQ(b, 3);
}

TEST(TFifoTest, SizeChanges) {
  TFifo fifo;
  fifo.SetSize(0);
  fifo.SetSize(-3);
  EXPECT_EQ(fifo.Size(), 256);
  // Growing keeps what is held in place.
  fifo.SetSize(8);
  fifo.PutByte(1);
  fifo.PutByte(2);
  fifo.SetSize(100);
  EXPECT_EQ(fifo.CountBytes(), 2);
  // Shrinking below where the pointers stand empties the ring.
  for (int i = 0; i < 50; ++i) fifo.PutByte(static_cast<std::uint8_t>(i));
  fifo.SetSize(10);
  EXPECT_EQ(fifo.CountBytes(), 0);
  for (int i = 0; i < 9; ++i) EXPECT_TRUE(fifo.PutByte(static_cast<std::uint8_t>(i)));
  EXPECT_FALSE(fifo.PutByte(9));
}

}  // namespace
}  // namespace Zyn_dstruct
