#include "odb_SectionCategory.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "ModelFile.h"
#include "odb_SectionCategoryData.h"
#include "odb_SectionCategoryRepository.h"
#include "odb_SectionPoint.h"

namespace {

using SectionCategoryFile = ModelFile;

std::vector<int> Numbers(const odb_SectionCategory& category) {
  std::vector<int> numbers;
  const odb_SequenceSectionPoint points = category.sectionPoints();
  for (int i = 0; i < points.size(); ++i) numbers.push_back(points[i].number());
  return numbers;
}

}  // namespace

TEST(SectionCategoryPoint, DefaultIsNoPointAndEqualityComparesNumberAndDescription) {
  const odb_SectionPoint none;
  EXPECT_EQ(none.number(), -1);
  EXPECT_EQ(none.description(), "");
  EXPECT_EQ(odb_SectionPoint(1, "Top"), odb_SectionPoint(1, "Top"));
  EXPECT_NE(odb_SectionPoint(1, "Top"), odb_SectionPoint(2, "Top"));
  EXPECT_NE(odb_SectionPoint(1, "Top"), odb_SectionPoint(1, "Bottom"));
}

TEST_F(SectionCategoryFile, FactoryReturnsTheHeldCategoryForANameItHolds) {
  odb_SectionCategory first = m_categories.SectionCategory("shell < STEEL >", "Shell of steel");
  const odb_SectionCategory again = m_categories.SectionCategory("shell < STEEL >", "other");
  EXPECT_EQ(again.description(), "Shell of steel");
  EXPECT_EQ(m_categories.size(), 1);
  // Both handles share one category: a point added through one is seen through the other.
  first.SectionPoint(1, "Bottom");
  EXPECT_TRUE(again.hasSectionPoint(1));
  EXPECT_EQ(MessageOf([&] { m_categories.SectionCategory("", "x"); }),
            "Invalid section category name.");
  EXPECT_EQ(MessageOf([] { odb_SectionCategoryRepository().SectionCategory("solid", ""); }),
            "The section category repository belongs to no database.");
}

TEST_F(SectionCategoryFile, SectionPointRefusesTakenAndNonPositiveNumbers) {
  odb_SectionCategory& shell = m_categories.SectionCategory("shell < STEEL >", "");
  shell.SectionPoint(3, "Top");
  EXPECT_EQ(MessageOf([&] { shell.SectionPoint(3, "again"); }),
            "Section point 3 already exists in section category \"shell < STEEL >\".");
  EXPECT_EQ(MessageOf([&] { shell.SectionPoint(0, ""); }),
            "Invalid section point number 0 in section category \"shell < STEEL >\": numbers "
            "start at 1.");
  EXPECT_EQ(MessageOf([&] { shell.SectionPoint(-1, ""); }),
            "Invalid section point number -1 in section category \"shell < STEEL >\": numbers "
            "start at 1.");
  EXPECT_EQ(Numbers(shell), std::vector<int>{3});
  EXPECT_EQ(shell.sectionPoints()[0].description(), "Top");
}

TEST_F(SectionCategoryFile, EmptyCategoryHasNoPointsAndRefusesThem) {
  odb_SectionCategory none;
  EXPECT_TRUE(none.isEmpty());
  EXPECT_EQ(none.name(), "");
  EXPECT_TRUE(none.sectionPoints().isEmpty());
  EXPECT_FALSE(none.hasSectionPoint(1));
  EXPECT_EQ(none, odb_SectionCategory());
  EXPECT_NE(none, m_categories.SectionCategory("solid < STEEL >", ""));
  EXPECT_EQ(MessageOf([&] { none.SectionPoint(1, ""); }),
            "The section category belongs to no database.");
}

TEST_F(SectionCategoryFile, PointsAreKeptInNumberOrder) {
  odb_SectionCategory& shell = m_categories.SectionCategory("shell", "");
  for (int number : {3, 1, 5, 2}) shell.SectionPoint(number, odb_String(number));
  EXPECT_EQ(Numbers(shell), (std::vector<int>{1, 2, 3, 5}));
  EXPECT_TRUE(shell.hasSectionPoint(5));
  EXPECT_FALSE(shell.hasSectionPoint(4));
  EXPECT_EQ(shell.sectionPoints()[3], odb_SectionPoint(5, "5"));
}

TEST_F(SectionCategoryFile, SavedCategoriesAndPointsReadBackIdentical) {
  odb_SectionCategory& shell = m_categories.SectionCategory("shell < STEEL >", "five points");
  for (int number : {5, 1, 3, 2, 4}) shell.SectionPoint(number, odb_String(number) + " of 5");
  m_categories.SectionCategory("solid < STEEL >", "");
  m_categories.SectionCategory("beam < ALU >", "circle").SectionPoint(1, "");

  odb_SectionCategoryRepository read = odb_SectionCategoryRepositoryAccess::Make(SaveAndReopen());
  odb_SectionCategoryRepositoryAccess::Load(read);
  odb_SectionCategoryRepositoryAccess::Load(read);  // a second read adds nothing
  ASSERT_EQ(read.size(), 3);
  for (odb_SectionCategoryRepositoryIT it(m_categories); !it.isDone(); it.next()) {
    const odb_SectionCategory& written = it.currentValue();
    const odb_SectionCategory& stored = read[written.name()];
    EXPECT_EQ(stored.description(), written.description()) << written.name().CStr();
    EXPECT_EQ(stored.sectionPoints(), written.sectionPoints()) << written.name().CStr();
  }
}

TEST_F(SectionCategoryFile, ReadOnlyDatabaseRefusesNewCategoriesAndPoints) {
  m_categories.SectionCategory("shell", "").SectionPoint(1, "Bottom");
  std::shared_ptr<store_Database> store = SaveAndReopen();
  odb_SectionCategoryRepository read = odb_SectionCategoryRepositoryAccess::Make(store);
  odb_SectionCategoryRepositoryAccess::Load(read);
  EXPECT_EQ(MessageOf([&] { read.SectionCategory("solid", ""); }), kReadOnly);
  EXPECT_EQ(MessageOf([&] { read["shell"].SectionPoint(2, "Top"); }), kReadOnly);
  // A name the file holds needs no write.
  EXPECT_EQ(read.SectionCategory("shell", "").sectionPoints().size(), 1);

  odb_SectionCategoryRepository again =
      odb_SectionCategoryRepositoryAccess::Make(store_Database::Open(m_path, true));
  odb_SectionCategoryRepositoryAccess::Load(again);
  EXPECT_EQ(again.size(), 1);
  EXPECT_FALSE(again["shell"].hasSectionPoint(2));
}
