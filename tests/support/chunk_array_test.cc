#include "support/chunk_array.h"

#include <gtest/gtest.h>

TEST(ChunkArrayTest, HighTracksTheHighestAccess) {
  ChunkArray<int> c(1000, false);
  EXPECT_EQ(c.high, -1);
  c.chunk_at(5);
  EXPECT_EQ(c.high, 5);
  c.chunk_at(3);
  EXPECT_EQ(c.high, 5);
  EXPECT_EQ(c.next, nullptr);
}

TEST(ChunkArrayTest, FarAccessMakesEveryChunkBetween) {
  ChunkArray<int> c(1000, false);
  int* slot = c.chunk_at(2500);
  *slot = 42;
  ASSERT_NE(c.next, nullptr);
  ASSERT_NE(c.next->next, nullptr);
  EXPECT_EQ(c.next->next->next, nullptr);
  EXPECT_EQ(c.high, 999);
  EXPECT_EQ(c.next->high, 999);
  EXPECT_EQ(c.next->next->high, 500);
  EXPECT_EQ(c.next->base, 1000);
  EXPECT_EQ(c.next->next->base, 2000);
  EXPECT_EQ(slot, &c.next->next->slots[500]);
  // Growth never moves a slot.
  int* early = c.chunk_at(7);
  c.chunk_at(9000);
  EXPECT_EQ(c.chunk_at(7), early);
  EXPECT_EQ(*c.chunk_at(2500), 42);
}

TEST(ChunkArrayTest, ZeroedFlavourReadsZeroInEveryChunk) {
  ChunkArray<void*> c(200, true);
  *c.chunk_at(3) = &c;
  for (int i = 0; i < 1000; ++i) {
    if (i == 3) continue;
    ASSERT_EQ(*c.chunk_at(i), nullptr) << i;
  }
  EXPECT_EQ(*c.chunk_at(3), &c);
}
