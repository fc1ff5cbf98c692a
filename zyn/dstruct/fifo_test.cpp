#include "zyn/dstruct/fifo.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <deque>
#include <string>

namespace Zyn_dstruct {
namespace {

// Puts, forces, takes, puts back and looks ahead at random, against a deque
// of at most Size - 1 bytes. Small sizes make the pointers wrap often; size 1
// holds nothing, and 256 is a new ring as it comes.
TEST(TFifoTest, AgreesWithBoundedQueue) {
  for (int size : {1, 2, 3, 5, 256}) {
    SCOPED_TRACE("Size " + std::to_string(size));
    TFifo fifo;
    fifo.SetSize(size);
    std::deque<std::uint8_t> ref;
    const std::size_t capacity = static_cast<std::size_t>(size) - 1;
    unsigned seed = 99;
    for (int step = 0; step < 5000; ++step) {
      seed = seed * 1103515245u + 12345u;
      const auto value = static_cast<std::uint8_t>(seed >> 24);
      const bool full = ref.size() == capacity;
      std::uint8_t got = 0x42;
      switch ((seed >> 16) % (step < 1000 ? 2 : 4)) {  // fill up first
        case 0:
          ASSERT_EQ(fifo.PutByte(value), !full);
          if (!full) ref.push_back(value);
          break;
        case 1:
          ASSERT_EQ(fifo.ForceByte(value), full);  // drops the oldest
          if (full && !ref.empty()) ref.pop_front();
          if (capacity > 0) ref.push_back(value);
          break;
        case 2:
          ASSERT_EQ(fifo.GetByte(got), !ref.empty());
          ASSERT_EQ(got, ref.empty() ? 0x42 : ref.front());
          if (ref.empty()) break;
          ref.pop_front();
          if (value & 1) {  // taken just now, so there is room to put it back
            ASSERT_TRUE(fifo.LoadBack(got));
            ref.push_front(got);
          }
          break;
        case 3:
          ASSERT_FALSE(fifo.SenseByte(-1, got));
          for (std::size_t ix = 0; ix <= ref.size(); ++ix) {
            ASSERT_EQ(fifo.SenseByte(static_cast<int>(ix), got), ix < ref.size());
            ASSERT_EQ(got, ix < ref.size() ? ref[ix] : got);
          }
          break;
      }
      ASSERT_EQ(fifo.CountBytes(), static_cast<int>(ref.size()));
    }
  }
}

TEST(TFifoTest, SizeChanges) {
  TFifo fifo;
  fifo.SetSize(0);
  EXPECT_EQ(fifo.Size(), 256);
  fifo.SetSize(8);
  fifo.PutByte(1);
  fifo.PutByte(2);
  fifo.SetSize(100);  // growing keeps what is held in place
  EXPECT_EQ(fifo.CountBytes(), 2);
  for (int i = 0; i < 50; ++i) fifo.PutByte(static_cast<std::uint8_t>(i));
  fifo.SetSize(10);  // shrinking below the pointers empties the ring
  EXPECT_EQ(fifo.CountBytes(), 0);
  for (int i = 0; i < 9; ++i) EXPECT_TRUE(fifo.PutByte(static_cast<std::uint8_t>(i)));
  EXPECT_FALSE(fifo.PutByte(9));
  fifo.Clear();
  EXPECT_EQ(fifo.CountBytes(), 0);
}

}  // namespace
}  // namespace Zyn_dstruct
