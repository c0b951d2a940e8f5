#include <gtest/gtest.h>
#include <sqlite3.h>

#include <string>

#include "FieldFile.h"
#include "ThrownMessage.h"
#include "odb_API.h"
#include "odb_EnumMap.h"
#include "store_PageChecksum.h"

// Files whose field rows were edited behind the library's back, as another program or a damaged
// disk could leave them: the reader refuses each bad sub-field with its own message and still
// reads the good ones.
class SubField : public FieldFile {
 protected:
  // Saves and closes the file, runs `sql` on it, and opens it again read-only.
  void Damage(const std::string& sql) {
    saveOdb(*m_odb);
    closeOdb(*m_odb);
    sqlite3* db = nullptr;
    ASSERT_EQ(sqlite3_open_v2(m_path.c_str(), &db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE,
                              store_ChecksumVfs()),
              SQLITE_OK);
    char* error = nullptr;
    const int rc = sqlite3_exec(db, sql.c_str(), nullptr, nullptr, &error);
    const std::string text = error ? error : "";
    sqlite3_free(error);
    sqlite3_close(db);
    ASSERT_EQ(rc, SQLITE_OK) << text;
    m_odb = &openOdb(m_path.c_str(), true);
  }

  // The field named `name` of the reopened file's only frame.
  odb_FieldOutput Field(const char* name) {
    return m_odb->steps()["LOAD"].frames()[0].fieldOutputs()[name];
  }

  // SQL naming block `block` of field `name`.
  static std::string Block(const char* name, int block) {
    return " WHERE field_id = (SELECT id FROM field_output WHERE name = '" + std::string(name) +
           "') AND block = " + std::to_string(block);
  }

  // SQL that cuts the last `bytes` bytes from the array in column `column` of a block.
  static std::string Shorten(const char* name, int block, const char* column, int bytes) {
    const std::string id =
        "(SELECT " + std::string(column) + " FROM field_block" + Block(name, block) + ")";
    const std::string n = std::to_string(bytes);
    return "UPDATE array_chunk SET data = substr(data, 1, length(data) - " + n +
           ") WHERE array_id = " + id + "; UPDATE array SET bytes = bytes - " + n +
           " WHERE id = " + id + ";";
  }

  // Nodal displacements at nodes 1..4 (block 0) and 5..6 (block 1, a sub-field of its own on a
  // second instance).
  void WriteDisplacements() {
    odb_FieldOutput& u = m_frame.VectorOutput("U", "", 3);
    u.addData(odb_Enum::NODAL, *m_instance, Ints({1, 2, 3, 4}), Table(4, 3));
    odb_Instance& other = m_odb->rootAssembly().Instance("B-2", m_odb->parts()["BLOCK"]);
    u.addData(odb_Enum::NODAL, other, Ints({5, 6}), Table(2, 3));
  }
};

TEST_F(SubField, BlocksThatNameNoInstanceOfTheAssemblyAreRefusedByEachView) {
  WriteDisplacements();
  Damage("UPDATE field_block SET instance = ''" + Block("U", 0) + ";");
  const odb_FieldOutput& u = Field("U");
  ASSERT_EQ(u.values().size(), 6);
  EXPECT_EQ(MessageOf([&] { u.values()[0]; }),
            "Unable to determine part instance for field.\n Assembly level results are not "
            "currently supported.");
  EXPECT_EQ(MessageOf([&] { u.bulkDataBlocks()[0].data(); }),
            "Unable to determine mesh index for field U.\n Assembly level results are not "
            "currently supported.");
  EXPECT_EQ(MessageOf([&] { u.locations(); }),
            "Unable to determine mesh index for field\nField results on assembly level meshes "
            "are not currently supported.");
  // The refused sub-field stays unread, and the good one reads.
  EXPECT_EQ(MessageOf([&] { u.values()[1]; }), MessageOf([&] { u.values()[0]; }));
  EXPECT_EQ(u.values()[5].nodeLabel(), 6);
  EXPECT_FLOAT_EQ(u.values()[5].data()[2], 102);
  EXPECT_FLOAT_EQ(u.bulkDataBlocks()[1].data()[3], 100);
}

