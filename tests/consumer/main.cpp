// A program outside the library's tree that finds it only through its installed files. Besides
// linking, it checks what only a program on the other side of the shared library can see: that
// the library exports what a program calls, that the registry and a thread's warning sink are the
// same objects on both sides, and that the library's exceptions are caught by their type here.
#include <odb_API.h>
#include <odb_Version.h>

#include <cstdio>
#include <sstream>

namespace {

int g_failures = 0;

void Check(bool ok, const char* what) {
  if (!ok) {
    std::fprintf(stderr, "consumer: %s\n", what);
    ++g_failures;
  }
}

// Writes a small database, reads it back, and checks the objects shared with the library.
void UseTheLibrary() {
  odb_initializeAPI();
  std::ostringstream warnings;
  odb_WipReporter reporter(warnings);
  wip_WipReporter* before = thr_ThreadSingleton<wip_WIP>::Instance().Install(&reporter);
  {
    odb_Odb& odb = Odb("consumer", "title", "description", "consumer.odb");
    Check(thr_GlobalSingleton<odb_OdbRepository>::Instance().isMember("consumer"),
          "the registry the program sees does not hold the database the library opened");
    odb_DiscretePart& part = odb.DiscretePart("P", odb_Enum::THREE_D, odb_Enum::DEFORMABLE_BODY);
    const int labels[] = {1, 2};
    const float xyz[] = {0, 0, 0, 1, 0, 0};
    part.addNodes(odb_ArrayView<int>(labels, 2), odb_ArrayView<float>(xyz, 6));
    odb_Instance& instance = odb.rootAssembly().Instance("P-1", part);
    odb_Frame frame = odb.Step("S", "", odb_Enum::TIME, 1.0, "", "*STATIC", 0.0).Frame(1, 1.0, "");
    odb_SequenceSequenceFloat values;
    const float u[] = {0.5f};
    values.append(odb_SequenceFloat(u, 1));
    values.append(odb_SequenceFloat(u, 1));
    frame.FieldOutput("T", "", odb_Enum::SCALAR)
        .addData(odb_Enum::NODAL, instance, odb_SequenceInt(labels, 2), values);
    saveOdb(odb);
    closeOdb(odb);
  }
  {
    odb_Odb& odb = openOdb("consumer.odb", true);
    const odb_FieldOutput& t = odb.steps()["S"].frames(0).fieldOutputs()["T"];
    Check(t.values().size() == 2 && t.values()[1].data()[0] == 0.5f,
          "the field read back differs from the one written");
    saveOdb(odb);  // read-only: the library warns through this thread's sink
    Check(warnings.str().find("opened read-only and cannot be saved") != std::string::npos,
          "the warning sink the program installed did not receive the library's warning");
    bool caught = false;
    try {
      odb.steps()["missing"];
    } catch (const odb_Exception& e) {
      caught = e.Code() == 6;
    }
    Check(caught, "an exception of the library was not caught as odb_Exception");
    closeOdb(odb);
  }
  thr_ThreadSingleton<wip_WIP>::Instance().Install(before);
  odb_finalizeAPI();
}

}  // namespace

int main() {
  odb_String name("QTVodb");
  name += " ";
  name += QTVODB_VERSION_STRING;
  if (name.Find("QTVodb") != 0 || name.Length() <= 7) {
    std::fprintf(stderr, "unexpected string '%s'\n", name.CStr());
    return 1;
  }
  try {
    UseTheLibrary();
  } catch (const std::exception& e) {
    std::fprintf(stderr, "consumer: unexpected exception: %s\n", e.what());
    return 1;
  }
  if (g_failures) return 1;
  std::printf("consumer linked against %s\n", name.CStr());
  return 0;
}
