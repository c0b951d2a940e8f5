// The fuzz driver of the open-and-walk path: each input is written as a database file, opened
// read-only and walked completely (fault_Walk). A refusal (odb_Exception) is a good outcome;
// libFuzzer with the sanitizers reports anything else: a crash, undefined behaviour, a leak, a
// hang (-timeout) or memory beyond -rss_limit_mb. README.md says how to build and run it.
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "fault_Walk.h"
#include "odb_API.h"

namespace {

std::string g_path;

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  odb_initializeAPI();
  // One file per fuzzing process, in memory where the system offers it.
  const char* folder = std::getenv("FUZZ_TMPDIR");
  if (!folder) folder = ::access("/dev/shm", W_OK) == 0 ? "/dev/shm" : "/tmp";
  g_path = std::string(folder) + "/fuzz_open_walk." + std::to_string(::getpid()) + ".odb";
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  for (const char* side : {"", "-journal", "-wal", "-shm"}) std::remove((g_path + side).c_str());
  if (std::FILE* file = std::fopen(g_path.c_str(), "wb")) {
    if (size) std::fwrite(data, 1, size, file);
    std::fclose(file);
  }
  try {
    fault_Walk(g_path);
  } catch (const odb_Exception&) {
    // A clean refusal of a damaged file.
  }
  return 0;
}
