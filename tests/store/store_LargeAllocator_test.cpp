#include "store_LargeAllocator.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

TEST(StoreLargeAllocator, FreedBlocksServeLaterRequestsOfAboutTheirSize) {
  store_ReleaseKeptLarge();
  const std::size_t mib = std::size_t(1) << 20;
  void* block = store_AllocateLarge(3 * mib);
  std::memset(block, 1, 3 * mib);
  store_FreeLarge(block);
  // The same rounded size (4 MiB) takes the kept block back, whole and usable.
  void* again = store_AllocateLarge(3 * mib + 4096);
  EXPECT_EQ(again, block);
  std::memset(again, 2, 3 * mib + 4096);
  store_FreeLarge(again);
  // A much smaller or a larger request does not: the first would waste most of the block.
  void* small = store_AllocateLarge(mib);
  void* large = store_AllocateLarge(8 * mib);
  EXPECT_NE(small, block);
  EXPECT_NE(large, block);
  store_FreeLarge(small);
  store_FreeLarge(large);
  void* smallAgain = store_AllocateLarge(mib - 4096);
  EXPECT_EQ(smallAgain, small) << "blocks under a huge page are kept too, in 64 KiB steps";
  store_FreeLarge(smallAgain);
  // Small blocks are plain memory, never kept.
  void* tiny = store_AllocateLarge(1000);
  store_FreeLarge(tiny);
  store_ReleaseKeptLarge();
}

}  // namespace
