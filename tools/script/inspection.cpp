// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/inspection.h"

#include <fmt/format.h>
#include <unistd.h>

#include "base/text.h"
#include "script/script_host.h"
#include "script/survey/inventory.h"
#include "script/survey/library_objects.h"
#include "script/values/conversions.h"

namespace quarlin::script_tool {
namespace {

namespace fs = std::filesystem;

survey::Surroundings SurroundingsOf(ScriptRunner& runner, survey::LibraryObjects& library) {
  survey::Surroundings surroundings;
  for (const ScriptRunner::NamedObject& object : runner.Objects()) {
    surroundings.objects.push_back({object.name, object.object});
  }
  surroundings.make = [&library](std::u16string_view programId) { return library.Make(programId); };
  surroundings.compile = [&runner](const fs::path& file) -> std::optional<vbs::ScriptError> {
    try {
      runner.Check(file);
      return std::nullopt;
    } catch (const vbs::ScriptError& error) {
      return error;
    }
  };
  return surroundings;
}

// In one place on a terminal; a line each for whoever keeps what is printed would only be in the way.
class ProgressLine {
 public:
  void Show(std::size_t done, std::size_t all, const std::string& file) {
    constexpr std::size_t width = 60;
    if (isTerminal_) PrintText(stderr, fmt::format("\r\033[K{}/{} {:.{}}", done + 1, all, file, width));
  }
  ~ProgressLine() {
    if (isTerminal_) PrintText(stderr, "\r\033[K");
  }

 private:
  bool isTerminal_ = isatty(STDERR_FILENO) != 0;
};

// Only what is sure enough: a procedure that is not there may be another script's to add.
bool IsWarning(const survey::Finding& finding) {
  using survey::Topic;
  return finding.topic != Topic::Locale && finding.topic != Topic::Compile &&
         finding.topic != Topic::Procedure;
}

}  // namespace

void PrintText(std::FILE* stream, std::string_view utf8) {
  std::fwrite(utf8.data(), 1, utf8.size(), stream);
  std::fflush(stream);
}

void ReportError(const fs::path& file, const vbs::ScriptError& error) {
  std::string lines;
  for (const std::string& line : SplitLines(vbs::Utf8Of(ErrorReport(file.filename().string(), error)))) {
    lines += line + "\n";
  }
  PrintText(stderr, fmt::format("{}error {} line {} column {} {}\n", lines, error.number, error.position.line,
                                error.position.column, vbs::Utf8Of(error.FullDescription())));
}

int CheckScript(const Options& options, const fs::path& file, ScriptRunner& runner) {
  survey::LibraryObjects library;
  survey::Surroundings surroundings = SurroundingsOf(runner, library);
  auto error = surroundings.compile(file);
  surroundings.compile = [&error](const fs::path&) { return error; };
  const survey::ScriptReport report = survey::ReportOn(file, file.filename().string(), surroundings);
  if (options.json) {
    PrintText(stdout, survey::JsonOf(report));
  } else {
    for (const survey::Finding& finding : report.findings) {
      if (IsWarning(finding)) {
        PrintText(stderr, fmt::format("warning line {} {}\n", finding.at.line, OnOneLine(finding.text)));
      }
    }
  }
  if (error) ReportError(file, *error);
  return error ? scriptError : done;
}

int TakeInventory(const Options& options, const fs::path& folder, ScriptRunner& runner) {
  survey::LibraryObjects library;
  const survey::Inventory inventory = [&] {
    ProgressLine line;
    return survey::TakeInventory(
        folder, SurroundingsOf(runner, library),
        [&line](std::size_t done, std::size_t all, const std::string& file) { line.Show(done, all, file); });
  }();
  PrintText(stdout, options.json ? survey::JsonOf(inventory) : survey::TableOf(inventory));
  return inventory.AnythingMissing() ? scriptError : done;
}

}  // namespace quarlin::script_tool
