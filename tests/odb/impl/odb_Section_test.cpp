#include "odb_Section.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <initializer_list>
#include <memory>
#include <string>

#include "ModelFile.h"
#include "odb_SectionData.h"
#include "odb_SectionRepository.h"
#include "store_Statement.h"

namespace {

using SectionFile = ModelFile;

odb_SequenceDouble Dimensions(std::initializer_list<double> values) {
  odb_SequenceDouble dimensions;
  for (double value : values) dimensions.append(value);
  return dimensions;
}

}  // namespace

TEST_F(SectionFile, CreatorsRefuseBadNamesAndValuesOfTheirKind) {
  m_sections.HomogeneousSolidSection("Solid", "STEEL");
  const odb_SequenceDouble rect = Dimensions({10.0, 20.0});
  const struct {
    std::function<void()> call;
    const char* message;
  } cases[] = {
      {[&] { m_sections.HomogeneousSolidSection("", "STEEL"); }, "Invalid section name."},
      {[&] { m_sections.HomogeneousShellSection("Solid", "STEEL", 1.0, 5); },
       "A section named \"Solid\" already exists."},
      {[&] { m_sections.BeamSection("Beam", "", "RECT", rect); },
       "Section \"Beam\" needs a material name."},
      {[&] { m_sections.HomogeneousShellSection("Shell", "STEEL", 0.0, 5); },
       "Invalid thickness 0 for section \"Shell\": it must be positive."},
      {[&] { m_sections.HomogeneousShellSection("Shell", "STEEL", NAN, 5); },
       "Invalid thickness nan for section \"Shell\": it must be positive."},
      {[&] { m_sections.HomogeneousShellSection("Shell", "STEEL", 1.0, 0); },
       "Invalid number of integration points 0 for section \"Shell\": at least 1 is needed."},
      {[&] { m_sections.BeamSection("Beam", "STEEL", "", rect); },
       "Beam section \"Beam\" needs a profile name."},
      {[&] { m_sections.BeamSection("Beam", "STEEL", "RECT", odb_SequenceDouble()); },
       "Beam section \"Beam\" needs the dimensions of its profile."},
      {[&] {
         m_sections.BeamSection("Beam", "STEEL", "RECT", Dimensions({1.0, INFINITY}));
       },
       "Invalid dimension inf for beam section \"Beam\": it must be a finite number."},
      {[] { odb_SectionRepository().HomogeneousSolidSection("Solid", "STEEL"); },
       "The section repository belongs to no database."},
  };
  for (const auto& c : cases) EXPECT_EQ(MessageOf(c.call), c.message);
  EXPECT_EQ(m_sections.size(), 1);
}

TEST_F(SectionFile, EachKindKeepsItsOwnValuesAndNeutralOthers) {
  const odb_Section solid = m_sections.HomogeneousSolidSection("Solid", "STEEL");
  EXPECT_EQ(solid.kind(), odb_Section::HOMOGENEOUS_SOLID);
  EXPECT_EQ(solid.material(), "STEEL");
  EXPECT_EQ(solid.thickness(), 0.0);
  EXPECT_EQ(solid.integrationPoints(), 0);
  EXPECT_TRUE(solid.dimensions().isEmpty());
  const odb_Section shell = m_sections.HomogeneousShellSection("Shell", "ALU", 2.5, 5);
  EXPECT_EQ(shell.kind(), odb_Section::HOMOGENEOUS_SHELL);
  EXPECT_EQ(shell.thickness(), 2.5);
  EXPECT_EQ(shell.integrationPoints(), 5);
  EXPECT_EQ(shell.profile(), "");
  const odb_Section beam = m_sections.BeamSection("Beam", "STEEL", "CIRC", Dimensions({4.0}));
  EXPECT_EQ(beam.kind(), odb_Section::BEAM);
  EXPECT_EQ(beam.profile(), "CIRC");
  EXPECT_EQ(beam.dimensions(), Dimensions({4.0}));
  EXPECT_EQ(beam.thickness(), 0.0);
  EXPECT_TRUE(odb_Section().isEmpty());
}

