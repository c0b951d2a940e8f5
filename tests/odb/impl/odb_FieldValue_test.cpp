#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>

#include "FieldFile.h"
#include "ThrownMessage.h"

namespace {

const odb_Enum::odb_DataTypeEnum kTypes[] = {
    odb_Enum::SCALAR,           odb_Enum::VECTOR,           odb_Enum::MATRIX,
    odb_Enum::TENSOR_3D_FULL,   odb_Enum::TENSOR_3D_PLANAR, odb_Enum::TENSOR_3D_SURFACE,
    odb_Enum::TENSOR_2D_PLANAR, odb_Enum::TENSOR_2D_SURFACE};
const odb_Enum::odb_ResultPositionEnum kPositions[] = {odb_Enum::NODAL, odb_Enum::ELEMENT_NODAL,
                                                       odb_Enum::INTEGRATION_POINT,
                                                       odb_Enum::CENTROID, odb_Enum::WHOLE_ELEMENT};
const int kWidths[] = {1, 3, 4, 6, 4, 3, 3, 3};

}  // namespace

class FieldValueRead : public FieldFile {};

TEST_F(FieldValueRead, EveryTypeAndPositionReadsBackBitForBitAfterReopening) {
  int n = 0;
  for (int t = 0; t < 8; ++t)
    for (odb_Enum::odb_ResultPositionEnum position : kPositions) {
      const std::string name = "F" + std::to_string(n++);
      odb_SequenceString labels;
      for (int c = 0; c < kWidths[t]; ++c)
        labels.append(odb_String(("C" + std::to_string(c)).c_str()));
      odb_FieldOutput& f = m_frame.FieldOutput(name.c_str(), "", kTypes[t], labels);
      const bool nodal = position == odb_Enum::NODAL;
      const int rows = nodal ? 3
                       : (position == odb_Enum::CENTROID || position == odb_Enum::WHOLE_ELEMENT)
                           ? 1
                           : 8;
      odb_SequenceSequenceFloat data = Table(rows, kWidths[t]);
      data.get(0).get(0) = std::nextafter(0.1f, 1.0f) * n;
      f.addData(position, *m_instance, nodal ? Ints({1, 2, 3}) : Ints({2}), data);
    }
  odb_Odb& odb = Reopen();
  odb_Frame frame = odb.steps()["LOAD"].frames(0);
  n = 0;
  for (int t = 0; t < 8; ++t)
    for (odb_Enum::odb_ResultPositionEnum position : kPositions) {
      const std::string name = "F" + std::to_string(n++);
      const odb_FieldOutput& f = frame.fieldOutputs()[name.c_str()];
      ASSERT_EQ(f.type(), kTypes[t]) << name;
      const odb_SequenceFieldValue& values = f.values();
      ASSERT_EQ(values.size(),
                position == odb_Enum::NODAL                                             ? 3
                : position == odb_Enum::CENTROID || position == odb_Enum::WHOLE_ELEMENT ? 1
                                                                                        : 8)
          << name;
      const odb_FieldValue v = values[values.size() - 1];
      EXPECT_EQ(v.position(), position);
      EXPECT_EQ(v.data().size(), kWidths[t]);
      if (values.size() > 1 || kWidths[t] > 1)  // else the one float is the marked first one
        EXPECT_EQ(v.data()[kWidths[t] - 1], float(100 * (values.size() - 1) + kWidths[t] - 1));
      const float first = values[0].data()[0];
      const float expected = std::nextafter(0.1f, 1.0f) * n;
      EXPECT_EQ(std::memcmp(&first, &expected, sizeof first), 0) << name;
      EXPECT_EQ(v.elementLabel(), position == odb_Enum::NODAL ? -1 : 2);
      EXPECT_EQ(v.integrationPoint(), position == odb_Enum::INTEGRATION_POINT ? 8 : -1);
      EXPECT_EQ(v.nodeLabel(), position == odb_Enum::NODAL           ? 3
                               : position == odb_Enum::ELEMENT_NODAL ? 11
                                                                     : -1);
      EXPECT_EQ(v.instance().name(), odb_String("B-1"));
    }
}

