#include <gtest/gtest.h>
#include <sqlite3.h>

#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#include "FieldFile.h"
#include "ThrownMessage.h"
#include "odb_API.h"
#include "odb_Verify.h"
#include "store_Database.h"
#include "store_PageChecksum.h"

// Files damaged behind the library's back, as a disk or a copy can leave them. Each damage
// below read back silently wrong (or, for the two casts, as undefined behaviour) before pages
// carried checksums and stored codes were checked; now each is refused with a message that
// names the file and what was being read.
class Damage : public FieldFile {
 protected:
  void SetUp() override {
    FieldFile::SetUp();
    odb_SequenceInt nodes;
    odb_SequenceSequenceFloat u;
    for (int n = 1; n <= 12; ++n) {
      nodes.append(n);
      u.append(Points({{0.5f * n, 0.25f, -1.0f}})[0]);
    }
    m_frame.VectorOutput("U", "Displacement", 3).addData(odb_Enum::NODAL, *m_instance, nodes, u);
    // Stresses easy to find in the file's bytes.
    std::vector<float> s(2 * 8 * 6, 12345.678f);
    m_frame.FieldOutput("S", "Stress", odb_Enum::TENSOR_3D_FULL)
        .addData(odb_Enum::INTEGRATION_POINT, *m_instance, 2, std::vector<int>{1, 2}, 16, 6, s);
    odb_SequenceElementFace faces;
    faces.append(odb_Enum::FACE1);
    m_instance->Surface("TOP", Ints({1}), faces);
    odb_Step& step = m_odb->steps()["LOAD"];
    odb_HistoryPoint point(m_instance->getNodeFromLabel(12), *m_instance);
    step.HistoryRegion("TIP", "", point).HistoryOutput("U3", "").addData(0.5, 2.0f);
    saveOdb(*m_odb);
    closeOdb(*m_odb);
  }

  // Runs `sql` through the library's own connection, so pages keep matching checksums: the
  // values themselves are what is wrong.
  void ChangeRows(const std::string& sql) {
    std::shared_ptr<store_Database> db = store_Database::Open(m_path, false);
    char* error = nullptr;
    ASSERT_EQ(sqlite3_exec(db->Connection(), sql.c_str(), nullptr, nullptr, &error), SQLITE_OK)
        << (error ? error : "");
    db->Commit();
    db->Close();
  }

  // The first page of the b-tree of table or index `name`, and the page size.
  int RootPage(const std::string& name, int& pageSize) {
    sqlite3* db = nullptr;
    sqlite3_open_v2(m_path.c_str(), &db, SQLITE_OPEN_READONLY, nullptr);
    sqlite3_stmt* q = nullptr;
    sqlite3_prepare_v2(db,
                       ("SELECT rootpage FROM sqlite_schema WHERE name = '" + name + "'").c_str(),
                       -1, &q, nullptr);
    const int page = sqlite3_step(q) == SQLITE_ROW ? sqlite3_column_int(q, 0) : 0;
    sqlite3_finalize(q);
    sqlite3_prepare_v2(db, "PRAGMA page_size", -1, &q, nullptr);
    sqlite3_step(q);
    pageSize = sqlite3_column_int(q, 0);
    sqlite3_finalize(q);
    sqlite3_close(db);
    return page;
  }

  std::string Bytes() {
    std::ifstream in(m_path, std::ios::binary);
    return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  }

  void Write(std::size_t at, const std::string& bytes) {
    std::fstream out(m_path, std::ios::in | std::ios::out | std::ios::binary);
    out.seekp(static_cast<std::streamoff>(at));
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  }

  // Zeroes the cells of the b-tree page that starts table or index `name`, as a lost block of the
  // disk would, and leaves its header.
  void ZeroCells(const std::string& name) {
    int pageSize = 0;
    const int page = RootPage(name, pageSize);
    ASSERT_GT(page, 1);
    const std::size_t start = static_cast<std::size_t>(page - 1) * pageSize;
    Write(start + 12, std::string(pageSize - 12 - store_kChecksumBytes, '\0'));
  }

  odb_Odb& Reader() { return openOdb(m_path.c_str(), true); }
  std::string Damaged() const { return "The file " + m_path + " is damaged: "; }
};

