// SPDX-License-Identifier: GPL-3.0-or-later
// The real program, headless, in a program folder of its own, and the instrument's end of its cable.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/files.h"
#include "e2e/program.h"
#include "support/temp_folder.h"

namespace quarlin {

class RealProgram : public testing::Test {
 protected:
  // One record of config.cfg behind those already there.
  void Configure(std::string name, std::string text, std::string index = "") {
    name.resize(20, ' ');
    text.resize(100, ' ');
    index.resize(2, ' ');
    config_ += name + text + index;
  }

  // A run that asks for weights and waits for each answer, so long that no delay of a busy machine is taken
  // for a time-out.
  void ConfigureRun(const std::string& port, const std::string& requests) {
    Configure("cboSerial", port);
    Configure("CBOSEND", "READ");
    Configure("Check1", "1");
    Configure("Check2", "1");
    Configure("Text1", requests);
    Configure("txtInterval", "0");
    Configure("txtAnswerTime", "60000");
  }

  // `output` as of Program.
  Program& Start(const std::vector<std::string>& words, std::optional<int> output = std::nullopt) {
    EXPECT_FALSE(WriteWholeFile(folder / "config.cfg", config_));
    std::vector<std::string> arguments{"--headless"};
    arguments.insert(arguments.end(), words.begin(), words.end());
    config_.clear();
    program_ = std::make_unique<Program>("quarlin", arguments, folder.Path(),
                                         std::map<std::string, std::string>{{"QUARLIN_HOME", folder.Path()}},
                                         output);
    return *program_;
  }

  std::string FileText(std::string_view name) { return ReadWholeFile(folder / name).value_or("(none)"); }

  // The number behind `label` in a report or in what the instrument says.
  static int Number(const std::string& text, const std::string& label) {
    const std::size_t at = text.find("\n" + label);
    return at == std::string::npos ? -1 : std::stoi(text.substr(at + 1 + label.size()));
  }

  bool LogHolds(std::string_view text) {
    return Eventually([&] { return FileText("LOG.TXT").find(text) != std::string::npos; });
  }

  // What arrives before the port is open is thrown away by the opening, so this knocks until it is heard.
  // Returns what the log holds once the last knock stands in it: nothing is then on its way any more.
  std::string Knock() {
    std::string last;
    for (int i = 0; i < 100 && FileText("LOG.TXT") == "(none)"; ++i) {
      last = "knock " + std::to_string(i) + "\r\n";
      wire.Send(last);
      Eventually([&] { return FileText("LOG.TXT") != "(none)"; }, std::chrono::milliseconds(500));
    }
    EXPECT_TRUE(LogHolds(last));
    return FileText("LOG.TXT");
  }

  TempFolder folder;
  Wire wire;

 private:
  std::string config_;
  std::unique_ptr<Program> program_;
};

}  // namespace quarlin
