// SPDX-License-Identifier: GPL-3.0-or-later
#include "results/write_results.h"

#include <fmt/format.h>

#include <utility>

#include "base/files.h"
#include "results/junit_xml.h"
#include "results/report_json.h"

namespace quarlin {

std::vector<std::string> WriteResults(const ProgramFolder& folder, const RunResult& result) {
  std::vector<std::string> failures;
  for (const auto& [name, content] :
       {std::pair("Report.json", ReportJson(result)), std::pair("junit.xml", JunitXml(result))}) {
    const auto error = WriteWholeFile(folder.File(name), content);
    if (error) failures.push_back(fmt::format("{} was not written: {}", name, error.message()));
  }
  return failures;
}

}  // namespace quarlin
