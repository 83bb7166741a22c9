// SPDX-License-Identifier: GPL-3.0-or-later
// The main window without a window: every control, the modules that work on them, and the wiring between
// the modules. The view shows it; a program without a display runs it all the same.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/hook.h"
#include "base/program_folder.h"
#include "calculator/number_format.h"
#include "config/configurations.h"
#include "connect/connection_controls.h"
#include "connect/modem_controls.h"
#include "controls/form.h"
#include "controls/prompts.h"
#include "controls/status_note.h"
#include "curves/curve_controls.h"
#include "desktop/text_opener.h"
#include "display/display_controls.h"
#include "exchange/counters.h"
#include "exchange/framing_controls.h"
#include "exchange/run_controls.h"
#include "exchange/run_record.h"
#include "link/device.h"
#include "link/link_controls.h"
#include "macro/macro_controls.h"
#include "receive/receive_controls.h"
#include "script/run_guard.h"
#include "script/script_controls.h"
#include "script/script_engine.h"
#include "session/session.h"
#include "testmodes/error_rows.h"
#include "testmodes/test_controls.h"
#include "transmit/cycle.h"
#include "transmit/cycle_controls.h"
#include "transmit/file_controls.h"
#include "welcome/bundle.h"

namespace quarlin {

// What the window stands on. Everything outlives it.
struct Surroundings {
  EventLoop& loop;
  ProgramFolder folder;
  DeviceSource& devices;
  Prompts& prompts;
  TextOpener& textOpener;
  std::function<double()> random;  // uniform in [0, 1)
  bool headless = false;           // nobody can press a button
  EngineFactory engines = {};      // the script languages; without it no script runs
  Bundle bundle = {};              // what came with the program; without it nothing is offered
  LastResort lastResort = {};      // for scripts that keep the program from its end
};

struct ConfigControls : ControlGroup {
  using ControlGroup::ControlGroup;
  CaptionedArray<CommandButton, 2> cmdSave{*this, "cmdSave", {"Save Config", "Load Config"}};
};

// Each opens a file of the program folder in the user's editor.
struct EditControls : ControlGroup {
  using ControlGroup::ControlGroup;
  CommandButton cmdEditCommand{*this, "cmdEditCommand", "Edit Command.txt"};
  CommandButton cmdEditParser{*this, "cmdEditParser", "Edit Parser.txt"};
  CommandButton cmdEditSequence{*this, "cmdEditSequence", "Edit sequence.txt"};
  CommandButton cmdEditQuick{*this, "cmdEditQuick", "Edit Quick.txt"};
  CommandButton cmdEditConversion{*this, "cmdEditConversion", "Edit Conversion.txt"};
};

// The groups of the window, in the order in which the configuration file holds them.
struct FrmMainControls {
  explicit FrmMainControls(EventLoop& loop);

  ConnectionControls connection;
  LinkControls link;
  ModemControls modem;
  CycleControls cycle;
  FileControls file;
  FramingControls framing;
  RunControls run;
  MacroControls macro;
  ReceiveControls receive;
  DisplayControls display;
  TestControls test;
  Counters counters;
  ConfigControls config;
  EditControls edit;
  StatusControls status;
  ScriptControls script;
  CurveControls curves;
  NumberControls numbers;
};

class FirstSteps;
class FrmCalculator;
class FrmEditor;
class FrmPlot;
class OfferedList;
class ScriptHost;
struct ByHand;

class FrmMain : public Form {
 public:
  explicit FrmMain(Surroundings surroundings);
  ~FrmMain() override;

  FrmMainControls controls;
  ScriptHost& Script();
  ByHand& Hand();
  FrmPlot& Plot();
  FrmCalculator& Calculator();
  FrmEditor& Editor();
  FirstSteps& Welcome();

  // Every window of the program, this one first.
  std::vector<Form*> Forms();

  // Start-up: fills the lists, then does what the command line (arguments joined by blanks) says.
  void Load(std::string_view commandLine);

  // The user closed the window, or a signal came: see Session::RequestEnd.
  void Unload(EndCause cause = EndCause::WindowClosed);

  // What came of the present or the last run, and the text of Report.txt, as things stand.
  RunResult Result();
  std::string ReportText();

  // The exit status as things stand, and why it is not 0.
  EndVerdict Ending() const;

  StatusNote& Status();

  // The errors of the runs and between them, for a table.
  ErrorRows& Errors();

  // The device or the socket is open. The hook is told when that has changed.
  bool LinkOpen() const;
  Hook<void()> OnLinkChanged;

  // The calculator's: puts a text into the command where the user has put the cursor, else at the end, false
  // when the command has no room for it; and gives the bytes that are selected in the traffic.
  Hook<bool(std::string_view text)> OnInsert;
  Hook<std::string()> OnTakeTraffic;

  // Told when the received-text display is to have the keyboard.
  Hook<void()> OnFocusDisplay;

  // Told, a line each, what somebody without a window must know: trouble with the logs, errors of scripts,
  // boxes that nobody sees any more.
  Hook<void(std::string_view line)> OnTrouble;

  // A cycle is running.
  bool Running() const;

  // What has happened in the present or the last run.
  RunRecord& Record();

  // The files that the settings are loaded from and saved to, and what of them the user has edited.
  Configurations& Configuration();

  // The user wants the window closed: Unload, once she has been asked about settings that would be lost.
  // Yields while she is asked; a second call meanwhile changes nothing.
  void RequestUnload();

  // The window's last moment as it was: it is about to be taken down.
  Hook<void()> OnClosing;

  const ProgramFolder& Folder() const { return surroundings_.folder; }

  // The methods that scripts know.
  void SignalError(int kind);
  void StopWithMessage(std::string_view message, std::string_view title);
  void StopComunication(std::string_view message, std::string_view title) { StopWithMessage(message, title); }

 private:
  struct Modules;

  void FillLists();
  void Refill(OfferedList& list);
  void WireLink();
  void WireConnection();
  void WireAdapter();
  void WireNetwork();
  void WireExchange();
  void WireCycle();
  void WireByHand();
  void WireReceive();
  void WireTests();
  void WireErrorRows();
  void WirePlot();
  void WireScript();
  void WireCalculator();
  void WireWelcome();
  void WireSession();
  void WireFiles();
  void SwitchModes(const CommandLine& words);
  std::string FolderTrouble() const;
  std::string SettingTrouble() const;
  void CloseWindow();
  void WireConfiguration();
  ConfigState LoadConfiguration();
  void ComputeTerminators();
  void WriteMachineResults();
  void cmdReport_Click();
  void EditFile(std::string_view name, std::string_view firstContent);
  void LinkChanged();
  void LinkLost();
  void TellLoss(std::string_view line);
  void Trouble(std::string_view text);
  void Note(std::string_view text);

  Surroundings surroundings_;
  std::unique_ptr<Modules> modules_;
};

}  // namespace quarlin
