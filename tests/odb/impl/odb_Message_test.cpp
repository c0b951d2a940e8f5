#include "odb_Message.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

#include "odb_API.h"

namespace {

// One line per row: catalogue, code, resource key and text, with newlines shown as \n.
template <class Enm>
void Dump(const char* catalogue, std::ostream& out) {
  for (const uti_LabelRow<Enm>* row = uti_LabelTable<Enm, 1>::rows; row->text || row->key; ++row) {
    std::string text = row->text ? row->text : "(null)";
    for (std::size_t at = text.find('\n'); at != std::string::npos; at = text.find('\n', at + 2))
      text.replace(at, 1, "\\n");
    out << catalogue << '\t' << static_cast<int>(row->code) << '\t'
        << (row->key ? row->key : "(null)") << '\t' << text << '\n';
  }
}

}  // namespace

// Every text users see, word for word: a change to any catalogue shows here and must be made on
// purpose, by writing the new dump (left next to the test program) over the stored one.
TEST(MessageCatalogues, EveryCatalogueMatchesItsStoredDump) {
  std::ostringstream out;
  Dump<odb_AssemblyEnm>("odb_AssemblyEnm", out);
  Dump<odb_DatumCsysEnm>("odb_DatumCsysEnm", out);
  Dump<odb_DiscretePartEnm>("odb_DiscretePartEnm", out);
  Dump<odb_EnvelopeEnm>("odb_EnvelopeEnm", out);
  Dump<odb_ExceptionsEnm>("odb_ExceptionsEnm", out);
  Dump<odb_FieldOutputEnm>("odb_FieldOutputEnm", out);
  Dump<odb_FrameEnm>("odb_FrameEnm", out);
  Dump<odb_HistoryOutputEnm>("odb_HistoryOutputEnm", out);
  Dump<odb_HistoryPointEnm>("odb_HistoryPointEnm", out);
  Dump<odb_HistoryRegionEnm>("odb_HistoryRegionEnm", out);
  Dump<odb_HistoryRegionPersEnm>("odb_HistoryRegionPersEnm", out);
  Dump<odb_InstanceEnm>("odb_InstanceEnm", out);
  Dump<odb_MaterialEnm>("odb_MaterialEnm", out);
  Dump<odb_MathUtilEnm>("odb_MathUtilEnm", out);
  Dump<odb_MeshEnm>("odb_MeshEnm", out);
  Dump<odb_MeshListEnm>("odb_MeshListEnm", out);
  Dump<odb_MessageTextEnm>("odb_MessageTextEnm", out);
  Dump<odb_OdbEnm>("odb_OdbEnm", out);
  Dump<odb_OdbRepositoryEnm>("odb_OdbRepositoryEnm", out);
  Dump<odb_SectionCategoryEnm>("odb_SectionCategoryEnm", out);
  Dump<odb_SectionEnm>("odb_SectionEnm", out);
  Dump<odb_SequenceElementEnm>("odb_SequenceElementEnm", out);
  Dump<odb_SequenceNodeEnm>("odb_SequenceNodeEnm", out);
  Dump<odb_SetEnm>("odb_SetEnm", out);
  Dump<odb_StepEnm>("odb_StepEnm", out);
  Dump<odb_StepRepositoryEnm>("odb_StepRepositoryEnm", out);
  Dump<odb_SubFieldEnm>("odb_SubFieldEnm", out);
  const std::string stored = QTVODB_SOURCE_DIR "/tests/odb/impl/odb_Message_catalogues.txt";
  std::ostringstream expected;
  if (std::ifstream in{stored}) expected << in.rdbuf();
  if (out.str() != expected.str()) {
    std::ofstream("odb_Message_catalogues.txt") << out.str();
    FAIL() << "the catalogues differ from " << stored
           << "; the dump of this build is odb_Message_catalogues.txt in the test's directory";
  }
}

TEST(MessageFormat, FillsPositionalPlaceholdersEverywhere) {
  EXPECT_EQ(odb_FormatMessage("cannot convert database %1$s, %2$s", {"a.odb", "disk full"}),
            "cannot convert database a.odb, disk full");
  EXPECT_EQ(odb_FormatMessage("%2$s then %1$s, again %2$s", {"one", "two"}),
            "two then one, again two");
  EXPECT_EQ(odb_FormatMessage("version %2$i of %1$s", {"f", odb_String(12)}), "version 12 of f");
}

TEST(MessageFormat, FillsUnnumberedPlaceholdersInTurn) {
  EXPECT_EQ(odb_FormatMessage("No step named \"%s\" in StepContainer.", {"Step-1"}),
            "No step named \"Step-1\" in StepContainer.");
  EXPECT_EQ(odb_FormatMessage("%s and %s", {"x", "y"}), "x and y");
}

TEST(MessageFormat, LeavesUnmatchedTextAlone) {
  EXPECT_EQ(odb_FormatMessage("%3$s %s %d 100%", {}), "%3$s %s %d 100%");
  EXPECT_EQ(odb_FormatMessage("%1$x %12$s", {"a"}), "%1$x %12$s");
  EXPECT_EQ(odb_FormatMessage(nullptr, {"a"}), "");
}

TEST(MessageFormat, DoesNotRescanInsertedArguments) {
  EXPECT_EQ(odb_FormatMessage("%1$s: %s", {"%2$s%s", "tail"}), "%2$s%s: %2$s%s");
}
