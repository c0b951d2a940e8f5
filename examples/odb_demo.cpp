// The example program: what this release of the library holds.
#include <cstdio>

#include "odb_API.h"

namespace {

template <class Enm>
void PrintCatalogue(const char* name) {
  std::printf("  %-22s %d messages\n", name, uti_LabelMap<Enm, 1>::Size());
}

}  // namespace

int main() {
  std::printf("QTVodb %s (database schema version %d)\n", QTVODB_VERSION_STRING,
              QTVODB_SCHEMA_VERSION);
  std::printf("Message catalogues:\n");
  PrintCatalogue<odb_ExceptionsEnm>("odb_Exceptions");
  PrintCatalogue<odb_StepRepositoryEnm>("odb_StepRepository");

  // A taste of the value types every later object is built from.
  odb_SequenceString steps;
  steps.append("Step-1");
  steps.append("Step-2");
  odb_SequenceString copy(steps);
  copy.get(1) = "Step-2 (renamed in the copy)";
  std::printf("A sequence and its copy after one write: \"%s\" / \"%s\"\n", steps[1].CStr(),
              copy[1].CStr());

  odb_Repository<odb_String, int> labels;
  labels.insert("Part-B", 2);
  labels.insert("Part-A", 1);
  std::printf("Repository in name order:");
  for (odb_RepositoryIterator<odb_String, int> it(labels); !it.isDone(); it.next())
    std::printf(" %s=%d", it.currentKey().CStr(), it.currentValue());
  std::printf("\n");

  try {
    labels.constGet("Part-C");
  } catch (const odb_Exception& e) {
    std::printf("Looking up a missing name: %s\n", e.JournalMessage().CStr());
  }
  return 0;
}
