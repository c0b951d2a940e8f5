#include "odb_Repository.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "ThrownMessage.h"
#include "odb_StepRepositoryBase.h"

namespace {

using Repository = odb_Repository<odb_String, int>;

TEST(Repository, AbsentNameThrowsWithNameBetweenTheTwoParts) {
  Repository empty;
  EXPECT_EQ(MessageOf([&] { empty.constGet("X"); }), "Key \"X\" not found in repository");
  Repository filled;
  filled.insert("A", 1);
  EXPECT_EQ(MessageOf([&] { filled["B"]; }), "Key \"B\" not found in repository");
  EXPECT_EQ(MessageOf([&] { filled.CheckKey("a"); }), "Key \"a\" not found in repository");
  EXPECT_EQ(filled["A"], 1);
}

TEST(Repository, IteratesByNameAndCopiesAreIndependent) {
  Repository parts;
  for (const char* name : {"PART-2", "Part-1", "PART-10"}) parts.insert(name, 0);
  Repository copy(parts);
  parts.insert("A", 5);
  parts.get("PART-2") = 2;
  EXPECT_FALSE(parts.insert("A", 6));
  std::vector<std::string> names;
  for (odb_RepositoryIterator<odb_String, int> it(copy); !it.isDone(); it.next())
    names.push_back(it.currentKey().CStr());
  EXPECT_EQ(names, (std::vector<std::string>{"PART-10", "PART-2", "Part-1"}));
  EXPECT_EQ(copy.size(), 3);
  EXPECT_EQ(copy.constGet("PART-2"), 0);
  EXPECT_EQ(parts.size(), 4);
  EXPECT_TRUE(parts.remove("A"));
  EXPECT_FALSE(parts.isMember("A"));
}

TEST(RepositoryOfSteps, KeepsInsertionOrderAndRefusesAbsentNames) {
  odb_StepRepositoryBase<int> steps;
  EXPECT_TRUE(steps.append("Step-2", 2));
  EXPECT_TRUE(steps.append("Step-1", 1));
  EXPECT_FALSE(steps.append("Step-2", 3));
  std::vector<std::string> order;
  odb_StepRepositoryIterator<int> it(steps);
  for (it.first(); !it.isDone(); it.next()) order.push_back(it.currentKey().CStr());
  EXPECT_EQ(order, (std::vector<std::string>{"Step-2", "Step-1"}));
  EXPECT_EQ(steps.constGet("Step-1"), 1);
  EXPECT_EQ(MessageOf([&] { steps.get("Step-3"); }), "No step named \"Step-3\" in StepContainer.");
  EXPECT_EQ(MessageOf([&] { steps.constGet("x"); }), "No step named \"x\" in StepContainer.");
  EXPECT_EQ(MessageOf([&] { it.currentValue(); }), "StepContainerIterator done.");
  EXPECT_EQ(MessageOf([&] { it.currentKey(); }), "StepContainerIterator done.");
}

}  // namespace