TEST_F(SubField, BlocksThatNameAnInstanceTheAssemblyLacksAreRefused) {
  WriteDisplacements();
  Damage("UPDATE field_block SET instance = 'GONE'" + Block("U", 1) + ";");
  const odb_FieldOutput u = Field("U");
  EXPECT_EQ(MessageOf([&] { u.values()[4]; }), "Unable to determine mesh index for field U");
  EXPECT_EQ(MessageOf([&] { u.bulkDataBlocks()[1].nodeLabels(); }),
            "Unable to determine mesh index for field U");
  EXPECT_EQ(MessageOf([&] { u.getSubset(odb_Enum::NODAL).values()[4]; }),
            "Unable to determine mesh index for field U");
  EXPECT_EQ(u.values()[3].nodeLabel(), 4);
}

TEST_F(SubField, FieldTypesTheReaderCannotTurnIntoValuesAreRefused) {
  for (const char* name : {"Q", "I", "X", "T"})
    m_frame.FieldOutput(name, "", odb_Enum::SCALAR)
        .addData(odb_Enum::NODAL, *m_instance, Ints({1, 2}), Table(2, 1));
  Damage(
      "UPDATE field_output SET type = 10 WHERE name = 'Q';"
      "UPDATE field_output SET type = 1 WHERE name = 'I';"
      "UPDATE field_output SET type = 42 WHERE name = 'X';");
  EXPECT_STREQ(odb_DataTypeLabel(Field("X").type()), "Unknown Type");
  EXPECT_EQ(MessageOf([&] { Field("Q").values()[0]; }), "Quaternion results not processed.");
  EXPECT_EQ(MessageOf([&] { Field("Q").bulkDataBlocks()[0].data(); }),
            "Quaternions result not read.");
  EXPECT_EQ(MessageOf([&] { Field("I").values()[0]; }), "Invalid results type for field.");
  EXPECT_EQ(MessageOf([&] { Field("X").bulkDataBlocks()[0].mises(); }),
            "Unknown datatype not processed.");
  EXPECT_FLOAT_EQ(Field("T").values()[1].data()[0], 100);
  EXPECT_EQ(Field("Q").locations().size(), 1);  // where data are is still known
}

TEST_F(SubField, WidthsThatDisagreeWithTheFieldTypeAreRefused) {
  m_frame.FieldOutput("P", "", odb_Enum::SCALAR)
      .addData(odb_Enum::NODAL, *m_instance, Ints({1}), Table(1, 1));
  m_frame.VectorOutput("U", "", 3).addData(odb_Enum::NODAL, *m_instance, Ints({1}), Table(1, 3));
  odb_FieldOutput& s = m_frame.FieldOutput("S", "", odb_Enum::TENSOR_3D_FULL);
  s.addData(odb_Enum::CENTROID, *m_instance, Ints({1}), Table(1, 6));
  s.addData(odb_Enum::CENTROID, *m_instance, Ints({3}), Table(1, 6));
  s.addData(odb_Enum::CENTROID, *m_instance, Ints({2}), Table(1, 6));
  s.addData(odb_Enum::INTEGRATION_POINT, *m_instance, Ints({3}), Table(1, 6), odb_SectionPoint(),
            Table(1, 4));
  m_frame.VectorOutput("V", "", 3).addData(odb_Enum::NODAL, *m_instance, Ints({1}), Table(1, 3));
  Damage("UPDATE field_block SET width = 2" + Block("P", 0) + ";" +
         "UPDATE field_block SET width = 2" + Block("U", 0) + ";" +
         "UPDATE field_block SET width = 4" + Block("S", 0) + ";" +
         "UPDATE field_block SET width = 5" + Block("S", 1) + ";" +
         "UPDATE field_block SET orientation_width = 3" + Block("S", 3) + ";" +
         "UPDATE field_block SET orientation_width = 2" + Block("V", 0) + ";");
  EXPECT_EQ(MessageOf([&] { Field("P").values()[0]; }), "SCALAR data should be of length 1.");
  EXPECT_EQ(MessageOf([&] { Field("U").bulkDataBlocks()[0].data(); }),
            "Data items should be of length 3");
  const odb_FieldOutput& stress = Field("S");
  ASSERT_EQ(stress.bulkDataBlocks().size(), 4);
  EXPECT_EQ(MessageOf([&] { stress.values()[0]; }), "Invalid data: must be float tensor.");
  EXPECT_EQ(MessageOf([&] { stress.values()[1]; }), "Tensor type not implemented.");
  EXPECT_EQ(MessageOf([&] { stress.bulkDataBlocks()[3].localCoordSystem(); }),
            "Tensor type not implemented.");
  EXPECT_EQ(MessageOf([&] { Field("V").values()[0]; }),
            "Transformation not allowed for scalar, vector or matrix data.");
  EXPECT_EQ(stress.values()[2].elementLabel(), 2);
  EXPECT_FLOAT_EQ(stress.values()[2].data()[5], 5);
}