TEST_F(SectionFile, SavedSectionsReadBackIdentical) {
  m_sections.HomogeneousSolidSection("Solid", "STEEL");
  m_sections.HomogeneousShellSection("Shell", "ALU", 0.1, 7);
  m_sections.BeamSection("Rect", "STEEL", "RECT", Dimensions({10.0, -0.0, 1e-300}));
  m_sections.BeamSection("Pipe", "STEEL", "PIPE", Dimensions({5.0, 0.5}));

  odb_SectionRepository read = odb_SectionRepositoryAccess::Make(SaveAndReopen());
  odb_SectionRepositoryAccess::Load(read);
  odb_SectionRepositoryAccess::Load(read);  // a second read adds nothing
  ASSERT_EQ(read.size(), 4);
  for (odb_SectionRepositoryIT it(m_sections); !it.isDone(); it.next()) {
    const odb_Section& written = it.currentValue();
    const odb_Section& stored = read[written.name()];
    SCOPED_TRACE(written.name().CStr());
    EXPECT_EQ(stored.kind(), written.kind());
    EXPECT_EQ(stored.material(), written.material());
    EXPECT_EQ(stored.thickness(), written.thickness());
    EXPECT_EQ(stored.integrationPoints(), written.integrationPoints());
    EXPECT_EQ(stored.profile(), written.profile());
    EXPECT_EQ(stored.dimensions(), written.dimensions());
  }
  EXPECT_TRUE(std::signbit(read["Rect"].dimensions()[1]));
}

TEST_F(SectionFile, FileHoldsDimensionsLittleEndianAndUnusedValuesAsNull) {
  m_sections.HomogeneousSolidSection("Solid", "STEEL");
  m_sections.BeamSection("Beam", "STEEL", "RECT", Dimensions({1.0, -2.0}));
  store_Statement q = m_store->Sql(
      "SELECT name, kind, thickness IS NULL, integration_points IS NULL, "
      "CASE WHEN dimensions IS NULL THEN 'NULL' ELSE hex(dimensions) END FROM section ORDER BY "
      "name");
  ASSERT_TRUE(q.Step());
  EXPECT_EQ(q.Text(0), "Beam");
  EXPECT_EQ(q.Int(1), 2);
  EXPECT_EQ(q.Int(2) + q.Int(3), 2);
  EXPECT_EQ(q.Text(4), "000000000000F03F00000000000000C0");
  ASSERT_TRUE(q.Step());
  EXPECT_EQ(q.Int(1), 0);
  EXPECT_EQ(q.Text(4), "NULL");
}

TEST_F(SectionFile, DamagedDimensionsAreRefusedOnLoad) {
  m_sections.BeamSection("Beam", "STEEL", "RECT", Dimensions({1.0}));
  m_store->Sql("UPDATE section SET dimensions = x'00000000000000' WHERE name = 'Beam'").Run();
  odb_SectionRepository read = odb_SectionRepositoryAccess::Make(SaveAndReopen());
  EXPECT_EQ(MessageOf([&] { odb_SectionRepositoryAccess::Load(read); }),
            "The stored dimensions of section \"Beam\" are damaged.");
}

TEST_F(SectionFile, ReadOnlyDatabaseRefusesNewSections) {
  m_sections.HomogeneousSolidSection("Solid", "STEEL");
  odb_SectionRepository read = odb_SectionRepositoryAccess::Make(SaveAndReopen());
  odb_SectionRepositoryAccess::Load(read);
  EXPECT_EQ(MessageOf([&] { read.HomogeneousShellSection("Shell", "STEEL", 1.0, 5); }), kReadOnly);
  EXPECT_EQ(MessageOf([&] { read.BeamSection("Beam", "STEEL", "CIRC", Dimensions({1.0})); }),
            kReadOnly);

  odb_SectionRepository again =
      odb_SectionRepositoryAccess::Make(store_Database::Open(m_path, true));
  odb_SectionRepositoryAccess::Load(again);
  EXPECT_EQ(again.size(), 1);
}
