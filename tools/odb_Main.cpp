// odb: the command-line tool over result databases: info, dump, diff and export.
//
// Every subcommand reads through the library's public interface only. Whatever goes wrong ends in
// one line on standard error naming what was asked and what exists, and exit status 2; diff
// alone uses 1, for files that differ.
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <iostream>
#include <string>

#include "odb_API.h"
#include "tool_Common.h"
#include "tool_Diff.h"
#include "tool_Dump.h"
#include "tool_Export.h"
#include "tool_Info.h"

namespace {

// One line: the library's messages may hold line breaks.
std::string OneLine(std::string text) {
  for (char& c : text)
    if (c == '\n') c = ' ';
  while (!text.empty() && text.back() == ' ') text.pop_back();
  return text;
}

int Fail(const std::string& text) {
  std::cerr << "odb: " << OneLine(text) << '\n';
  return 2;
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app{"Inspect, dump, compare and export result databases."};
  app.name("odb");
  app.require_subcommand(1);
  // Options of the program (--quiet) are taken after the subcommand too.
  app.fallthrough();
  app.set_version_flag("--version", std::string(QTVODB_VERSION_STRING));

  std::string file;
  bool json = false;
  CLI::App* info = app.add_subcommand("info", "What the file holds, in a screenful.");
  info->add_option("FILE", file, "the database")->required();
  info->add_flag("--json", json, "the same as JSON, for scripts");

  bool quiet = false;
  app.add_flag("--quiet,-q", quiet, "no progress line, even on a terminal");

  tool_DumpRequest dump;
  CLI::App* dumpCommand = app.add_subcommand("dump", "One field of one frame as CSV.");
  dumpCommand->add_option("FILE", dump.path, "the database")->required();
  dumpCommand->add_option("--step", dump.step, "the step's name")->required();
  dumpCommand->add_option("--frame", dump.frame, "the frame: 0 the first, -1 the last")->required();
  dumpCommand->add_option("--field", dump.field, "the field output's name")->required();
  dumpCommand->add_option("--position", dump.position,
                          "only values at this position (NODAL, INTEGRATION_POINT, "
                          "ELEMENT_NODAL, CENTROID, WHOLE_ELEMENT)");
  dumpCommand->add_option("--instance", dump.instance, "only values of this instance");

  tool_DiffRequest diff;
  std::string toleranceFile;
  std::vector<std::string> perVariable;
  double absolute = -1, relative = -1;
  CLI::App* diffCommand = app.add_subcommand(
      "diff", "Compare two files; exit status 0 same within tolerance, 1 different, 2 error.");
  diffCommand->add_option("A", diff.a, "the first database")->required();
  diffCommand->add_option("B", diff.b, "the second database")->required();
  diffCommand->add_option("--abs", absolute, "absolute tolerance of every variable")
      ->check(CLI::NonNegativeNumber);
  diffCommand->add_option("--rel", relative, "relative tolerance of every variable")
      ->check(CLI::NonNegativeNumber);
  diffCommand->add_option("--tol", perVariable,
                          "tolerance of one variable, NAME=ABS,REL (repeatable)")
      ->allow_extra_args(false);
  diffCommand->add_option("--tolerances", toleranceFile,
                          "a file of lines \"NAME ABS REL\" (\"*\" for the default)");
  diffCommand->add_flag("--verbose,-v", diff.verbose, "also list the variables that are equal");

  tool_ExportRequest exportRequest;
  CLI::App* exportCommand = app.add_subcommand(
      "export", "The mesh and every frame's fields as VTK files (.vtu per frame, .pvd series).");
  exportCommand->add_option("FILE", exportRequest.path, "the database")->required();
  exportCommand->add_option("--format", exportRequest.format, "the format: vtu")->required();
  exportCommand->add_option("OUT", exportRequest.folder, "the folder the files go to")->required();

  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp& e) {
    return app.exit(e);
  } catch (const CLI::CallForVersion& e) {
    return app.exit(e);
  } catch (const CLI::ParseError& e) {
    std::cerr << "odb: " << OneLine(e.what()) << " (odb --help lists the subcommands)\n";
    return 2;
  }

  odb_initializeAPI();
  // The library's progress landmarks would mix with the tool's output: the tool has its own.
  odb_WipReporter::GenerateWipMessages(false);
  int status = 0;
  try {
    if (info->parsed()) tool_Info(file, json, std::cout);
    if (diffCommand->parsed()) {
      if (!toleranceFile.empty()) diff.tolerances.readFile(toleranceFile);
      if (absolute >= 0) diff.tolerances.setDefaultAbsolute(absolute);
      if (relative >= 0) diff.tolerances.setDefaultRelative(relative);
      for (const std::string& t : perVariable) diff.tolerances.parseOption(t);
      diff.quiet = quiet;
      status = tool_Diff(diff, std::cout);
    }
    if (exportCommand->parsed()) {
      exportRequest.quiet = quiet;
      const std::string pvd = tool_Export(exportRequest, std::cerr);
      if (!quiet) std::cout << pvd << '\n';
    }
    if (dumpCommand->parsed()) {
      dump.quiet = quiet;
      tool_Dump(dump, stdout);
    }
    std::cout.flush();
    if (!std::cout) status = Fail("cannot write the output");
  } catch (const tool_Error& e) {
    status = Fail(e.what());
  } catch (const odb_Exception& e) {
    status = Fail(tool_Str(e.JournalMessage()));
  } catch (const std::exception& e) {
    status = Fail(e.what());
  }
  odb_finalizeAPI();
  return status;
}
