#include <gtest/gtest.h>

#include <string>

#include "FieldFile.h"
#include "ThrownMessage.h"
#include "store_ElementLibrary.h"

class FieldSubset : public FieldFile {
 protected:
  // S at the integration points of both hexahedra: components 11, 22, 33 hold the point's x, y,
  // z, a field linear in the natural coordinates; the rest 0.
  odb_FieldOutput& LinearStress() {
    odb_FieldOutput& s = m_frame.FieldOutput("S", "stress", odb_Enum::TENSOR_3D_FULL);
    odb_SequenceSequenceFloat rows;
    for (int e = 0; e < 2; ++e)
      for (const auto& p : store_FindElementClass("C3D8")->integrationPointCoordinates)
        rows.append(Points({{float(e + (p[0] + 1) / 2), float((p[1] + 1) / 2),
                             float((p[2] + 1) / 2), 0, 0, 0}})[0]);
    s.addData(odb_Enum::INTEGRATION_POINT, *m_instance, Ints({1, 2}), rows);
    return s;
  }
};

TEST_F(FieldSubset, ExtrapolationReproducesALinearFieldAtNodesAndCentroids) {
  odb_FieldOutput s = LinearStress();
  s.addData(odb_Enum::INTEGRATION_POINT, *m_instance, Ints({4}),
            Table(store_FindElementClass("S4R")->integrationPoints, 6));
  const odb_FieldOutput nodal = s.getSubset(odb_Enum::ELEMENT_NODAL);
  ASSERT_EQ(nodal.values().size(), 16);
  for (int i = 0; i < 16; ++i) {
    const odb_FieldValue v = nodal.values()[i];
    const int n = v.nodeLabel() - 1;  // label = 1 + x + 3y + 6z
    EXPECT_NEAR(v.data()[0], n % 3, 1e-5) << i;
    EXPECT_NEAR(v.data()[1], n / 3 % 2, 1e-5) << i;
    EXPECT_NEAR(v.data()[2], n / 6, 1e-5) << i;
  }
  const std::string lines = TakeWarnings();
  EXPECT_NE(lines.find("The field contains unsupported elements."), std::string::npos);
  EXPECT_NE(lines.find("Odb Field Extrapolation: label:S; description:stress; locationIndex =1"),
            std::string::npos);
  EXPECT_NE(lines.find("CPU time:"), std::string::npos);
  const odb_FieldOutput centroid = s.getSubset(odb_Enum::CENTROID);
  ASSERT_EQ(centroid.values().size(), 2);
  EXPECT_NEAR(centroid.values()[1].data()[0], 1.5, 1e-5);
  EXPECT_EQ(centroid.getSubset(odb_Enum::ELEMENT_NODAL).values().size(), 0);  // an orphan
  EXPECT_TRUE(centroid.IsOrphan());
  EXPECT_EQ(MessageOf([&] { centroid.getSubset(odb_Enum::CENTROID).addData(s); }),
            "addData() not valid for an orphaned object.");
}

TEST_F(FieldSubset, PositionsThatAreNotReadAreRefused) {
  odb_FieldOutput s = LinearStress();
  EXPECT_EQ(MessageOf([&] { s.getSubset(odb_Enum::WHOLE_REGION); }),
            "WHOLE_REGION data are not read.");
  EXPECT_EQ(MessageOf([&] { s.getSubset(odb_Enum::WHOLE_PART_INSTANCE); }),
            "WHOLE_PART_INSTANCE data are not read.");
  EXPECT_EQ(MessageOf([&] { s.getSubset(odb_Enum::WHOLE_MODEL); }),
            "WHOLE_MODEL data are not read.");
  EXPECT_EQ(MessageOf([&] { s.getSubset(odb_Enum::GENERAL_PARTICLE); }),
            "GENERAL_PARTICLE data are not read.");
  EXPECT_EQ(MessageOf([&] { s.getSubset(odb_Enum::ELEMENT_FACE); }),
            "Results at unknown location not read.");
}

TEST_F(FieldSubset, RegionsElementsNodesAndSectionPointsSelectValues) {
  odb_FieldOutput s = LinearStress();
  s.addData(odb_Enum::CENTROID, *m_instance, Ints({4, 5}), Table(2, 6), odb_SectionPoint(2, "Top"));
  odb_FieldOutput u = m_frame.VectorOutput("U", "", 3);
  u.addData(odb_Enum::NODAL, *m_instance, Ints({1, 2, 3, 4}), Table(4, 3));
  EXPECT_EQ(s.getSubset(m_instance->ElementSet("E2", Ints({2, 5}))).values().size(), 9);
  EXPECT_EQ(u.getSubset(m_instance->NodeSet("N", Ints({4, 2, 12}))).values().size(), 2);
  const odb_FieldOutput one = s.getSubset(m_instance->getElementFromLabel(2));
  ASSERT_EQ(one.values().size(), 8);
  EXPECT_EQ(one.SubField()[0].getSubsetIndices()[0], 8);
  EXPECT_EQ(u.getSubset(m_instance->getNodeFromLabel(3)).values()[0].data()[0], 200.0f);
  EXPECT_EQ(s.getSubset(odb_SectionPoint(2, "Top")).values().size(), 2);
  EXPECT_EQ(s.getSubset(odb_FieldLocation(odb_Enum::CENTROID, odb_SectionPoint(2, "Top")))
                .values()
                .size(),
            2);
  EXPECT_EQ(s.getSubset(odb_String("S4R")).values().size(), 2);
  EXPECT_EQ(s.getSubset(odb_String("s4r")).values().size(), 0);
  EXPECT_EQ(s.getSubset(*m_instance).values().size(), 18);
  EXPECT_EQ(s.getSubset(odb_Enum::INTEGRATION_POINT).baseElementTypes().size(), 1);
}

