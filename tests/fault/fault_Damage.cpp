// The damaged-file suite: thousands of damaged copies of one valid database, each opened and
// walked completely in a child process of its own, under a time limit. Every copy must either
// be refused with an odb_Exception or read back exactly as the intact file does; a crash (a
// signal, a sanitizer's report), a hang or a difference fails the suite.
//
//   fault_damage [--copies N] [--seed S] [--page-size P] [--seconds T] [--keep DIR]
//   fault_damage --write-seed DIR     (writes the valid copy into DIR, for the fuzz driver)
//
// The valid file is written by the library, then copied with small pages (1 KiB by default)
// so that a few kilobytes of damage reach every kind of page: b-tree leaves and interior pages,
// indexes, overflow chains and the file header. Five kinds of damage take turns: truncation,
// flipped bits, a zeroed 4 KiB block, two pages swapped, and an overwritten header (the file's
// first 100 bytes or a page's b-tree header).
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "fault_Walk.h"
#include "odb_API.h"

namespace {

using Bytes = std::vector<unsigned char>;

Bytes ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return Bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

void WriteFile(const std::string& path, const Bytes& bytes) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(reinterpret_cast<const char*>(bytes.data()),
            static_cast<std::streamsize>(bytes.size()));
}

const char* const kKinds[] = {"truncated", "flipped bits", "zeroed 4 KiB block", "swapped pages",
                              "overwritten header"};
const int kKindCount = 5;

// Damages `bytes` in the way `kind` names, at places `random` picks.
void Damage(Bytes& bytes, int kind, std::size_t pageSize, std::mt19937_64& random) {
  auto below = [&random](std::size_t n) {
    return n == 0 ? 0 : static_cast<std::size_t>(random() % n);
  };
  const std::size_t pages = bytes.size() / pageSize;
  switch (kind) {
    case 0:  // truncated anywhere, also inside the header
      bytes.resize(below(bytes.size()));
      break;
    case 1:  // one to three bits flipped, each in a byte of its own
      for (std::size_t n = 1 + below(3); n > 0; --n) bytes[below(bytes.size())] ^= 1u << below(8);
      break;
    case 2: {  // a 4 KiB block of zeros, aligned as a disk's sector would be, or anywhere
      const std::size_t at =
          random() % 2 ? below(bytes.size() / 4096 + 1) * 4096 : below(bytes.size());
      for (std::size_t i = at; i < at + 4096 && i < bytes.size(); ++i) bytes[i] = 0;
      break;
    }
    case 3: {  // two different pages trade places
      const std::size_t a = below(pages), b = (a + 1 + below(pages - 1)) % pages;
      std::swap_ranges(bytes.begin() + a * pageSize, bytes.begin() + (a + 1) * pageSize,
                       bytes.begin() + b * pageSize);
      break;
    }
    default: {  // random bytes over a header: the file's, or a page's b-tree header
      const bool file = random() % 2;
      const std::size_t page = below(pages);
      const std::size_t start = file ? 0 : page * pageSize + (page == 0 ? 100 : 0);
      const std::size_t length = file ? 100 : 12;
      const std::size_t from = start + below(length), n = 1 + below(start + length - from);
      for (std::size_t i = from; i < from + n && i < bytes.size(); ++i)
        bytes[i] = static_cast<unsigned char>(random());
      break;
    }
  }
}

enum Outcome { kRefused, kIdentical, kDifferent, kCrashed, kHung };

struct Result {
  Outcome outcome;
  std::string text;  // the refusal, or the walk's text
};

// Walks `path` in a child process that has `seconds` to finish.
Result WalkInChild(const std::string& path, const std::string& reference, int seconds) {
  int pipeFds[2];
  if (::pipe(pipeFds) != 0) std::abort();
  const pid_t pid = ::fork();
  if (pid == 0) {
    ::close(pipeFds[0]);
    ::alarm(static_cast<unsigned>(seconds));
    std::string out;
    try {
      out = "D" + fault_Walk(path);
    } catch (const odb_Exception& e) {
      out = "R" + std::string(e.JournalMessage().CStr());
    }
    for (std::size_t done = 0; done < out.size();) {
      const ssize_t n = ::write(pipeFds[1], out.data() + done, out.size() - done);
      if (n <= 0) break;
      done += static_cast<std::size_t>(n);
    }
    ::_exit(0);  // skips the library's shut-down, which belongs to the parent
  }
  ::close(pipeFds[1]);
  std::string text;
  char buffer[65536];
  for (ssize_t n; (n = ::read(pipeFds[0], buffer, sizeof buffer)) > 0;) text.append(buffer, n);
  ::close(pipeFds[0]);
  int status = 0;
  ::waitpid(pid, &status, 0);
  if (WIFSIGNALED(status) && WTERMSIG(status) == SIGALRM) return {kHung, text};
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0 || text.empty())
    return {kCrashed, "status " + std::to_string(status)};
  if (text[0] == 'R') return {kRefused, text.substr(1)};
  return {text.substr(1) == reference ? kIdentical : kDifferent, text.substr(1)};
}

