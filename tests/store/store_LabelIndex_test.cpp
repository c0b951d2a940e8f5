#include "store_LabelIndex.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

// Builds an index and checks that every label finds its position and that absent ones do not.
void ExpectIndexes(const std::vector<int>& labels, const std::vector<int>& absent) {
  store_LabelIndex index;
  int duplicate = 0;
  ASSERT_TRUE(index.Build(labels.data(), static_cast<int>(labels.size()), duplicate));
  for (std::size_t i = 0; i < labels.size(); ++i) EXPECT_EQ(index.Find(labels[i]), int(i));
  for (int label : absent) EXPECT_EQ(index.Find(label), -1) << label;
}

// The labels 1..8 in each form of index: consecutive, direct table, hash.
const std::vector<std::vector<int>> kEveryForm = {
    {1, 2, 3, 4, 5, 6, 7, 8}, {8, 1, 3, 5, 7, 2, 4, 6}, {800000000, 1, 3, 5, 7, 2, 4, 6}};

store_LabelIndex Built(const std::vector<int>& labels) {
  store_LabelIndex index;
  int duplicate = 0;
  EXPECT_TRUE(index.Build(labels.data(), static_cast<int>(labels.size()), duplicate));
  return index;
}

}  // namespace

TEST(StoreLabelIndex, FindsConsecutiveDenseAndScatteredLabels) {
  ExpectIndexes({5, 6, 7, 8}, {4, 9, -2147483647 - 1, 2147483647});
  ExpectIndexes({10, 3, 7, 4}, {5, 2, 11});
  ExpectIndexes({2147483647, -2147483647 - 1, 0, 1000000, -7}, {1, -6, 999999});
  ExpectIndexes({}, {0});
}

TEST(StoreLabelIndex, ReportsTheFirstRepeatedLabelInEveryForm) {
  const std::vector<std::vector<int>> cases = {{3, 4, 3}, {100000000, 1, 100000000}};
  for (const std::vector<int>& labels : cases) {
    store_LabelIndex index;
    int duplicate = 0;
    EXPECT_FALSE(index.Build(labels.data(), static_cast<int>(labels.size()), duplicate));
    EXPECT_EQ(duplicate, labels[0]);
    EXPECT_EQ(index.Find(labels[1]), -1);
  }
}

TEST(StoreLabelIndex, FirstMissingFindsTheFirstUnindexedLabelInEveryForm) {
  for (const std::vector<int>& labels : kEveryForm) {
    const store_LabelIndex index = Built(labels);
    std::vector<int> probe(200, 3);
    EXPECT_EQ(index.FirstMissing(probe.data(), probe.size()), -1);
    probe[130] = 9;  // in the third run of 64
    probe[150] = 0;
    EXPECT_EQ(index.FirstMissing(probe.data(), probe.size()), 130) << labels[0];
    EXPECT_EQ(index.FirstMissing(probe.data(), 130), -1);
    probe[0] = -2147483647 - 1;
    EXPECT_EQ(index.FirstMissing(probe.data(), probe.size()), 0);
  }
}

TEST(StoreLabelIndex, FirstRepeatFindsTheFirstLabelMetTwiceInEveryForm) {
  for (const std::vector<int>& labels : kEveryForm) {
    const store_LabelIndex index = Built(labels);
    auto repeat = [&](std::vector<int> probe) {
      return index.FirstRepeat(probe.data(), probe.size());
    };
    EXPECT_EQ(repeat({}), -1);
    EXPECT_EQ(repeat({1, 3, 8}), -1) << labels[0];
    EXPECT_EQ(repeat({8, 1, 3, 5, 7, 2, 4, 6}), -1) << labels[0];
    EXPECT_EQ(repeat({2, 2}), 1) << "an equal neighbour ends the increasing run";
    EXPECT_EQ(repeat({5, 7, 1, 6, 7, 5}), 4) << labels[0];
    EXPECT_EQ(repeat({1, 9, 9, 0, 3}), -1) << "labels the index lacks are passed over";
    EXPECT_EQ(repeat({9, 9, 3, 3}), 3);
  }
}
