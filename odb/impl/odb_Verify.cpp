#include "odb_Verify.h"

#include <string>

#include "odb_Util.h"
#include "store_Verify.h"
#include "thr_ThreadSingleton.h"
#include "wip_WIP.h"

odb_SequenceString odb_verifyOdb(const odb_String& path) {
  const std::string file = odb_ToText(odb_PortablePath(path));
  auto progress = [&file](std::uint64_t done, std::uint64_t total) {
    const std::string line = "Verifying " + file + ": " + std::to_string(done >> 20) + " of " +
                             std::to_string(total >> 20) + " MiB";
    thr_ThreadSingleton<wip_WIP>::Instance().Landmark(odb_FromText(line));
  };
  odb_SequenceString problems;
  for (const std::string& problem : store_Verify(file, progress))
    problems.append(odb_FromText(problem));
  return problems;
}
