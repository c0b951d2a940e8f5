#include <gtest/gtest.h>

#include <cmath>

#include "MeshFile.h"
#include "store_ElementLibrary.h"

namespace {

const double kPi = 3.141592653589793;

// A part placed as instance "R-1", shifted by (10, 0, 0), and one frame. Unshifted: ring nodes
// 1..8 at radius 2 in the plane z = 0, node k at the angle 45 (k - 1) degrees; node 9 at
// (0, 1, 1); node 10 at the origin, 21 at (1, 0, 0), 22 at (0, 1, 0), 23 at (1, 1, 0); a C3D8
// cube (element 1, nodes 31..38) filling x 3..4, y 0..1, z 0..1; an S4R shell (element 2) on
// 10, 21, 23, 22.
class FieldOutputTransform : public MeshFile {
 protected:
  void SetUp() override {
    MeshFile::SetUp();
    odb_DiscretePart& part =
        m_odb->DiscretePart("RING", odb_Enum::THREE_D, odb_Enum::DEFORMABLE_BODY);
    odb_SequenceInt labels;
    odb_SequenceSequenceFloat points;
    for (int k = 1; k <= 8; ++k) {
      labels.append(k);
      points.append(Xyz(2 * std::cos(Angle(k)), 2 * std::sin(Angle(k)), 0));
    }
    const float cube[8][3] = {{3, 0, 0}, {4, 0, 0}, {4, 1, 0}, {3, 1, 0},
                              {3, 0, 1}, {4, 0, 1}, {4, 1, 1}, {3, 1, 1}};
    for (int k = 0; k < 8; ++k) {
      labels.append(31 + k);
      points.append(Xyz(cube[k][0], cube[k][1], cube[k][2]));
    }
    for (int label : {9, 10, 21, 22, 23}) labels.append(label);
    const odb_SequenceSequenceFloat more =
        Points({{0, 1, 1}, {0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {1, 1, 0}});
    for (int i = 0; i < more.size(); ++i) points.append(more[i]);
    part.addNodes(labels, points);
    part.addElements(Ints({1}), Rows({{31, 32, 33, 34, 35, 36, 37, 38}}), "C3D8");
    part.addElements(Ints({2}), Rows({{10, 21, 23, 22}}), "S4R");
    m_assembly = &m_odb->rootAssembly();
    m_instance = &m_assembly->Instance("R-1", part, Points({{10, 0, 0}}));
    m_frame = m_odb->Step("LOAD", "", odb_Enum::TIME, 1.0, "", "*STATIC", 0.0).Frame(1, 1.0, "");
  }

  static double Angle(int ringNode) { return (ringNode - 1) * kPi / 4; }
  static odb_SequenceFloat Xyz(double x, double y, double z) {
    return Points({{float(x), float(y), float(z)}})[0];
  }

  // A system of `type` at (10, 0, 0) on the global axes.
  const odb_DatumCsys& Global(const char* name, odb_Enum::odb_DatumCsysTypeEnum type) {
    return m_assembly->DatumCsys(name, type, Xyz(10, 0, 0), Xyz(1, 0, 0), Xyz(0, 1, 0));
  }

  // A NODAL VECTOR field of 3 components with one row per label.
  odb_FieldOutput& Nodal(const char* name, const odb_SequenceInt& labels,
                         const odb_SequenceSequenceFloat& rows, odb_Instance* instance = nullptr) {
    odb_FieldOutput& field = m_frame.VectorOutput(name, "", 3);
    field.addData(odb_Enum::NODAL, instance ? *instance : *m_instance, labels, rows);
    return field;
  }

  // The node labels of the whole part.
  static odb_SequenceInt AllNodes() {
    return Ints({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 21, 22, 23, 31, 32, 33, 34, 35, 36, 37, 38});
  }
  // Displacements: `moved` at the given nodes, zero at the others.
  odb_FieldOutput& Displacements(const char* name, std::initializer_list<int> nodes,
                                 std::initializer_list<odb_SequenceFloat> moved) {
    odb_SequenceSequenceFloat rows;
    const odb_SequenceInt all = AllNodes();
    for (int i = 0; i < all.size(); ++i) {
      odb_SequenceFloat row = Xyz(0, 0, 0);
      auto m = moved.begin();
      for (int node : nodes) {
        if (node == all[i]) row = *m;
        ++m;
      }
      rows.append(row);
    }
    return Nodal(name, all, rows);
  }

  static void Expect(const odb_SequenceFloat& got, std::initializer_list<double> want) {
    ASSERT_EQ(got.size(), static_cast<int>(want.size()));
    int c = 0;
    for (double w : want) EXPECT_NEAR(got[c++], w, 1e-5) << "component " << c;
  }

  odb_Assembly* m_assembly = nullptr;
  odb_Instance* m_instance = nullptr;
  odb_Frame m_frame;
};

}  // namespace

TEST_F(FieldOutputTransform, CylindricalAndSphericalSystemsGiveComponentsAtEachValue) {
  // At ring node k: 1 radial, 2 hoop, 5 axial, and a conjugate part of 3 radial.
  odb_SequenceInt ring;
  odb_SequenceSequenceFloat rows, conjugate;
  for (int k = 1; k <= 8; ++k) {
    const double c = std::cos(Angle(k)), s = std::sin(Angle(k));
    ring.append(k);
    rows.append(Xyz(c - 2 * s, s + 2 * c, 5));
    conjugate.append(Xyz(3 * c, 3 * s, 0));
  }
  odb_FieldOutput& u = m_frame.VectorOutput("U", "", 3);
  u.addData(odb_Enum::NODAL, *m_instance, ring, rows, odb_SectionPoint(),
            odb_SequenceSequenceFloat(), conjugate);
  const odb_FieldOutput polar = u.getTransformedField(Global("CYL", odb_Enum::CYLINDRICAL));
  ASSERT_EQ(polar.values().size(), 8);
  for (int i = 0; i < 8; ++i) {
    SCOPED_TRACE(i);
    Expect(polar.values()[i].data(), {1, 2, 5});
    Expect(polar.values()[i].conjugateData(), {3, 0, 0});
  }

  // Node 9 sits at 45 degrees of elevation straight along the 2-axis: e_r = (0, 1, 1)/sqrt 2,
  // e_theta = (-1, 0, 0), e_phi = (0, -1, 1)/sqrt 2.
  const double h = std::sqrt(0.5);
  odb_FieldOutput& v = Nodal("V", Ints({9}), Points({{1, 2, 3}}));
  Expect(v.getTransformedField(Global("SPH", odb_Enum::SPHERICAL)).values()[0].data(),
         {5 * h, -1, h});

  // A uniaxial stress along the 1-axis at the cube's integration points and centroid: at the
  // angle t of the point, S_rr = 10 cos^2 t, S_tt = 10 sin^2 t, S_rt = -10 sin t cos t.
  odb_FieldOutput& s = m_frame.FieldOutput("S", "", odb_Enum::TENSOR_3D_FULL);
  const auto& ips = store_FindElementClass("C3D8")->integrationPointCoordinates;
  odb_SequenceSequenceFloat stress;
  for (std::size_t p = 0; p < ips.size(); ++p) stress.append(Points({{10, 0, 0, 0, 0, 0}})[0]);
  s.addData(odb_Enum::INTEGRATION_POINT, *m_instance, Ints({1}), stress);
  s.addData(odb_Enum::CENTROID, *m_instance, Ints({1}), Points({{10, 0, 0, 0, 0, 0}}));
  const odb_FieldOutput sp = s.getTransformedField(m_assembly->datumCsys("CYL"));
  ASSERT_EQ(sp.values().size(), static_cast<int>(ips.size()) + 1);
  for (int i = 0; i < sp.values().size(); ++i) {
    SCOPED_TRACE(i);
    const bool centroid = i == static_cast<int>(ips.size());
    const double x = centroid ? 3.5 : 3 + (ips[i][0] + 1) / 2;
    const double y = centroid ? 0.5 : (ips[i][1] + 1) / 2;
    const double t = std::atan2(y, x);
    Expect(sp.values()[i].data(), {10 * std::cos(t) * std::cos(t), 10 * std::sin(t) * std::sin(t),
                                   0, -10 * std::sin(t) * std::cos(t), 0, 0});
  }
}

TEST_F(FieldOutputTransform, RectangularSystemsTurnTensorsAndProjectOntoShells) {
  const double c = std::cos(kPi / 6), s = std::sin(kPi / 6);
  const odb_DatumCsys& turned = m_assembly->DatumCsys("TURNED", odb_Enum::RECTANGULAR, Xyz(0, 0, 0),
                                                      Xyz(c, s, 0), Xyz(-s, c, 0));
  odb_FieldOutput& stress = m_frame.FieldOutput("S", "", odb_Enum::TENSOR_3D_FULL);
  stress.addData(odb_Enum::CENTROID, *m_instance, Ints({1}), Points({{10, 0, 0, 0, 0, 0}}));
  Expect(stress.getTransformedField(turned).values()[0].data(), {7.5, 2.5, 0, -10 * s * c, 0, 0});

  // The shell lies in the 1-2 plane; the system's 1-axis leans out of it, and its projection,
  // the global 2-axis, becomes the shell's 1-direction: a quarter turn.
  odb_FieldOutput& membrane = m_frame.FieldOutput("SM", "", odb_Enum::TENSOR_3D_SURFACE);
  membrane.addData(odb_Enum::CENTROID, *m_instance, Ints({2}), Points({{1, 2, 0.5}}));
  const odb_DatumCsys& tilted = m_assembly->DatumCsys("TILTED", odb_Enum::RECTANGULAR, Xyz(0, 0, 0),
                                                      Xyz(0, 1, 1), Xyz(-1, 0, 0));
  Expect(membrane.getTransformedField(tilted).values()[0].data(), {2, 1, -0.5});
}

TEST_F(FieldOutputTransform, TwoDimensionalValuesNeedAThirdAxisNormalToTheModel) {
  odb_DiscretePart& plane =
      m_odb->DiscretePart("PLANE", odb_Enum::TWO_D_PLANAR, odb_Enum::DEFORMABLE_BODY);
  plane.addNodes(Ints({1, 2, 3, 4}), Points({{0, 0}, {1, 0}, {1, 1}, {0, 1}}));
  plane.addElements(Ints({1}), Rows({{1, 2, 3, 4}}), "CPS4");
  odb_Instance& flat = m_assembly->Instance("Q-1", plane);
  const odb_DatumCsys& leaning = m_assembly->DatumCsys("LEANING", odb_Enum::RECTANGULAR,
                                                       Xyz(0, 0, 0), Xyz(1, 0, 0), Xyz(0, 1, 1));
  const std::string normal = "Third component of coordinate system must be normal to 2D part";

  // Planar stress (11, 22, 33, 12) at the centroid (0.5, 0.5), seen from (0.5, -1): straight
  // along the 2-axis, so radial and hoop swap the in-plane normal stresses.
  odb_FieldOutput& s = m_frame.FieldOutput("S", "", odb_Enum::TENSOR_3D_PLANAR);
  s.addData(odb_Enum::CENTROID, flat, Ints({1}), Points({{10, 0, 5, 0}}));
  const odb_DatumCsys& below = m_assembly->DatumCsys("BELOW", odb_Enum::CYLINDRICAL,
                                                     Xyz(0.5, -1, 0), Xyz(1, 0, 0), Xyz(0, 1, 0));
  Expect(s.getTransformedField(below).values()[0].data(), {0, 10, 5, 0});
  EXPECT_EQ(MessageOf([&] { s.getTransformedField(leaning); }), normal);

  // Vectors of two components, and three-component vectors of a planar part.
  odb_FieldOutput& v2 = m_frame.VectorOutput("V2", "", 2);
  v2.addData(odb_Enum::NODAL, *m_instance, Ints({1}), Points({{1, 2}}));
  Expect(v2.getTransformedField(Global("CYL", odb_Enum::CYLINDRICAL)).values()[0].data(), {1, 2});
  EXPECT_EQ(MessageOf([&] { v2.getTransformedField(leaning); }), normal);
  odb_FieldOutput& v3 = Nodal("V3", Ints({1}), Points({{1, 2, 0}}), &flat);
  EXPECT_EQ(MessageOf([&] { v3.getTransformedField(leaning); }), normal);
  // The same vector of a three-dimensional part may lean.
  Expect(Nodal("V", Ints({1}), Points({{1, 2, 0}})).getTransformedField(leaning).values()[0].data(),
         {1, std::sqrt(2.0), -std::sqrt(2.0)});
}

TEST_F(FieldOutputTransform, DynamicSystemsMoveWithTheirNodes) {
  // Nodes 21 and 22 swing a quarter turn about node 10: the three-node system turns with them.
  odb_FieldOutput& u =
      Displacements("U", {21, 22, 1, 3, 5},
                    {Xyz(-1, 1, 0), Xyz(-1, -1, 0), Xyz(3, 0, 0), Xyz(3, 0, 0), Xyz(3, 0, 0)});
  odb_FieldOutput& v = Nodal("V", Ints({10}), Points({{1, 2, 3}}));
  const odb_DatumCsys& three =
      m_assembly->DatumCsysByThreeNodes("THREE", odb_Enum::RECTANGULAR, "R-1", 10, 21, 22);
  Expect(v.getTransformedField(three, u).values()[0].data(), {2, -1, 3});

  // Ring nodes 1, 3 and 5 move by 3 along the 1-axis, and the circle's centre with them: node
  // 10, which stays, now lies on the negative 1-axis of the cylindrical system.
  const odb_DatumCsys& circle =
      m_assembly->DatumCsysByThreeCircNodes("CIRCLE", odb_Enum::CYLINDRICAL, "R-1", 1, 3, 5);
  Expect(v.getTransformedField(circle, u).values()[0].data(), {-1, -2, 3});

  // A 6-DOF node turned a quarter about the 3-axis turns its axes with it.
  odb_FieldOutput& ur = Nodal("UR", Ints({10}), Points({{0, 0, float(kPi / 2)}}));
  const odb_DatumCsys& node = m_assembly->DatumCsysBy("NODE", odb_Enum::RECTANGULAR, "R-1", 10);
  Expect(v.getTransformedField(node, u, ur).values()[0].data(), {2, -1, 3});
}

TEST_F(FieldOutputTransform, DeformationAndRotationFieldsAreChecked) {
  odb_FieldOutput& u = Displacements("U", {}, {});
  odb_FieldOutput& v = Nodal("V", Ints({10}), Points({{1, 2, 3}}));
  const odb_DatumCsys& three =
      m_assembly->DatumCsysByThreeNodes("THREE", odb_Enum::RECTANGULAR, "R-1", 10, 21, 22);
  const odb_DatumCsys& node = m_assembly->DatumCsysBy("NODE", odb_Enum::RECTANGULAR, "R-1", 10);
  const odb_DatumCsys& fixed = Global("CYL", odb_Enum::CYLINDRICAL);

  EXPECT_EQ(MessageOf([&] { v.getTransformedField(three); }),
            "The specified coordinate system is dynamic; therefore, a deformation field must be "
            "supplied.");
  const std::string sixDof =
      "The specified coordinate system follows a 6-DOF node; it requires both the deformation "
      "and rotation fields.";
  EXPECT_EQ(MessageOf([&] { v.getTransformedField(node); }), sixDof);
  EXPECT_EQ(MessageOf([&] { v.getTransformedField(node, u); }), sixDof);

  const std::string kind =
      "The deformation field must be a NODAL VECTOR field requested for the whole analysis "
      "model.";
  odb_FieldOutput& s = m_frame.FieldOutput("S", "", odb_Enum::TENSOR_3D_FULL);
  s.addData(odb_Enum::CENTROID, *m_instance, Ints({1}), Points({{1, 0, 0, 0, 0, 0}}));
  EXPECT_EQ(MessageOf([&] { v.getTransformedField(three, s); }), kind);
  EXPECT_EQ(MessageOf([&] { v.getTransformedField(fixed, u.getSubset(*m_instance)); }), kind);
  odb_FieldOutput& centroidVectors = m_frame.VectorOutput("CV", "", 3);
  centroidVectors.addData(odb_Enum::CENTROID, *m_instance, Ints({1}), Points({{1, 0, 0}}));
  EXPECT_EQ(MessageOf([&] { v.getTransformedField(fixed, centroidVectors); }), kind);
  EXPECT_EQ(MessageOf([&] { v.getTransformedField(node, u, s); }),
            "The rotation field must be a NODAL VECTOR field of 3 components requested for the "
            "whole analysis model.");

  // Displacements of another instance only, and displacements missing at a node.
  odb_Instance& other = m_assembly->Instance("R-2", m_odb->parts()["RING"]);
  odb_FieldOutput& elsewhere =
      Nodal("UE", Ints({10, 21, 22}), Points({{0, 0, 0}, {0, 0, 0}, {0, 0, 0}}), &other);
  const std::string notFound = "Deformation results for part instance not found.";
  EXPECT_EQ(MessageOf([&] { v.getTransformedField(fixed, elsewhere); }), notFound);
  EXPECT_EQ(MessageOf([&] { v.getTransformedField(three, elsewhere); }), notFound);
  odb_FieldOutput& partial = Nodal("UP", Ints({1}), Points({{0, 0, 0}}));
  EXPECT_EQ(MessageOf([&] { v.getTransformedField(fixed, partial); }),
            "The deformation field has no value at node 10 of instance \"R-1\".");

  odb_FieldOutput& p = m_frame.FieldOutput("P", "", odb_Enum::SCALAR);
  EXPECT_EQ(MessageOf([&] { p.getTransformedField(fixed, u); }),
            "Transformation not allowed for scalar, vector or matrix data.");
}