TEST_F(Damage, AHistoryOutputOfAnUnknownDataTypeIsRefused) {
  ChangeRows("UPDATE history_output SET type = 99");
  odb_Step& step = Reader().steps()["LOAD"];
  EXPECT_EQ(MessageOf([&] { step.historyRegions()["TIP"].historyOutputs(); }),
            Damaged() +
                "the history outputs of region 'TIP' in step 'LOAD' hold a code no writer "
                "writes (history_output.type holds 99, not 0 to 11).");
}

TEST_F(Damage, ASurfaceFaceThatIsNoFaceIsRefused) {
  ChangeRows(
      "UPDATE array_chunk SET data = x'28000000' WHERE array_id = (SELECT faces FROM "
      "set_member WHERE faces IS NOT NULL)");
  odb_Instance instance = Reader().rootAssembly().instance("B-1");
  EXPECT_EQ(MessageOf([&] { instance.surfaces(); }),
            Damaged() +
                "the sets of instance 'B-1' hold a code no writer writes (set_member.faces "
                "holds 40, not 0 to 11).");
}

TEST_F(Damage, ARowOfNullsIsRefusedNotReadAsZeros) {
  // NOT NULL lifted for the change, as a zeroed cell (which reads as NULL) lifts it.
  ChangeRows(
      "PRAGMA writable_schema = 1; UPDATE sqlite_schema SET sql = replace(sql, 'increment "
      "INTEGER NOT NULL', 'increment INTEGER') WHERE name = 'frame'; PRAGMA writable_schema = 0;");
  ChangeRows("UPDATE frame SET increment = NULL");
  odb_Step& step = Reader().steps()["LOAD"];
  EXPECT_EQ(MessageOf([&] { step.frames().size(); }),
            Damaged() +
                "the frames of step 'LOAD' hold a value no writer writes (frame.increment "
                "holds NULL).");
}

TEST_F(Damage, ALostGroupOfRecordsIsRefused) {
  ZeroCells("frame");
  odb_Step& step = Reader().steps()["LOAD"];
  const std::string message = MessageOf([&] { step.frames().size(); });
  EXPECT_EQ(message.rfind(Damaged() + "the frames of step 'LOAD' do not match their checksum", 0),
            0u)
      << message;
}

TEST_F(Damage, AChangedFloatIsRefused) {
  const float s = 12345.678f;
  std::string bytes = Bytes();
  const std::size_t at = bytes.find(std::string(reinterpret_cast<const char*>(&s), sizeof s));
  ASSERT_NE(at, std::string::npos);
  Write(at, std::string(1, static_cast<char>(bytes[at] ^ 0x10)));
  odb_FieldOutput field = Reader().steps()["LOAD"].frames()[0].fieldOutputs()["S"];
  const std::string message = MessageOf([&] { field.bulkDataBlocks()[0].data(); });
  EXPECT_EQ(message.rfind(Damaged() + "the data of field 'S' in frame 0 of step 'LOAD' do not "
                                      "match their checksum (page ",
                          0),
            0u)
      << message;
}

TEST_F(Damage, ADescriptionLostThroughADamagedIndexIsRefused) {
  int pageSize = 0;
  const int page = RootPage("sqlite_autoindex_header_1", pageSize);
  ASSERT_GT(page, 1);
  const std::size_t start = static_cast<std::size_t>(page - 1) * pageSize;
  std::string bytes = Bytes();
  const std::size_t at = bytes.find("description", start);
  ASSERT_LT(at, start + pageSize);
  Write(at, "D");
  const std::string message = MessageOf([&] { Reader(); });
  EXPECT_NE(message.find(Damaged() + "the header do not match their checksum"), std::string::npos)
      << message;
}

TEST_F(Damage, VerifyListsEveryDamagedPageAndBadCode) {
  EXPECT_EQ(odb_verifyOdb(m_path.c_str()).size(), 0) << "a sound file";
  ChangeRows("UPDATE step SET domain = 7");
  odb_SequenceString problems = odb_verifyOdb(m_path.c_str());
  ASSERT_EQ(problems.size(), 1);
  EXPECT_STREQ(problems[0].CStr(), "Step 1 has the unknown domain 7.");
  int pageSize = 0;
  const int page = RootPage("frame", pageSize);
  Write(static_cast<std::size_t>(page - 1) * pageSize + 200, "x");
  problems = odb_verifyOdb(m_path.c_str());
  ASSERT_GE(problems.size(), 2);
  EXPECT_EQ(problems[0].CStr(), "Page " + std::to_string(page) + " does not match its checksum.");
}