// The kind of a refusal, for the summary: its text up to the first digit or quote.
std::string Gist(const std::string& message) {
  std::string gist;
  const std::size_t at = message.find("is damaged:");
  const std::string rest = at == std::string::npos ? message : message.substr(at + 12);
  for (char c : rest) {
    if (c == '\'' || c == '(' || (c >= '0' && c <= '9')) break;
    gist += c;
  }
  return gist.substr(0, 70);
}

std::string Argument(int argc, char** argv, const char* name, const char* fallback) {
  for (int i = 1; i + 1 < argc; ++i)
    if (std::strcmp(argv[i], name) == 0) return argv[i + 1];
  return fallback;
}

}  // namespace

int main(int argc, char** argv) {
  const int copies = std::atoi(Argument(argc, argv, "--copies", "5000").c_str());
  const unsigned long long seed =
      std::strtoull(Argument(argc, argv, "--seed", "1").c_str(), nullptr, 10);
  const int pageSize = std::atoi(Argument(argc, argv, "--page-size", "1024").c_str());
  const int seconds = std::atoi(Argument(argc, argv, "--seconds", "20").c_str());
  const std::string keep = Argument(argc, argv, "--keep", "");
  const std::string seedDir = Argument(argc, argv, "--write-seed", "");

  char folderTemplate[] = "/tmp/fault_damage.XXXXXX";
  const std::string folder = ::mkdtemp(folderTemplate);
  const std::string valid = folder + "/valid.odb", small = folder + "/small.odb",
                    copy = folder + "/copy.odb";
  odb_initializeAPI();
  int status = 0;
  try {
    fault_WriteValidFile(valid);
    fault_CopyWithPageSize(valid, small, pageSize);
    const std::string reference = fault_Walk(small);
    if (reference != fault_Walk(valid)) {
      std::fprintf(stderr, "fault_damage: the copy with small pages reads differently\n");
      status = 1;
    }
    if (!seedDir.empty()) {
      ::mkdir(seedDir.c_str(), 0755);
      WriteFile(seedDir + "/valid.odb", ReadFile(small));
      std::printf("fault_damage: seed written to %s/valid.odb\n", seedDir.c_str());
    }
    const Bytes intact = ReadFile(small);
    std::printf("fault_damage: %d copies of a %zu-byte file (%zu pages of %d bytes), seed %llu\n",
                seedDir.empty() ? copies : 0, intact.size(), intact.size() / pageSize, pageSize,
                seed);
    int counts[5] = {0, 0, 0, 0, 0};
    int byKind[kKindCount][5] = {};
    std::map<std::string, int> refusals;
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; seedDir.empty() && i < copies; ++i) {
      std::mt19937_64 random(seed * 1000003u + static_cast<unsigned>(i));
      Bytes damaged = intact;
      const int kind = i % kKindCount;
      Damage(damaged, kind, static_cast<std::size_t>(pageSize), random);
      for (const char* side : {"-journal", "-wal", "-shm", ".lck"})
        std::remove((copy + side).c_str());
      WriteFile(copy, damaged);
      const Result result = WalkInChild(copy, reference, seconds);
      ++counts[result.outcome];
      ++byKind[kind][result.outcome];
      if (result.outcome == kRefused) ++refusals[Gist(result.text)];
      if (result.outcome >= kDifferent) {
        std::printf("copy %d (%s): %s\n", i, kKinds[kind],
                    result.outcome == kDifferent ? "read back different data"
                    : result.outcome == kHung    ? "hung"
                                                 : ("crashed, " + result.text).c_str());
        if (!keep.empty()) WriteFile(keep + "/copy" + std::to_string(i) + ".odb", damaged);
      }
    }
    const double elapsed =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    if (seedDir.empty()) {
      std::printf("\n%-20s %8s %8s %9s %9s %8s %6s\n", "damage", "tried", "refused", "identical",
                  "different", "crashes", "hangs");
      for (int k = 0; k < kKindCount; ++k) {
        const int* c = byKind[k];
        std::printf("%-20s %8d %8d %9d %9d %8d %6d\n", kKinds[k], c[0] + c[1] + c[2] + c[3] + c[4],
                    c[kRefused], c[kIdentical], c[kDifferent], c[kCrashed], c[kHung]);
      }
      std::printf("%-20s %8d %8d %9d %9d %8d %6d\n", "all", copies, counts[kRefused],
                  counts[kIdentical], counts[kDifferent], counts[kCrashed], counts[kHung]);
      std::printf("\nrefusals by message:\n");
      for (const auto& entry : refusals)
        std::printf("%7d  %s\n", entry.second, entry.first.c_str());
      std::printf("\n%.1f s, %.1f ms a copy\n", elapsed, 1000 * elapsed / std::max(copies, 1));
      if (counts[kDifferent] + counts[kCrashed] + counts[kHung] > 0) status = 1;
      std::printf("%d passed, %d failed\n", counts[kRefused] + counts[kIdentical],
                  counts[kDifferent] + counts[kCrashed] + counts[kHung]);
    }
  } catch (const odb_Exception& e) {
    std::fprintf(stderr, "fault_damage: %s\n", e.JournalMessage().CStr());
    status = 1;
  }
  odb_finalizeAPI();
  for (const char* name : {"/valid.odb", "/small.odb", "/copy.odb", "/copy.odb-journal"})
    std::remove((folder + name).c_str());
  ::rmdir(folder.c_str());
  return status;
}
