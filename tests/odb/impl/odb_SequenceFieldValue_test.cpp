#include <gtest/gtest.h>

#include <vector>

#include "FieldFile.h"

class SequenceFieldValue : public FieldFile {
 protected:
  // The labels of the values of `values`, in order.
  static std::vector<int> Labels(const odb_SequenceFieldValue& values, bool nodal) {
    std::vector<int> labels;
    for (int i = 0; i < values.size(); ++i)
      labels.push_back(nodal ? values[i].nodeLabel() : values[i].elementLabel());
    return labels;
  }
};

// The values at chosen labels come out as sub-fields sharing the field's arrays: whole groups
// stay one sub-field, partial ones keep only the chosen locations, in stored order.
TEST_F(SequenceFieldValue, AppendSubFieldKeepsTheListedLabelsOfTheAssemblysInstances) {
  odb_FieldOutput& u = m_frame.VectorOutput("U", "", 3);
  u.addData(odb_Enum::NODAL, *m_instance, Ints({1, 2, 3, 4}), Table(4, 3));
  odb_FieldOutput& s = m_frame.FieldOutput("S", "", odb_Enum::TENSOR_3D_FULL);
  s.addData(odb_Enum::CENTROID, *m_instance, Ints({1, 2}), Table(2, 6));
  odb_Odb& odb = Reopen();
  odb_Frame frame = odb.steps()["LOAD"].frames(0);

  odb_SequenceFieldValue nodal;
  nodal.appendSubField(Ints({4, 2, 99}), frame.fieldOutputs()["U"], odb.rootAssembly());
  EXPECT_EQ(Labels(nodal, true), (std::vector<int>{2, 4}));
  ASSERT_EQ(nodal.SubField().size(), 1u);
  EXPECT_EQ(nodal.SubField()[0].getSubsetIndices().size(), 2);
  EXPECT_EQ(nodal[1].data()[2], 302.0f);

  odb_SequenceFieldValue element;
  element.appendSubField(Ints({1, 2}), frame.fieldOutputs()["S"], odb.rootAssembly());
  EXPECT_EQ(Labels(element, false), (std::vector<int>{1, 2}));
  EXPECT_EQ(element.SubField()[0].getSubsetIndices().size(), 2);

  odb_SequenceFieldValue none;
  none.appendSubField(Ints({}), frame.fieldOutputs()["S"], odb.rootAssembly());
  EXPECT_EQ(none.size(), 0);
}

// The value lists copy every value: one list per sub-field, then the values appended alone.
TEST_F(SequenceFieldValue, FieldValueListListGivesEachSubFieldsValuesThenTheLooseOnes) {
  odb_FieldOutput& u = m_frame.VectorOutput("U", "", 3);
  u.addData(odb_Enum::NODAL, *m_instance, Ints({1, 2, 3}), Table(3, 3));
  odb_Odb& odb = Reopen();
  const odb_SequenceFieldValue& stored = odb.steps()["LOAD"].frames(0).fieldOutputs()["U"].values();
  odb_SequenceFieldValue values;
  values.append(stored);
  odb_FieldValueList loose;
  loose.push_back(stored[0]);
  values.append(loose);
  ASSERT_EQ(values.size(), 4);
  EXPECT_EQ(values[3].nodeLabel(), 1);

  const uti_Array<odb_FieldValueList> lists = values.FieldValueListList();
  ASSERT_EQ(lists.size(), 2u);
  ASSERT_EQ(lists[0].size(), 3u);
  EXPECT_EQ(lists[0][2].nodeLabel(), 3);
  EXPECT_EQ(lists[0][2].data()[1], 201.0f);
  ASSERT_EQ(lists[1].size(), 1u);
  EXPECT_EQ(lists[1][0].nodeLabel(), 1);
}
