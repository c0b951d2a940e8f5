// Writes the odb tool's sample database to the path given, for the Python export test.
#include <cstdio>

#include "ToolSample.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: tool_sample_writer PATH\n");
    return 2;
  }
  odb_initializeAPI();
  try {
    WriteToolSample(argv[1]);
  } catch (const odb_Exception& e) {
    std::fprintf(stderr, "%s\n", e.JournalMessage().CStr());
    return 1;
  }
  odb_finalizeAPI();
  return 0;
}
