// SPDX-License-Identifier: GPL-3.0-or-later
// The whole program but its window, in virtual time, with a scripted instrument on the cable.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "base/files.h"
#include "support/listed_prompts.h"
#include "support/scripted_device.h"
#include "support/temp_folder.h"
#include "support/virtual_loop.h"
#include "ui/frm_main.h"

namespace quarlin {

class NotedTextOpener : public TextOpener {
 public:
  bool OpenText(const std::filesystem::path& file) override {
    opened.push_back(file.filename().string());
    return true;
  }
  std::vector<std::string> opened;
};

class FrmMainRig : public testing::Test {
 protected:
  FrmMainRig() { controls().connection.cboSerial.SetText("COM1"); }

  FrmMainControls& controls() { return frm.controls; }
  void Start(std::string_view commandLine = "") { frm.Load(commandLine); }
  void Connect() { controls().connection.cmdOpen.Click(); }
  void StartCycle() { controls().run.Command1.Click(); }
  void Pass(Duration duration) { loop.Pass(duration); }
  bool Connected() { return controls().connection.cmdOpen.Caption() == "Disconnect"; }
  bool Running() { return frm.Running(); }
  std::string FileText(std::string_view name) {
    return ReadWholeFile(folder.Path() / name).value_or("(none)");
  }
  std::string Note() { return controls().status.lblStatusNote.Caption(); }

  // Every line that the display holds, line ends left out.
  std::vector<std::string> Shown() {
    const TextRing& ring = controls().display.txtric.Ring();
    std::vector<std::string> lines;
    for (std::uint64_t i = ring.FirstLine(); i < ring.EndLine(); ++i) {
      const TextLine line = ring.Line(i);
      lines.push_back(line.text.substr(0, line.visible));
    }
    return lines;
  }

  std::vector<std::string> ErrorList() {
    std::vector<std::string> lines;
    for (const ListEntry& entry : controls().display.lstError.List()) lines.push_back(entry.text);
    return lines;
  }

  TempFolder folder;
  VirtualLoop loop;
  ScriptedDeviceSource ports{loop};
  ScriptedDevice& scale = ports.AddPort("COM1");
  ListedPrompts prompts;
  NotedTextOpener opener;
  EngineFactory engines;  // may be set until the first script is switched on
  EngineFactory CurrentEngines() {
    return [this](std::string_view language, vbs::Services& services) {
      return engines ? engines(language, services) : nullptr;
    };
  }
  FrmMain frm{{loop, ProgramFolder(folder.Path()), ports, prompts, opener, [] { return 0.5; }, false,
               CurrentEngines()}};
};

// Connected, with a request that waits 200 ms for its answer.
class RequestRig : public FrmMainRig {
 protected:
  RequestRig() {
    Start();
    Connect();
    controls().cycle.CBOSEND.SetText("READ");
    controls().run.Check1.SetChecked(true);
    controls().run.txtAnswerTime.SetText("200");
    controls().run.Check2.SetChecked(true);
  }

  // A run in which the instrument answers so, one after the other, each after 10 ms; only good answers count.
  void Run(std::vector<std::string> answers, int good) {
    controls().run.Text1.SetText(std::to_string(good));
    scale.AnswerLines('\r', ScriptedDevice::InTurn(std::move(answers)), std::chrono::milliseconds(10));
    StartCycle();
    Pass(std::chrono::seconds(10));
  }
};

}  // namespace quarlin