TEST_F(SubField, ArraysThatDisagreeWithTheirBlockGiveTheComposedLengthMessage) {
  WriteDisplacements();
  odb_FieldOutput& s = m_frame.FieldOutput("S", "", odb_Enum::TENSOR_3D_FULL);
  s.addData(odb_Enum::INTEGRATION_POINT, *m_instance, Ints({1}), Table(8, 6));
  s.addData(odb_Enum::ELEMENT_NODAL, *m_instance, Ints({3}), Table(4, 6));
  s.addData(odb_Enum::CENTROID, *m_instance, Ints({1, 2}), Table(2, 6), odb_SectionPoint(),
            odb_SequenceSequenceFloat(), Table(2, 6));
  s.addData(odb_Enum::WHOLE_ELEMENT, *m_instance, Ints({2}), Table(1, 6), odb_SectionPoint(),
            Table(1, 4));
  s.addData(odb_Enum::INTEGRATION_POINT, *m_instance, Ints({2}), Table(8, 6));
  Damage(Shorten("U", 0, "labels", 4) + "UPDATE field_block SET per_label = 4" + Block("S", 0) +
         ";" + Shorten("S", 1, "data", 24) + Shorten("S", 2, "conjugate", 1) +
         Shorten("S", 3, "orientation", 16));
  const std::string lead = "Length of data sequence incorrect. Data at ";
  const odb_FieldOutput& u = Field("U");
  EXPECT_EQ(MessageOf([&] { u.values()[0]; }),
            lead +
                "4 locations expected. Data at 3 locations provided. Nodal data request "
                "failed.");
  EXPECT_FLOAT_EQ(u.values()[4].data()[0], 0);
  const odb_FieldOutput& stress = Field("S");
  EXPECT_EQ(MessageOf([&] { stress.bulkDataBlocks()[0].data(); }),
            lead +
                "8 locations expected. Data at 4 locations provided. Element data request "
                "failed. Element type is C3D8. Data at 8 integration points per element "
                "expected.");
  EXPECT_EQ(MessageOf([&] { stress.bulkDataBlocks()[1].data(); }),
            lead +
                "4 locations expected. Data at 3 locations provided. Element data request "
                "failed. Element type is C3D4. Data at 4 nodes per element expected.");
  EXPECT_EQ(MessageOf([&] { stress.bulkDataBlocks()[2].data(); }),
            lead +
                "4 locations expected. Data at 3 locations provided. Element data request "
                "failed. Element type is C3D8. Data at 1 location per element expected.");
  EXPECT_EQ(MessageOf([&] { stress.bulkDataBlocks()[3].data(); }),
            lead +
                "1 locations expected. Data at 0 locations provided. Element data request "
                "failed. Element type is C3D8. Data at 1 location per element expected.");
  // The two integration-point blocks of C3D8 form one sub-field: the good one is refused with
  // the bad, and the elements of the other blocks read.
  EXPECT_EQ(stress.bulkDataBlocks().size(), 4);
}

