// Runs the odb program as a user would, and gives back its exit status, standard output and
// standard error, so that tests see what a shell sees.
#ifndef TESTS_TOOLRUN_H
#define TESTS_TOOLRUN_H

#include <sys/wait.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

struct ToolResult {
  int status = -1;
  std::string out, err;
};

// `args` are quoted for the shell; outputs go through files of `dir`.
inline ToolResult RunOdb(const std::string& dir, const std::vector<std::string>& args) {
  std::string command = "'" ODB_TOOL_PATH "'";
  for (const std::string& a : args) {
    command += " '";
    for (char c : a) command += c == '\'' ? std::string("'\\''") : std::string(1, c);
    command += "'";
  }
  const std::string out = dir + "/stdout.txt", err = dir + "/stderr.txt";
  command += " >'" + out + "' 2>'" + err + "' </dev/null";
  const int raw = std::system(command.c_str());
  ToolResult r;
  r.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
  const auto slurp = [](const std::string& path) {
    std::ifstream in(path);
    std::stringstream s;
    s << in.rdbuf();
    return s.str();
  };
  r.out = slurp(out);
  r.err = slurp(err);
  return r;
}

#endif