TEST_F(FieldSubset, ScalarFieldsByInvariantOrComponentAndTheirRefusals) {
  odb_FieldOutput s = LinearStress();
  const odb_FieldOutput mises = s.getScalarField(odb_Enum::MISES);
  EXPECT_EQ(mises.type(), odb_Enum::SCALAR);
  EXPECT_FLOAT_EQ(mises.values()[3].data()[0], s.values()[3].mises());
  EXPECT_EQ(s.getScalarField("S22").values()[15].data()[0], s.values()[15].data()[1]);
  EXPECT_EQ(MessageOf([&] { s.getScalarField(odb_Enum::MAGNITUDE); }), "Invalid invariant");
  EXPECT_EQ(MessageOf([&] { s.getScalarField("U1"); }), "Field not found:");
}

TEST_F(FieldSubset, TransformedFieldsRotateVectorsAndTensors) {
  odb_FieldOutput u = m_frame.VectorOutput("U", "", 3);
  u.addData(odb_Enum::NODAL, *m_instance, Ints({1}), Points({{1, 2, 3}}));
  odb_FieldOutput s = m_frame.FieldOutput("S", "", odb_Enum::TENSOR_3D_FULL);
  s.addData(odb_Enum::CENTROID, *m_instance, Ints({1}), Points({{10, 20, 30, 5, 0, 0}}));
  const odb_SequenceSequenceFloat quarter = Points({{0, 1, 0}, {-1, 0, 0}, {0, 0, 1}});
  const odb_FieldValue v = u.getTransformedField(quarter).values()[0];
  EXPECT_FLOAT_EQ(v.data()[0], 2.0f);
  EXPECT_FLOAT_EQ(v.data()[1], -1.0f);
  const odb_FieldValue t = s.getTransformedField(quarter).values()[0];
  EXPECT_FLOAT_EQ(t.data()[0], 20.0f);
  EXPECT_FLOAT_EQ(t.data()[1], 10.0f);
  EXPECT_FLOAT_EQ(t.data()[3], -5.0f);
  odb_FieldOutput p = m_frame.FieldOutput("P", "", odb_Enum::SCALAR);
  EXPECT_EQ(MessageOf([&] { p.getTransformedField(quarter); }),
            "Transformation not allowed for scalar, vector or matrix data.");
}

TEST_F(FieldSubset, CopyingAFieldChecksTheTargetDatabase) {
  odb_FieldOutput s = LinearStress();
  s.addData(odb_Enum::CENTROID, *m_instance, Ints({5}), Table(1, 6), odb_SectionPoint(2, "Top"));
  odb_FieldOutput& copy = m_frame.FieldOutput(s, "S2", "copy");
  EXPECT_EQ(copy.values().size(), s.values().size());
  EXPECT_EQ(MessageOf([&] { m_frame.VectorOutput("U", "", 3).addData(s); }),
            "Fields are not compatible. They are either associated with different structural "
            "models or have incompatible attributes.");

  // Targets that lack, in turn, the instance, element 2, element 1 as a C3D8, and section point 2.
  struct Target {
    const char* instance;
    bool element2;
    const char* type1;
    int points;
    std::string message;
  } targets[] = {
      {"X-1", true, "C3D8", 2, "No Instance named \"B-1\" found in the target database."},
      {"B-1", false, "C3D8", 2, "No set named \"api_set 0\" found in the target database."},
      {"B-1", true, "C3D8R", 2,
       "No elements with type \"C3D8\" and sectionCategory \"\" in set \"api_set 0\" found in the "
       "target database."},
      {"B-1", true, "C3D8", 1,
       "No sectionPoint numbered \"2\" for element type \"S4R\" and sectionCategory \"SHELL\" in "
       "set \"api_set 1\" found in the target database."}};
  int n = 0;
  for (const Target& t : targets) {
    odb_Odb& other = Odb("", "", "", m_dir.file("t" + std::to_string(n++) + ".odb").c_str());
    odb_DiscretePart& part = other.DiscretePart("P", odb_Enum::THREE_D, odb_Enum::DEFORMABLE_BODY);
    part.addNodes(Ints({1, 2, 3, 4, 5, 7, 8, 9, 10, 11}), Points({{0, 0, 0},
                                                                  {1, 0, 0},
                                                                  {2, 0, 0},
                                                                  {0, 1, 0},
                                                                  {1, 1, 0},
                                                                  {0, 0, 1},
                                                                  {1, 0, 1},
                                                                  {2, 0, 1},
                                                                  {0, 1, 1},
                                                                  {1, 1, 1}}));
    part.addElements(Ints({1}), Rows({{1, 2, 5, 4, 7, 8, 11, 10}}), t.type1);
    if (t.element2) part.addElements(Ints({2}), Rows({{1, 2, 5, 4, 7, 8, 11, 10}}), "C3D8");
    odb_SectionCategory& shell = other.SectionCategory("SHELL", "");
    for (int p = 1; p <= t.points; ++p) shell.SectionPoint(p, "");
    part.addElements(Ints({5}), Rows({{2, 3, 9, 8}}), "S4R", "", shell);
    other.rootAssembly().Instance(t.instance, part);
    odb_Frame frame = other.Step("A", "", odb_Enum::TIME, 1.0, "", "", 0.0).Frame(1, 1.0, "");
    odb_FieldOutput& target = frame.FieldOutput("S", "", odb_Enum::TENSOR_3D_FULL);
    EXPECT_EQ(MessageOf([&] { target.addData(s); }), t.message);
    closeOdb(other);
  }
}