TEST_F(FieldValueRead, ConjugatesAndOrientationsSurviveAndGiveDirectionCosines) {
  odb_FieldOutput& s = m_frame.FieldOutput("S", "", odb_Enum::TENSOR_3D_FULL);
  const float half = std::sqrt(0.5f);
  odb_SequenceSequenceFloat quarterTurn;  // 90 degrees about the 3-axis
  quarterTurn.append(Points({{half, 0, 0, half}})[0]);
  s.addData(odb_Enum::CENTROID, *m_instance, Ints({1, 2}), Table(2, 6), odb_SectionPoint(),
            quarterTurn, Table(2, 6));
  odb_FieldOutput& u = m_frame.VectorOutput("U", "", 3);
  u.addData(odb_Enum::NODAL, *m_instance, Ints({5}), Table(1, 3));
  odb_Odb& odb = Reopen();
  odb_Frame frame = odb.steps()["LOAD"].frames(0);
  const odb_FieldValue v = frame.fieldOutputs()["S"].values()[1];
  EXPECT_EQ(v.conjugateData()[5], 105.0f);
  const odb_SequenceSequenceFloat axes = v.localCoordSystem();
  ASSERT_EQ(axes.size(), 3);
  EXPECT_NEAR(axes[0][1], 1.0f, 1e-6);  // the local 1-axis lies along the global 2-axis
  EXPECT_NEAR(axes[1][0], -1.0f, 1e-6);
  const odb_FieldValue n = frame.fieldOutputs()["U"].values()[0];
  EXPECT_TRUE(n.localCoordSystem().isEmpty());
  EXPECT_TRUE(n.conjugateData().isEmpty());
  EXPECT_EQ(frame.fieldOutputs()["S"].bulkDataBlocks()[0].orientationWidth(), 4);
}

TEST_F(FieldValueRead, InvariantsApplyOnlyToTheirTypes) {
  odb_FieldOutput& s = m_frame.FieldOutput("S", "", odb_Enum::TENSOR_3D_FULL);
  odb_SequenceSequenceFloat uniaxial;
  uniaxial.append(Points({{200, 0, 0, 0, 0, 0}})[0]);
  s.addData(odb_Enum::CENTROID, *m_instance, Ints({1}), uniaxial);
  odb_FieldOutput& u = m_frame.VectorOutput("U", "", 3);
  u.addData(odb_Enum::NODAL, *m_instance, Ints({1}), Points({{3, 4, 0}}));
  const odb_FieldValue& sv = s.values()[0];
  EXPECT_FLOAT_EQ(sv.mises(), 200.0f);
  EXPECT_FLOAT_EQ(sv.press(), -200.0f / 3);
  EXPECT_FLOAT_EQ(sv.maxPrincipal(), 200.0f);
  EXPECT_EQ(sv.magnitude(), 0.0f);
  EXPECT_FLOAT_EQ(s.bulkDataBlocks()[0].mises()[0], 200.0f);
  const odb_FieldValue& uv = u.values()[0];
  EXPECT_FLOAT_EQ(uv.magnitude(), 5.0f);
  EXPECT_EQ(uv.mises(), 0.0f);
  EXPECT_EQ(uv.tresca(), 0.0f);
}

TEST_F(FieldValueRead, BulkFormWritesLikeTheSequenceForm) {
  odb_FieldOutput& s = m_frame.FieldOutput("S", "", odb_Enum::TENSOR_3D_FULL);
  std::vector<float> data(16 * 6);
  for (std::size_t i = 0; i < data.size(); ++i) data[i] = float(i);
  const int labels[] = {2, 1};
  s.addData(odb_Enum::INTEGRATION_POINT, *m_instance, 2, labels, 16, 6, data.data());
  EXPECT_EQ(MessageOf([&] {
              s.addData(odb_Enum::INTEGRATION_POINT, *m_instance, 2, labels, 15, 6, data.data());
            }),
            "Length of data sequence incorrect. Data at 16 locations expected. Data at 15 "
            "locations provided. Element data request failed. Element type is C3D8. Data at 8 "
            "integration points per element expected.");
  EXPECT_EQ(MessageOf([&] {
              s.addData(odb_Enum::INTEGRATION_POINT, *m_instance, 2, labels, 16, 6, nullptr);
            }),
            "Insufficient data sequences provided.");
  EXPECT_EQ(MessageOf([&] {
              s.addData(odb_Enum::INTEGRATION_POINT, *m_instance, 2, labels, 16, 6, data.data(),
                        odb_SectionPoint(), nullptr, 16, 4, nullptr);
            }),
            "Insufficient coordSystem sequences provided.");
  const odb_FieldBulkData& block = s.bulkDataBlocks()[0];
  ASSERT_EQ(block.length(), 16);
  EXPECT_EQ(block.numberOfElements(), 2);
  EXPECT_EQ(block.elementLabels()[8], 1);
  EXPECT_EQ(block.integrationPoints()[9], 2);
  EXPECT_EQ(std::memcmp(block.data(), data.data(), data.size() * sizeof(float)), 0);
  EXPECT_EQ(s.values()[15].data()[5], 95.0f);
}
