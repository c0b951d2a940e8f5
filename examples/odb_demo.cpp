// The example program: creates a database, writes two steps of frames, saves, reopens it
// read-only and prints what it finds.
//
//   odb_demo [path]      (default: demo.odb in the working folder)
#include <cstdio>

#include "odb_API.h"

namespace {

void Write(const odb_String& path) {
  odb_Odb& odb = Odb("demo", "Cantilever beam", "A loaded cantilever, written by odb_demo", path);
  odb_Step& load = odb.Step("Load", "Apply the tip load", odb_Enum::TIME, 1.0, "", "*STATIC", 0.0);
  for (int i = 1; i <= 4; ++i) load.Frame(i, 0.25 * i, "Increment " + odb_String(i));
  odb_Step& hold = odb.Step("Hold", "Hold the load", odb_Enum::TIME, 2.0, "Load", "*STATIC", 1.0);
  for (int i = 1; i <= 3; ++i) hold.Frame(i, 2.0 * i / 3.0, "Increment " + odb_String(i));
  saveOdb(odb);
  closeOdb(odb);
}

void Read(const odb_String& path) {
  odb_Odb& odb = openOdb(path, true);
  std::printf("Database %s\n  title: %s\n  description: %s\n", odb.path().CStr(),
              odb.analysisTitle().CStr(), odb.description().CStr());
  odb_StepRepositoryIT it(odb.steps());
  for (it.first(); !it.isDone(); it.next()) {
    const odb_Step& step = it.currentValue();
    std::printf("  step %-5s starts at %.2f, %d frames:", step.name().CStr(), step.totalTime(),
                step.frames().size());
    for (int i = 0; i < step.frames().size(); ++i)
      std::printf(" %.4g", step.frames(i).frameValue());
    std::printf("\n");
  }
  odb_Frame frame = odb.getFrame(1.6, odb_Enum::CLOSEST);
  std::printf("  nearest frame to analysis time 1.6: \"%s\", frame value %.4g\n",
              frame.description().CStr(), frame.frameValue());
  closeOdb(odb);
}

}  // namespace

int main(int argc, char** argv) {
  std::printf("QTVodb %s (database schema version %d)\n", QTVODB_VERSION_STRING,
              QTVODB_SCHEMA_VERSION);
  odb_initializeAPI();
  int status = 0;
  try {
    odb_String path = argc > 1 ? argv[1] : "demo.odb";
    Write(path);
    Read(path);
    std::printf(
        "The database is kept at %s: open it again, or read it with sqlite3 "
        "(docs/file-format.md).\n",
        openOdb(path, true).path().CStr());
  } catch (const odb_Exception& e) {
    std::fprintf(stderr, "odb_demo: %s\n", e.JournalMessage().CStr());
    status = 1;
  }
  odb_finalizeAPI();
  return status;
}
