#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "FieldFile.h"
#include "ThrownMessage.h"

class FieldOutputWrite : public FieldFile {
 protected:
  odb_FieldOutput& Stress() { return m_frame.FieldOutput("S", "stress", odb_Enum::TENSOR_3D_FULL); }
};

TEST_F(FieldOutputWrite, CreatorsNameComponentsAndRefuseATakenName) {
  odb_FieldOutput& s = Stress();
  EXPECT_EQ(s.componentLabels().size(), 6);
  EXPECT_EQ(s.componentLabels()[5], odb_String("S23"));
  EXPECT_TRUE(s.validInvariants().isMember(odb_Enum::MISES));
  EXPECT_FALSE(s.validInvariants().isMember(odb_Enum::MAGNITUDE));
  EXPECT_EQ(m_frame.VectorOutput("U", "", 3).componentLabels()[2], odb_String("U3"));
  EXPECT_EQ(m_frame.MatrixOutput("M", "", 2, 2).componentLabels()[1], odb_String("M12"));
  EXPECT_EQ(MessageOf([&] { Stress(); }), "A field named 'S' already exists.");
  EXPECT_FALSE(s.IsOrphan());
  EXPECT_EQ(m_frame.fieldOutputs().size(), 3);
}

TEST_F(FieldOutputWrite, ChecksComeInOrderBeforeAnythingIsWritten) {
  odb_FieldOutput& u = m_frame.VectorOutput("U", "", 3);
  odb_FieldOutput& s = Stress();
  const odb_SequenceInt nodes = Ints({1, 2});
  EXPECT_EQ(MessageOf([&] {
              odb_FieldOutput().addData(odb_Enum::NODAL, *m_instance, nodes, Table(2, 3));
            }),
            "addData() not valid for an orphaned object.");
  EXPECT_EQ(MessageOf([&] { u.addData(odb_Enum::NODAL, odb_Instance(), nodes, Table(2, 3)); }),
            "Instance '' does not exists in this odb.");
  EXPECT_EQ(MessageOf([&] {
              u.addData(odb_Enum::NODAL, *m_instance, nodes, Table(2, 3), odb_SectionPoint(),
                        odb_SequenceSequenceFloat(), Table(1, 3));
            }),
            "Data and ConjugateData must have the same length.");
  EXPECT_EQ(MessageOf([&] {
              u.addData(odb_Enum::NODAL, *m_instance, nodes, Table(2, 3), odb_SectionPoint(),
                        Table(1, 4));
            }),
            "Transformation not allowed for scalar data.");
  EXPECT_EQ(MessageOf([&] { u.addData(odb_Enum::ELEMENT_FACE, *m_instance, nodes, Table(2, 3)); }),
            "Invalid results position for field.");
  EXPECT_EQ(MessageOf([&] {
              u.addData(odb_Enum::NODAL, *m_instance, Ints({1, 99}), Table(2, 3));
            }),
            "The element labels passed into field.addData() method contain some undefined labels.");
  EXPECT_EQ(MessageOf([&] {
              s.addData(odb_Enum::INTEGRATION_POINT, *m_instance, Ints({4}), Table(4, 6),
                        odb_SectionPoint(7, "x"));
            }),
            "Section Point number 7.");
  EXPECT_EQ(MessageOf([&] {
              s.addData(odb_Enum::INTEGRATION_POINT, *m_instance, Ints({1, 4}), Table(12, 6),
                        odb_SectionPoint(1, "Bottom"));
            }),
            "Section point not valid for all elements.");
  EXPECT_EQ(u.values().size(), 0);
  EXPECT_EQ(s.values().size(), 0);
}

TEST_F(FieldOutputWrite, LengthMessagesNameThePositionAndElementType) {
  odb_FieldOutput& s = Stress();
  odb_FieldOutput& u = m_frame.VectorOutput("U", "", 3);
  const char* lead = "Length of data sequence incorrect. Data at ";
  EXPECT_EQ(MessageOf([&] {
              u.addData(odb_Enum::NODAL, *m_instance, Ints({1, 2}), Table(3, 3));
            }),
            std::string(lead) +
                "2 locations expected. Data at 3 locations provided. Nodal data "
                "request failed.");
  EXPECT_EQ(MessageOf([&] {
              s.addData(odb_Enum::INTEGRATION_POINT, *m_instance, Ints({1}), Table(7, 6));
            }),
            std::string(lead) +
                "8 locations expected. Data at 7 locations provided. Element data "
                "request failed. Element type is C3D8. Data at 8 integration "
                "points per element expected.");
  EXPECT_EQ(MessageOf([&] {
              s.addData(odb_Enum::ELEMENT_NODAL, *m_instance, Ints({3}), Table(3, 6),
                        odb_SectionPoint(), odb_SequenceSequenceFloat(), Table(3, 6));
            }),
            std::string(lead) +
                "8 locations expected. Data at 6 locations provided. Element data "
                "request failed. Element type is C3D4. Data at 4 nodes per "
                "element expected.");
  EXPECT_EQ(MessageOf([&] { s.addData(odb_Enum::CENTROID, *m_instance, Ints({3}), Table(2, 6)); }),
            std::string(lead) +
                "1 locations expected. Data at 2 locations provided. Element data "
                "request failed. Element type is C3D4. Data at 1 location per "
                "element expected.");
  // Two groups: each gets its own rows; rows beyond them are reported after both are written.
  EXPECT_EQ(MessageOf([&] {
              s.addData(odb_Enum::CENTROID, *m_instance, Ints({1, 3}), Table(3, 6));
            }),
            "field.addData() request not processed correctly. 2 data sequences written from the 3 "
            "supplied. Write data for each element position, element type, and section definition "
            "separately for more detailed error messages.");
  EXPECT_EQ(s.bulkDataBlocks().size(), 2);
}

