// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frm_main.h"

#include <fmt/format.h>

#include "base/control_names.h"
#include "base/files.h"
#include "base/numbers.h"
#include "base/text.h"
#include "base/version.h"
#include "config/command_line.h"
#include "config/config_file.h"
#include "results/report_text.h"
#include "results/write_results.h"
#include "ui/frm_main_modules.h"

namespace quarlin {
namespace {

constexpr std::string_view bannerText = "Instrument test terminal";
constexpr std::string_view reportFile = "Report.txt";

// The codes that the terminator boxes offer, as three digits.
std::vector<std::string> CharacterCodes() {
  std::vector<std::string> codes;
  for (int code = 0; code <= 255; ++code) codes.push_back(PaddedDecimal(code, 3));
  return codes;
}

}  // namespace

FrmMainControls::FrmMainControls(EventLoop& loop)
    : connection(loop),
      link(loop),
      modem(loop),
      cycle(loop),
      file(loop),
      framing(loop),
      run(loop),
      macro(loop),
      receive(loop),
      display(loop),
      test(loop),
      counters(loop),
      config(loop),
      edit(loop),
      status(loop),
      script(loop),
      curves(loop),
      numbers(loop) {}

FrmMain::FrmMain(Surroundings surroundings)
    : Form("frmMain", fmt::format("Quarlin Ver.{:02}.{:02}.{:02}  {}", version::major, version::minor,
                                  version::revision, bannerText)),
      controls(surroundings.loop),
      surroundings_(std::move(surroundings)) {
  for (const ControlGroup* group : std::initializer_list<const ControlGroup*>{
           &controls.connection, &controls.link, &controls.modem, &controls.cycle, &controls.file,
           &controls.framing, &controls.run, &controls.macro, &controls.receive, &controls.display,
           &controls.test, &controls.counters, &controls.config, &controls.edit, &controls.status,
           &controls.script, &controls.curves, &controls.numbers}) {
    Collection().Add(*group);
  }
  modules_ = std::make_unique<Modules>(*this, controls, surroundings_);
  WireLink();
  WireConnection();
  WireAdapter();
  WireNetwork();
  WireExchange();
  WireCycle();
  WireByHand();
  WireReceive();
  WireTests();
  WireErrorRows();
  WirePlot();
  WireScript();
  WireCalculator();
  WireWelcome();
  WireSession();
  WireConfiguration();
  WireFiles();
}

FrmMain::~FrmMain() = default;

ErrorRows& FrmMain::Errors() {
  return modules_->errorRows;
}

bool FrmMain::Running() const {
  return modules_->exchange.Running();
}

RunRecord& FrmMain::Record() {
  return modules_->record;
}

ByHand& FrmMain::Hand() {
  return modules_->byHand;
}

FrmPlot& FrmMain::Plot() {
  return modules_->plot;
}

StatusNote& FrmMain::Status() {
  return modules_->status;
}

ScriptHost& FrmMain::Script() {
  return modules_->script;
}

FrmCalculator& FrmMain::Calculator() {
  return modules_->calculator;
}

FrmEditor& FrmMain::Editor() {
  return modules_->editor;
}

FirstSteps& FrmMain::Welcome() {
  return modules_->welcome;
}

std::vector<Form*> FrmMain::Forms() {
  return {this,
          &modules_->script.Panel(),
          &modules_->script.List(),
          &modules_->plot,
          &modules_->calculator,
          &modules_->editor};
}

void FrmMain::Load(std::string_view commandLine) {
  FillLists();
  controls.cycle.Timer1.SetInterval(controls.run.HScroll1.Value());
  controls.receive.Timer3.SetEnabled(true);
  controls.modem.tmrLine.SetEnabled(true);
  ComputeTerminators();
  modules_->configurations.Edited.Settle();
  modules_->session.Start(ParseCommandLine(commandLine));
  if (!surroundings_.headless && commandLine.empty()) modules_->welcome.Offer();
}

void FrmMain::FillLists() {
  for (ComboBox* box : {&controls.framing.Combo2, &controls.receive.Combo3, &controls.framing.Combo4}) {
    box->SetList(CharacterCodes());
    for (int code = 0; code <= 255; ++code) {
      box->SetItemToolTip(code, CharacterName(static_cast<unsigned char>(code)));
    }
  }
  modules_->connection.OfferPorts();
  for (OfferedList* list : {&modules_->commands, &modules_->parserFormats}) {
    Refill(*list);
    list->ChooseFirst();
  }
  if (const std::error_code trouble = modules_->folder.Trouble()) {
    Note(fmt::format("changes of files in the program folder are not noticed: {}", trouble.message()));
  }
  if (const std::string trouble = modules_->script.TakeUpLocale(); !trouble.empty()) Trouble(trouble);
  modules_->byHand.quick.TakeUp();
  if (surroundings_.headless) return;  // a test run leaves nobody's history behind
  if (const std::string trouble = modules_->byHand.history.Load(); !trouble.empty()) Note(trouble);
}

void FrmMain::Refill(OfferedList& list) {
  if (const std::string trouble = list.Refill(); !trouble.empty()) Note(trouble);
}

void FrmMain::SwitchModes(const CommandLine& words) {
  if (words.dialog) controls.receive.chkDialog.SetChecked(true);
  if (words.log) controls.display.chkLog.SetChecked(true);
  if (words.logPar) controls.display.chkLogPar.SetChecked(true);
  if (words.sequence) controls.cycle.chkSequence.SetChecked(true);
}

std::string FrmMain::FolderTrouble() const {
  const std::error_code error = surroundings_.folder.Trouble();
  return error ? fmt::format("the program folder {} cannot be used: {}", surroundings_.folder.Path().string(),
                             error.message())
               : "";
}

// A text that its list does not know would check nothing, or fail at the opening without a word about where
// it came from.
std::string FrmMain::SettingTrouble() const {
  for (const ComboBox* box :
       {&controls.receive.cboCheckSum, &controls.connection.ComboWord, &controls.link.cboFlow}) {
    if (box->ListIndex() < 0) {
      return fmt::format("config.cfg: {} \"{}\" is not known", box->Name(), CodedText(box->Text(), 40));
    }
  }
  return {};
}

void FrmMain::ComputeTerminators() {
  modules_->sender.Frame.ComputeTxTerminator();
  modules_->receive.SetRxTerminator();
}

Configurations& FrmMain::Configuration() {
  return modules_->configurations;
}

ConfigState FrmMain::LoadConfiguration() {
  Configurations& configurations = modules_->configurations;
  if (configurations.LoadDefault()) return ConfigState::Loaded;
  std::error_code error;
  const auto status = std::filesystem::symlink_status(configurations.Default(), error);
  const bool missing = status.type() == std::filesystem::file_type::not_found;
  return missing ? ConfigState::Missing : ConfigState::Unreadable;
}

RunResult FrmMain::Result() {
  modules_->cycle.ShowElapsed();
  const EndVerdict verdict = modules_->session.Verdict();
  const ScriptErrors& scriptErrors = modules_->script.Errors();
  RunFacts facts;
  facts.version = version::text;
  facts.host = HostName();
  facts.link = modules_->connection.Target();
  facts.how = modules_->session.How();
  facts.reason = verdict.reason;
  facts.exitStatus = verdict.status;
  facts.scripting = controls.script.chkEnableScript.Checked() || scriptErrors.count > 0;
  facts.scriptErrors = {scriptErrors.count, scriptErrors.first};
  if (!modules_->link.Target().IsNetwork()) facts.lineErrors = modules_->link.Errors();
  facts.faultsOnPurpose = modules_->dialog.Faults.Sum();
  if (std::string missing = modules_->logs.Missing(); !missing.empty()) facts.logLosses.push_back(missing);
  return GatherResult({modules_->record, controls.counters, controls.display.lstError, Collection(),
                       surroundings_.loop.Clocks()},
                      std::move(facts));
}

std::string FrmMain::ReportText() {
  return quarlin::ReportText(Result());
}

void FrmMain::WriteMachineResults() {
  for (const std::string& trouble : WriteResults(surroundings_.folder, Result())) Trouble(trouble);
}

void FrmMain::cmdReport_Click() {
  const auto file = surroundings_.folder.File(reportFile);
  WriteMachineResults();
  if (const auto error = WriteWholeFile(file, ReportText())) {
    modules_->status.Say(fmt::format("{} was not written: {}", reportFile, error.message()));
  } else if (!surroundings_.textOpener.OpenText(file)) {
    modules_->status.Say(fmt::format("the report is in {}; no program was found to show it", file.string()));
  } else {
    modules_->status.Say(
        fmt::format("the report was written: {}, with Report.json and junit.xml", file.string()));
  }
  OnFocusDisplay();
}

// A link that leads nowhere yet is there, too: its file is made.
void FrmMain::EditFile(std::string_view name, std::string_view firstContent) {
  const auto file = surroundings_.folder.File(name);
  std::error_code error;
  const bool isNew = !std::filesystem::exists(file, error);
  if (isNew) error = WriteWholeFile(file, firstContent);
  if (error) {
    modules_->status.Say(fmt::format("{} was not made: {}", name, error.message()));
  } else if (!surroundings_.textOpener.OpenText(file)) {
    modules_->status.Say(fmt::format("no program was found to edit {}", file.string()));
  } else if (isNew) {
    modules_->status.Say(fmt::format("{} was made, with entries to begin with", name));
  } else {
    modules_->status.Say(fmt::format("{} is opened in your editor", name));
  }
}

bool FrmMain::LinkOpen() const {
  return modules_->link.CommIsOpen();
}

void FrmMain::LinkChanged() {
  modules_->connection.ShowLink();
  modules_->modem.LinkChanged();
  OnLinkChanged();
  if (!modules_->link.CommIsOpen()) return modules_->lowLatency.LinkChanged();
  modules_->session.LinkOpened();
  if (!modules_->link.State.CommNetMode) modules_->status.Clear();
  modules_->lowLatency.LinkChanged();
  modules_->cycle.MaySendAgain();
}

void FrmMain::TellLoss(std::string_view line) {
  modules_->logs.Flush();
  modules_->status.Say(line);
  OnTrouble(line);
}

void FrmMain::LinkLost() {
  if (modules_->link.State.DeviceGone) modules_->connection.LinkLost(modules_->link.State.CommLastErrorText);
}

void FrmMain::SignalError(int kind) {
  modules_->errors.SignalError(kind);
}

void FrmMain::StopWithMessage(std::string_view message, std::string_view title) {
  modules_->session.StopWithMessage(message, title);
}

void FrmMain::Unload(EndCause cause) {
  modules_->session.RequestEnd(cause);
}

// A run goes on behind the question, but not behind one that is asked while a handler waits: so it is put
// off.
void FrmMain::RequestUnload() {
  const auto unload = [this] {
    const bool ends = modules_->session.Ending();
    if (ends || (modules_->configurations.MayLose() && modules_->editor.MayLose())) Unload();
  };
  const bool asks = modules_->editor.Modified() || !modules_->configurations.Edited.Captions().empty();
  if (surroundings_.loop.Alarms().Held() && !modules_->script.Runner().Rests() && asks) {
    surroundings_.loop.Post(unload);
  } else {
    unload();
  }
}

void FrmMain::CloseWindow() {
  OnClosing();
  modules_->byHand.history.Save();
  modules_->script.Panel().SetVisible(false);
  modules_->calculator.SetVisible(false);
  modules_->plot.SetVisible(false);
  modules_->editor.SetVisible(false);
  controls.run.Command1.SetCaption("Stop");
  modules_->script.EndTask();
  for (Timer* timer : {&controls.cycle.Timer1, &controls.cycle.Timer2, &controls.receive.Timer3,
                       &controls.receive.tmrric, &controls.modem.tmrLine, &controls.script.tmrTask}) {
    timer->SetEnabled(false);
  }
}

EndVerdict FrmMain::Ending() const {
  return modules_->session.Verdict();
}

void FrmMain::Trouble(std::string_view line) {
  Note(line);
  OnTrouble(line);
}

void FrmMain::Note(std::string_view text) {
  modules_->status.Mention(text);
}

}  // namespace quarlin
