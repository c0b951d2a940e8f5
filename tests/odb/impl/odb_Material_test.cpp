#include "odb_Material.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>

#include "ModelFile.h"
#include "odb_MaterialData.h"
#include "odb_MaterialRepository.h"

namespace {

using MaterialFile = ModelFile;

}  // namespace

TEST_F(MaterialFile, FactoryRefusesEmptyAndTakenNames) {
  m_materials.Material("STEEL");
  EXPECT_EQ(MessageOf([&] { m_materials.Material("STEEL"); }),
            "A material named \"STEEL\" already exists.");
  EXPECT_EQ(MessageOf([&] { m_materials.Material(""); }), "Invalid material name.");
  EXPECT_EQ(MessageOf([] { odb_MaterialRepository().Material("STEEL"); }),
            "The material repository belongs to no database.");
  EXPECT_EQ(m_materials.size(), 1);
}

TEST_F(MaterialFile, PropertiesNotGivenRefuseTheirGetters) {
  const odb_Material steel = m_materials.Material("STEEL");
  EXPECT_FALSE(steel.hasElastic());
  EXPECT_FALSE(steel.hasDensity());
  EXPECT_EQ(MessageOf([&] { steel.youngsModulus(); }),
            "Material \"STEEL\" has no elastic behaviour.");
  EXPECT_EQ(MessageOf([&] { steel.poissonsRatio(); }),
            "Material \"STEEL\" has no elastic behaviour.");
  EXPECT_EQ(MessageOf([&] { steel.density(); }), "Material \"STEEL\" has no density.");
  odb_Material empty;
  EXPECT_EQ(MessageOf([&] { empty.setDensity(1.0); }), "The material belongs to no database.");
  EXPECT_EQ(MessageOf([&] { empty.setElastic(1.0, 0.3); }), "The material belongs to no database.");
}

TEST_F(MaterialFile, SettersRefuseValuesOutOfRangeAndKeepThePreviousOnes) {
  odb_Material& steel = m_materials.Material("STEEL");
  steel.setElastic(210000.0, 0.3);
  steel.setDensity(7.85e-9);
  const double nan = std::numeric_limits<double>::quiet_NaN();
  for (double modulus : {0.0, -1.0, HUGE_VAL, nan})
    EXPECT_EQ(MessageOf([&] { steel.setElastic(modulus, 0.3); }),
              "Invalid Young's modulus " + std::string(odb_String(modulus).CStr()) +
                  " for material \"STEEL\": it must be positive.");
  for (double ratio : {-1.0, 0.5, nan})
    EXPECT_EQ(MessageOf([&] { steel.setElastic(1.0, ratio); }),
              "Invalid Poisson's ratio " + std::string(odb_String(ratio).CStr()) +
                  " for material \"STEEL\": it must lie between -1 and 0.5.");
  EXPECT_EQ(MessageOf([&] { steel.setDensity(0.0); }),
            "Invalid density 0 for material \"STEEL\": it must be positive.");
  EXPECT_EQ(steel.youngsModulus(), 210000.0);
  EXPECT_EQ(steel.poissonsRatio(), 0.3);
  EXPECT_EQ(steel.density(), 7.85e-9);
  // Limits of the open range are accepted just inside.
  steel.setElastic(1.0, -0.999);
  steel.setElastic(1.0, 0.499);
  EXPECT_EQ(m_materials["STEEL"].poissonsRatio(), 0.499);
}

TEST_F(MaterialFile, SavedMaterialsReadBackWithWhatWasGiven) {
  odb_Material steel = m_materials.Material("STEEL");
  steel.setElastic(200000.0, 0.25);
  steel.setElastic(210000.0, 0.3);  // replaces the first
  steel.setDensity(7.85e-9);
  m_materials.Material("RUBBER").setElastic(5.0, 0.49);
  m_materials.Material("FOAM").setDensity(3.0e-11);
  m_materials.Material("VOID");

  odb_MaterialRepository read = odb_MaterialRepositoryAccess::Make(SaveAndReopen());
  odb_MaterialRepositoryAccess::Load(read);
  ASSERT_EQ(read.size(), 4);
  for (odb_MaterialRepositoryIT it(m_materials); !it.isDone(); it.next()) {
    const odb_Material& written = it.currentValue();
    const odb_Material& stored = read[written.name()];
    SCOPED_TRACE(written.name().CStr());
    ASSERT_EQ(stored.hasElastic(), written.hasElastic());
    ASSERT_EQ(stored.hasDensity(), written.hasDensity());
    if (written.hasElastic()) {
      EXPECT_EQ(stored.youngsModulus(), written.youngsModulus());
      EXPECT_EQ(stored.poissonsRatio(), written.poissonsRatio());
    }
    if (written.hasDensity()) EXPECT_EQ(stored.density(), written.density());
  }
  EXPECT_TRUE(read["RUBBER"].hasElastic());
  EXPECT_FALSE(read["RUBBER"].hasDensity());
  EXPECT_TRUE(read["FOAM"].hasDensity());
}

TEST_F(MaterialFile, ReadOnlyDatabaseRefusesNewMaterialsAndSetters) {
  m_materials.Material("STEEL").setDensity(7.85e-9);
  odb_MaterialRepository read = odb_MaterialRepositoryAccess::Make(SaveAndReopen());
  odb_MaterialRepositoryAccess::Load(read);
  EXPECT_EQ(MessageOf([&] { read.Material("ALU"); }), kReadOnly);
  EXPECT_EQ(MessageOf([&] { read["STEEL"].setDensity(1.0); }), kReadOnly);
  EXPECT_EQ(MessageOf([&] { read["STEEL"].setElastic(1.0, 0.3); }), kReadOnly);
  EXPECT_EQ(read["STEEL"].density(), 7.85e-9);

  odb_MaterialRepository again =
      odb_MaterialRepositoryAccess::Make(store_Database::Open(m_path, true));
  odb_MaterialRepositoryAccess::Load(again);
  EXPECT_EQ(again.size(), 1);
  EXPECT_EQ(again["STEEL"].density(), 7.85e-9);
  EXPECT_FALSE(again["STEEL"].hasElastic());
}