TEST_F(FieldOutputWrite, DataTypeChecksPerGroup) {
  odb_FieldOutput& p = m_frame.FieldOutput("P", "", odb_Enum::SCALAR);
  odb_FieldOutput& u = m_frame.VectorOutput("U", "", 3);
  odb_FieldOutput& s = Stress();
  odb_FieldOutput& q = m_frame.FieldOutput("Q", "", odb_Enum::QUATERNION_3D);
  EXPECT_EQ(MessageOf([&] { p.addData(odb_Enum::NODAL, *m_instance, Ints({1}), Table(1, 2)); }),
            "SCALAR data should be of length 1.");
  EXPECT_EQ(MessageOf([&] { u.addData(odb_Enum::NODAL, *m_instance, Ints({1}), Table(1, 2)); }),
            "Data items should be of length 3");
  EXPECT_EQ(MessageOf([&] { s.addData(odb_Enum::CENTROID, *m_instance, Ints({1}), Table(1, 4)); }),
            "Incorrect tensor data length");
  EXPECT_EQ(MessageOf([&] {
              s.addData(odb_Enum::CENTROID, *m_instance, Ints({1, 2, 3}), Table(3, 6),
                        odb_SectionPoint(), Table(2, 4));
            }),
            "Coordinate system definition should be of length 0, 1, or the same length as the "
            "data array.");
  EXPECT_EQ(MessageOf([&] { q.addData(odb_Enum::NODAL, *m_instance, Ints({1}), Table(1, 4)); }),
            "Invalid results type for field.");
}

TEST_F(FieldOutputWrite, SubFieldsSplitByTypeAndSectionPointAndReuseEarlierOnes) {
  odb_FieldOutput& s = Stress();
  s.addData(odb_Enum::CENTROID, *m_instance, Ints({1, 3, 2}), Table(3, 6));
  s.addData(odb_Enum::CENTROID, *m_instance, Ints({4}), Table(1, 6), odb_SectionPoint(1, "Bottom"));
  s.addData(odb_Enum::CENTROID, *m_instance, Ints({5}), Table(1, 6), odb_SectionPoint(1, "Bottom"));
  s.addData(odb_Enum::CENTROID, *m_instance, Ints({5}), Table(1, 6), odb_SectionPoint(2, "Top"));
  const odb_SequenceFieldBulkData& blocks = s.bulkDataBlocks();
  ASSERT_EQ(blocks.size(), 4);
  EXPECT_EQ(blocks[0].baseElementType(), odb_String("C3D8"));
  EXPECT_EQ(blocks[0].length(), 2);
  EXPECT_EQ(blocks[0].elementLabels()[1], 2);
  EXPECT_EQ(blocks[0].data()[6], 200.0f);  // element 2 was the third row of the call
  EXPECT_EQ(blocks[1].baseElementType(), odb_String("C3D4"));
  EXPECT_EQ(blocks[2].length(), 2);
  EXPECT_EQ(blocks[3].sectionPoint().number(), 2);
  EXPECT_EQ(s.SubField()[0].setName(), odb_String("api_set 0"));
  EXPECT_EQ(s.SubField()[2].setName(), odb_String("api_set 2"));
  EXPECT_EQ(s.locations().size(), 1);
  EXPECT_EQ(s.locations()[0].sectionPoint().size(), 2);
}

