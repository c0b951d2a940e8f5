// Bulk data read into the caller's arrays: what the program's arrays receive is what addData
// wrote, whether the library has read the block or not, and arrays of the wrong size are refused.
#include <vector>

#include "FieldFile.h"

namespace {

using FieldBulkData = FieldFile;

std::vector<float> Ramp(std::size_t n, float start) {
  std::vector<float> v(n);
  for (std::size_t i = 0; i < n; ++i) v[i] = start + 0.5f * static_cast<float>(i);
  return v;
}

TEST_F(FieldBulkData, BlocksReadIntoTheCallersArraysAsWritten) {
  const std::vector<int> nodes = {12, 1, 5, 7};
  const std::vector<float> u = Ramp(12, 1.0f);
  m_frame.FieldOutput("U", "", odb_Enum::VECTOR)
      .addData(odb_Enum::NODAL, *m_instance, 4, nodes, 4, 3, u);
  // Two calls for the same elements' type: one sub-field of two stored blocks.
  const std::vector<float> s1 = Ramp(48, 100.0f), s2 = Ramp(48, -100.0f);
  const std::vector<float> c1 = Ramp(48, 7.0f), c2 = Ramp(48, 9.0f);
  const std::vector<float> o1 = Ramp(32, 0.0f), o2 = Ramp(32, 1.0f);
  odb_FieldOutput& s = m_frame.FieldOutput("S", "", odb_Enum::TENSOR_3D_FULL);
  s.addData(odb_Enum::INTEGRATION_POINT, *m_instance, 1, std::vector<int>{2}, 8, 6, s1, {}, c1, 8,
            4, o1);
  s.addData(odb_Enum::INTEGRATION_POINT, *m_instance, 1, std::vector<int>{1}, 8, 6, s2, {}, c2, 8,
            4, o2);
  saveOdb(*m_odb);
  Reopen();
  const odb_FieldOutputRepository& fields = m_odb->steps()["LOAD"].frames(0).fieldOutputs();

  const odb_FieldBulkData& ub = fields["U"].bulkDataBlocks()[0];
  std::vector<int> labels(static_cast<std::size_t>(ub.numberOfLabels()));
  std::vector<float> data(12);
  ub.readLabels(labels);
  ub.readData(data);
  EXPECT_EQ(labels, nodes);
  EXPECT_EQ(data, u);

  const odb_FieldBulkData& sb = fields["S"].bulkDataBlocks()[0];
  ASSERT_EQ(sb.numberOfLabels(), 2);
  EXPECT_EQ(sb.valuesPerElement(), 8);
  std::vector<int> elements(2);
  std::vector<float> stress(96), conjugate(96), orientation(64);
  sb.readLabels(elements);
  sb.readData(stress);
  sb.readConjugateData(conjugate);
  sb.readLocalCoordSystem(orientation);
  EXPECT_EQ(elements, (std::vector<int>{2, 1}));
  auto joined = [](std::vector<float> a, const std::vector<float>& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
  };
  EXPECT_EQ(stress, joined(s1, s2));
  EXPECT_EQ(conjugate, joined(c1, c2));
  EXPECT_EQ(orientation, joined(o1, o2));
  // Once the library holds the block, the caller's arrays receive the same.
  ASSERT_EQ(sb.data()[48], s2[0]);
  std::vector<float> again(96);
  sb.readData(again);
  EXPECT_EQ(again, stress);

  std::vector<float> short_(95);
  EXPECT_EQ(MessageOf([&] { sb.readData(short_); }),
            "readData(): the array holds 95 values; the block gives 96.");
  std::vector<float> twelve(12);
  EXPECT_EQ(MessageOf([&] { ub.readConjugateData(twelve); }),
            "readConjugateData(): the block holds real data.");
  EXPECT_EQ(MessageOf([&] { ub.readLocalCoordSystem(twelve); }),
            "readLocalCoordSystem(): the block holds no orientations.");
}

TEST_F(FieldBulkData, ABlockPartlyHeldReadsHeldAndStoredValuesInOrder) {
  odb_FieldOutput& p = m_frame.FieldOutput("P", "", odb_Enum::SCALAR);
  p.addData(odb_Enum::NODAL, *m_instance, 2, std::vector<int>{3, 4}, 2, 1,
            std::vector<float>{3, 4});
  ASSERT_EQ(p.bulkDataBlocks()[0].data()[1], 4.0f);  // read and held
  p.addData(odb_Enum::NODAL, *m_instance, 2, std::vector<int>{5, 6}, 2, 1,
            std::vector<float>{5, 6});  // stored, not read
  const odb_FieldBulkData& block = p.bulkDataBlocks()[0];
  std::vector<int> labels(4);
  std::vector<float> values(4);
  block.readLabels(labels);
  block.readData(values);
  EXPECT_EQ(labels, (std::vector<int>{3, 4, 5, 6}));
  EXPECT_EQ(values, (std::vector<float>{3, 4, 5, 6}));
}

}  // namespace
