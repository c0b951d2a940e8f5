#include "odb_Exception.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "AssertRecorder.h"
#include "odb_Exceptions.h"

namespace {

using Exceptions = uti_LabelMap<odb_ExceptionsEnm, 1>;

std::string Journal(const odb_Exception& e) {
  return e.JournalMessage().CStr();
}

bool StartsWith(const std::string& text, const std::string& prefix) {
  return text.compare(0, prefix.size(), prefix) == 0;
}

}  // namespace

TEST(Exception, EachCodeFillsItsCatalogueTextAsItSays) {
  AssertRecorder recorder;
  EXPECT_EQ(Journal(odb_Exception(0, "a.odb", "detail")),
            Exceptions::LabelString(odb_Exceptions_PREVIOUS_VERSION));
  EXPECT_TRUE(StartsWith(Journal(odb_Exception(1, "/runs/beam.odb")),
                         "/runs/beam.odb is from a more recent version of KORVEL.\n\n The"));
  EXPECT_EQ(Journal(odb_Exception(2, "a.odb", "no space")),
            "cannot convert database a.odb, no space");
  // Code 3 has only the detail, in the first place.
  EXPECT_EQ(Journal(odb_Exception(3, "a.odb", "bad header")),
            "isUpgradeRequiredForOdb failed, bad header");
  EXPECT_EQ(Journal(odb_Exception(6, "a.odb", "Frame not found.")), "Frame not found.");
  EXPECT_EQ(Journal(odb_Exception(7, "old.odb", "ignored", 12, 333)),
            "The database file old.odb has version 12. \nThis version number is marked as an "
            "invalid database version. \nOdb upgrade is not supported for this database");
  EXPECT_EQ(Journal(odb_Exception(8, "a.odb", "detail")), "");
  EXPECT_EQ(Journal(odb_Exception(1000, "a.odb", "detail")), "");
  EXPECT_TRUE(recorder.fired().empty());
}

TEST(Exception, PropagateAndCopyKeepDynamicTypeAndEveryField) {
  odb_Exception original(7, "f.odb", "d", 12, 333, true);
  nex_Exception& asBase = original;
  try {
    asBase.Throw("odb/impl/odb_OdbRepository", 120);
  } catch (const nex_Exception& e) {
    std::unique_ptr<nex_Exception> copy(e.Copy());
    EXPECT_EQ(copy->DynTypeId(), odb_Exception::TypeId());
    const auto* odb = dynamic_cast<const odb_Exception*>(copy.get());
    ASSERT_NE(odb, nullptr);
    EXPECT_EQ(odb->Code(), 7);
    EXPECT_EQ(odb->FileName(), "f.odb");
    EXPECT_EQ(odb->Detail(), "d");
    EXPECT_EQ(odb->VersionFound(), 12);
    EXPECT_EQ(odb->VersionExpected(), 333);
    EXPECT_TRUE(odb->Flag());
    EXPECT_STREQ(odb->SourceFile().CStr(), "odb/impl/odb_OdbRepository");
    EXPECT_EQ(odb->SourceLine(), 120);
    EXPECT_STREQ(odb->PythonType(), "OdbError");
    // Propagating the heap copy through its base still throws the derived type.
    EXPECT_THROW(copy->Propagate(), odb_Exception);
    return;
  }
  FAIL() << "Throw did not throw";
}

TEST(Exception, CaughtAsStandardExceptionGivesTheMessage) {
  try {
    odb_ThrowMessage("A part named \"P\" already exists.", "odb/impl/odb_Odb", 77);
  } catch (const std::exception& e) {
    EXPECT_STREQ(e.what(), "A part named \"P\" already exists.");
    const auto& odb = dynamic_cast<const odb_Exception&>(e);
    EXPECT_EQ(odb.Code(), 6);
    EXPECT_EQ(std::string(odb.DeveloperReport().CStr()),
              "A part named \"P\" already exists. (raised in odb/impl/odb_Odb, line 77)");
    return;
  }
  FAIL() << "nothing was thrown";
}
