#include "cow_Btree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace {

using Tree = cow_Btree<odb_String, int>;
using Node = Tree::Node;

std::vector<std::string> Forward(const Tree& tree) {
  std::vector<std::string> keys;
  cow_BtreeIterator<odb_String, int> it(tree);
  for (it.First(); !it.IsDone(); it.Next()) keys.push_back(it.Current()->key.CStr());
  return keys;
}

std::vector<std::string> Backward(const Tree& tree) {
  std::vector<std::string> keys;
  cow_BtreeIterator<odb_String, int> it(tree);
  for (it.Last(); !it.IsDone(); it.Previous()) keys.push_back(it.Current()->key.CStr());
  return keys;
}

// Checks the stored heights; returns the subtree's height.
int CheckHeights(const Node* node) {
  if (!node) return 0;
  int l = CheckHeights(node->left.ConstGet()), r = CheckHeights(node->right.ConstGet());
  bool leaf = !node->left.HasObject() && !node->right.HasObject();
  EXPECT_EQ(node->height, leaf ? 0 : 1 + std::max(l, r)) << node->key.CStr();
  return node->height;
}

TEST(CowBtree, IteratesInByteOrderOfKeys) {
  Tree tree;
  for (const char* key : {"b", "a", "c", "Step-2", "Step-10", "ab", "B"}) tree.Insert(key, 0);
  std::vector<std::string> expected{"B", "Step-10", "Step-2", "a", "ab", "b", "c"};
  EXPECT_EQ(Forward(tree), expected);
  std::reverse(expected.begin(), expected.end());
  EXPECT_EQ(Backward(tree), expected);
}

TEST(CowBtree, SecondInsertOfKeyIsRefusedAndKeepsFirstValue) {
  Tree tree;
  EXPECT_TRUE(tree.Insert("k", 1));
  EXPECT_FALSE(tree.Insert("k", 2));
  EXPECT_EQ(tree.Size(), 1);
  EXPECT_EQ(tree.ConstFind("k")->value, 1);
}

TEST(CowBtree, AscendingKeysRotateTheRoot) {
  Tree tree;
  std::vector<std::string> roots;
  for (const char* key : {"1", "2", "3", "4", "5", "6", "7"}) {
    tree.Insert(key, 0);
    roots.push_back(tree.Root()->key.CStr());
  }
  EXPECT_EQ(tree.Size(), 7);
  // A missing child weighs as much as a leaf, so the fourth and fifth keys rotate the root and
  // the tree ends one level deeper than a textbook balance would leave it.
  EXPECT_EQ(roots, (std::vector<std::string>{"1", "1", "1", "2", "3", "3", "3"}));
  for (const char* key : {"1", "2", "3", "4", "5", "6", "7"})
    EXPECT_NE(tree.ConstFind(key), nullptr);
  EXPECT_EQ(CheckHeights(tree.Root().ConstGet()), 3);
}

TEST(CowBtree, AgreesWithReferenceMapAndStaysBalanced) {
  Tree tree;
  std::map<std::string, int> reference;
  std::mt19937 random(11);
  for (int step = 0; step < 4000; ++step) {
    std::string key = "name" + std::to_string(random() % 500);
    if (random() % 3 == 0) {
      ASSERT_EQ(tree.Remove(key.c_str()), reference.erase(key) == 1);
    } else {
      ASSERT_EQ(tree.Insert(key.c_str(), step), reference.emplace(key, step).second);
    }
  }
  EXPECT_EQ(tree.Size(), static_cast<int>(reference.size()));
  std::vector<std::string> expected;
  for (const auto& [key, value] : reference) {
    expected.push_back(key);
    EXPECT_EQ(tree.ConstFind(key.c_str())->value, value);
  }
  EXPECT_EQ(Forward(tree), expected);
  // Single rotations leave zig-zags unbalanced, but the tree must stay shallow.
  EXPECT_LE(CheckHeights(tree.Root().ConstGet()), 3 * std::log2(reference.size() + 1.0));
}

TEST(CowBtree, RemovalNeverMovesOtherValues) {
  Tree tree;
  for (int i = 0; i < 64; ++i) tree.Insert(odb_String(i), i);
  std::map<int, const int*> addresses;
  for (int i = 0; i < 64; ++i) addresses[i] = &tree.Find(odb_String(i))->value;
  for (int i = 0; i < 64; i += 3) {
    tree.Remove(odb_String(i));
    addresses.erase(i);
    for (const auto& [key, address] : addresses)
      ASSERT_EQ(&tree.ConstFind(odb_String(key))->value, address);
  }
}

TEST(CowBtree, CopyIsUnaffectedByWritesToTheOriginal) {
  Tree tree;
  for (int i = 0; i < 20; ++i) tree.Insert(odb_String(i), i);
  Tree copy = tree.Copy();
  tree.Insert("new", 1);
  tree.Find(odb_String(5))->value = 50;
  tree.Remove(odb_String(7));
  EXPECT_EQ(copy.Size(), 20);
  EXPECT_EQ(copy.ConstFind(odb_String(5))->value, 5);
  EXPECT_NE(copy.ConstFind(odb_String(7)), nullptr);
  EXPECT_EQ(copy.ConstFind("new"), nullptr);
  EXPECT_EQ(tree.ConstFind(odb_String(5))->value, 50);
  EXPECT_EQ(tree.Find("absent"), nullptr);
}

}  // namespace
