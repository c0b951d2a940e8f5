// A program outside the library's tree that finds it only through its installed files.
#include <odb_API.h>
#include <odb_Version.h>

#include <cstdio>

int main() {
  odb_String name("QTVodb");
  name += " ";
  name += QTVODB_VERSION_STRING;
  if (name.Find("QTVodb") != 0 || name.Length() <= 7) {
    std::fprintf(stderr, "unexpected string '%s'\n", name.CStr());
    return 1;
  }
  std::printf("consumer linked against %s\n", name.CStr());
  return 0;
}