TEST_F(SubField, TensorsStoredInDoublePrecisionAreRefused) {
  odb_FieldOutput& s = m_frame.FieldOutput("S", "", odb_Enum::TENSOR_2D_PLANAR);
  s.addData(odb_Enum::CENTROID, *m_instance, Ints({1, 2}), Table(2, 3));
  s.addData(odb_Enum::CENTROID, *m_instance, Ints({3}), Table(1, 3));
  Damage(
      "UPDATE array_chunk SET data = data || data WHERE array_id = (SELECT data FROM "
      "field_block" +
      Block("S", 0) +
      ");"
      "UPDATE array SET bytes = 2 * bytes WHERE id = (SELECT data FROM field_block" +
      Block("S", 0) + ");");
  EXPECT_EQ(MessageOf([&] { Field("S").values()[0]; }), "Invalid data: must be float tensor.");
  EXPECT_FLOAT_EQ(Field("S").values()[2].data()[1], 1);
}

TEST_F(SubField, ComplexTensorsWithPartsInTwoPrecisionsAreRefused) {
  odb_FieldOutput& c = m_frame.FieldOutput("C", "", odb_Enum::TENSOR_2D_PLANAR);
  c.addData(odb_Enum::CENTROID, *m_instance, Ints({1, 2}), Table(2, 3), odb_SectionPoint(),
            odb_SequenceSequenceFloat(), Table(2, 3));
  Damage(
      "UPDATE array_chunk SET data = data || data WHERE array_id = (SELECT data FROM "
      "field_block" +
      Block("C", 0) +
      ");"
      "UPDATE array SET bytes = 2 * bytes WHERE id = (SELECT data FROM field_block" +
      Block("C", 0) + ");");
  EXPECT_EQ(MessageOf([&] { Field("C").values()[0]; }), "Double tensor data expected.");
}

TEST_F(SubField, SectionPointsTheElementsDoNotDefineAreRefused) {
  odb_FieldOutput& s = m_frame.FieldOutput("S", "", odb_Enum::TENSOR_3D_FULL);
  s.addData(odb_Enum::CENTROID, *m_instance, Ints({4}), Table(1, 6), odb_SectionPoint(1, "Bottom"));
  s.addData(odb_Enum::CENTROID, *m_instance, Ints({5}), Table(1, 6), odb_SectionPoint(2, "Top"));
  s.addData(odb_Enum::CENTROID, *m_instance, Ints({4, 5}), Table(2, 6),
            odb_SectionPoint(1, "Bottom"));
  Damage("UPDATE field_block SET section_point = 7" + Block("S", 0) + ";" +
         "UPDATE field_block SET section_category = ''" + Block("S", 1) + ";");
  const odb_FieldOutput& stress = Field("S");
  EXPECT_EQ(MessageOf([&] { stress.values()[0]; }), "Section Point number 7.");
  EXPECT_EQ(MessageOf([&] { stress.bulkDataBlocks()[1].data(); }),
            "Section point not valid for elements.");
  EXPECT_EQ(stress.values()[3].elementLabel(), 5);
  EXPECT_EQ(stress.values()[3].sectionPoint().description(), odb_String("Bottom"));
}

TEST_F(SubField, SubFieldsWithoutAStoredGroupRefuseTheirSetAndIndices) {
  odb_FieldOutput& s = m_frame.FieldOutput("S", "", odb_Enum::TENSOR_3D_FULL);
  s.addData(odb_Enum::INTEGRATION_POINT, *m_instance, Ints({1}), Table(8, 6));
  odb_SequenceElementFace faces;
  faces.append(odb_Enum::FACE2);
  const odb_Set& surface = m_instance->Surface("TOP", Ints({1}), faces);
  EXPECT_EQ(MessageOf([&] { s.getSubset(surface); }), "Unknown Set type.");
  const odb_SubField none;
  EXPECT_EQ(MessageOf([&] { none.setName(); }), "orphaned field");
  EXPECT_EQ(MessageOf([&] { none.getSubsetIndices(); }), "orphaned field");
  const odb_FieldOutput nodal = s.getSubset(odb_Enum::ELEMENT_NODAL);
  ASSERT_EQ(nodal.SubField().size(), 1u);
  EXPECT_EQ(MessageOf([&] { nodal.SubField()[0].getSubsetIndices(); }),
            "Subfield spanning subsets is invalid.");
  EXPECT_EQ(nodal.SubField()[0].setName(), s.SubField()[0].setName());
}