TEST_F(FieldOutputWrite, LabelsRepeatedInOneCallAreRefusedAndNothingIsWritten) {
  odb_FieldOutput& u = m_frame.VectorOutput("U", "", 3);
  odb_FieldOutput& s = Stress();
  EXPECT_EQ(MessageOf([&] {
              u.addData(odb_Enum::NODAL, *m_instance, Ints({1, 2, 3, 2}), Table(4, 3));
            }),
            "Node label 2 is given more than once in one addData() call (NODAL data of instance "
            "\"B-1\").");
  const int twice[] = {1, 2, 1};
  const std::vector<float> points(24 * 6, 1.0f);
  EXPECT_EQ(MessageOf([&] {
              s.addData(odb_Enum::INTEGRATION_POINT, *m_instance, 3, twice, 24, 6, points.data());
            }),
            "Element label 1 is given more than once in one addData() call (INTEGRATION_POINT "
            "data of instance \"B-1\").");
  // Labels of several element types, out of order; and a repeat right after its first.
  EXPECT_EQ(MessageOf([&] {
              s.addData(odb_Enum::CENTROID, *m_instance, Ints({5, 3, 1, 3}), Table(4, 6));
            }),
            "Element label 3 is given more than once in one addData() call (CENTROID data of "
            "instance \"B-1\").");
  EXPECT_EQ(MessageOf([&] {
              s.addData(odb_Enum::ELEMENT_NODAL, *m_instance, Ints({4, 4}), Table(8, 6));
            }),
            "Element label 4 is given more than once in one addData() call (ELEMENT_NODAL data of "
            "instance \"B-1\").");
  EXPECT_EQ(u.bulkDataBlocks().size(), 0);
  EXPECT_EQ(s.bulkDataBlocks().size(), 0);

  // Separate calls may name a label again: each call's values are kept, in the order written.
  u.addData(odb_Enum::NODAL, *m_instance, Ints({2, 1}), Table(2, 3));
  u.addData(odb_Enum::NODAL, *m_instance, Ints({2}), Table(1, 3));
  ASSERT_EQ(u.values().size(), 3);
  EXPECT_EQ(u.values()[2].nodeLabel(), 2);
  EXPECT_EQ(u.getSubset(m_instance->getNodeFromLabel(2)).values().size(), 2);
}

TEST_F(FieldOutputWrite, CheckedBulkFormRefusesCountsItsArraysDoNotHold) {
  odb_FieldOutput& s = Stress();
  // Arrays of exactly their size on the heap: a read past one fails the sanitizer build.
  const std::vector<int> labels = {2, 1};
  std::vector<float> data(16 * 6), conjugate(16 * 6, -1.0f);
  for (std::size_t i = 0; i < data.size(); ++i) data[i] = float(i);
  const std::vector<float> shortRows(95), orientations(60);
  const auto ip = odb_Enum::INTEGRATION_POINT;
  const odb_SectionPoint none;
  EXPECT_EQ(MessageOf([&] { s.addData(ip, *m_instance, 3, labels, 16, 6, data); }),
            "addData() was told of 3 labels, but the label array holds 2.");
  EXPECT_EQ(MessageOf([&] { s.addData(ip, *m_instance, 2, labels, 17, 6, data); }),
            "addData() was told of 17 rows of 6 floats (102), but the data array holds 96.");
  EXPECT_EQ(MessageOf([&] { s.addData(ip, *m_instance, 2, labels, 16, 5, data); }),
            "addData() was told of 16 rows of 5 floats (80), but the data array holds 96.");
  EXPECT_EQ(MessageOf([&] {
              s.addData(ip, *m_instance, 2, labels, 16, 6, odb_ArrayView<float>(nullptr, 96));
            }),
            "addData() was told of 16 rows of 6 floats (96), but the data array holds 0.");
  EXPECT_EQ(MessageOf([&] { s.addData(ip, *m_instance, 2, labels, 16, 6, data, none, shortRows); }),
            "addData() was told of 16 rows of 6 floats (96), but the conjugate array holds 95.");
  EXPECT_EQ(MessageOf([&] {
              s.addData(ip, *m_instance, 2, labels, 16, 6, data, none, {}, 16, 4, orientations);
            }),
            "addData() was told of 16 orientations of 4 floats (64), but the orientation array "
            "holds 60.");
  EXPECT_EQ(MessageOf([&] { s.addData(ip, *m_instance, -2, labels, 16, 6, data); }),
            "addData() was given a negative count or no labels.");
  EXPECT_EQ(s.bulkDataBlocks().size(), 0);

  // Counts that match write as the unchecked form does; a C array converts as well.
  const int cLabels[] = {2, 1};
  s.addData(ip, *m_instance, 2, cLabels, 16, 6, data, none, conjugate, 1, 4,
            std::vector<float>{1, 0, 0, 0});
  const odb_FieldBulkData& block = s.bulkDataBlocks()[0];
  ASSERT_EQ(block.length(), 16);
  EXPECT_EQ(block.elementLabels()[8], 1);
  EXPECT_EQ(block.data()[95], 95.0f);
  EXPECT_EQ(block.conjugateData()[95], -1.0f);
  EXPECT_EQ(block.orientationWidth(), 4);
}
