#include "ui/frm_main.h"

#include <fmt/format.h>

#include "base/control_names.h"
#include "base/files.h"
#include "base/numbers.h"
#include "base/text.h"
#include "config/command_line.h"
#include "config/config_file.h"
#include "connect/connection.h"
#include "connect/modem_lines.h"
#include "connect/port_list.h"
#include "connect/port_owner.h"
#include "controls/folder_watch.h"
#include "display/traffic.h"
#include "exchange/exchange.h"
#include "exchange/sender.h"
#include "link/link.h"
#include "link/posix_device.h"
#include "receive/receive_loop.h"
#include "results/report_text.h"
#include "results/write_results.h"
#include "script/script_host.h"
#include "testmodes/dialog.h"
#include "testmodes/error_reports.h"
#include "transmit/by_hand.h"
#include "transmit/offered_list.h"
#include "ui/first_files.h"
#include "ui/form_main_object.h"
#include "ui/version.h"

namespace quarlin {
namespace {

constexpr std::string_view bannerText = "Instrument test terminal";
constexpr std::string_view reportFile = "Report.txt";
constexpr std::string_view commandFile = "Command.txt";
constexpr std::string_view parserFile = "Parser.txt";

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
      script(loop) {}

// Everything that works on the controls, the lower rooms first.
struct FrmMain::Modules {
  Modules(FrmMain& frm, FrmMainControls& controls, Surroundings& around)
      : status(around.loop, controls.status),
        folder(around.loop, around.folder.Path()),
        prompts(around.loop, around.prompts),
        link(around.loop, around.devices, controls.link),
        intervals(around.loop, controls.link),
        commands(controls.cycle.CBOSEND, around.folder, commandFile),
        parserFormats(controls.receive.cboParser, around.folder, parserFile),
        connection(around.loop, link, controls.connection, prompts, status),
        modem(link, controls.modem),
        sequence(controls.cycle, around.folder),
        expander(
            controls.macro,
            [this, &controls] {
              return !controls.cycle.chkSequence.Checked() || sequence.Empty() || sequence.LineNumber() == 1;
            },
            around.random),
        parser(around.loop.Clocks()),
        conversion(controls.receive, around.folder, status),
        record(around.loop.Clocks()),
        exchange(around.loop, controls.run, record),
        logs(around.loop, controls.display, around.folder,
             [&frm](std::string_view text) { frm.Trouble(text); }),
        traffic(around.loop, controls.display, logs),
        sender({link, expander, exchange, traffic, controls.run, controls.framing, controls.counters}),
        cycle({around.loop, controls.cycle, controls.run, controls.macro, controls.counters, link, expander,
               exchange, intervals, sender, traffic, sequence, status}),
        byHand({around.loop, controls.file, controls.run, controls.counters, link, exchange, sender, traffic,
                status},
               controls.link, prompts, around.folder, [&frm](std::string_view text) { frm.Trouble(text); }),
        errors({controls.test, controls.run, controls.counters, controls.link, controls.display, traffic,
                exchange}),
        errorRows(around.loop.Clocks(), record, controls.display.txtric),
        receive({around.loop, controls.receive, controls.run, controls.link, controls.counters, link,
                 expander, parser, conversion, exchange, traffic, status}),
        dialog({around.loop, link, expander, sender, traffic, status}, around.folder),
        script({around.loop, controls.script, around.folder, prompts, around.engines, status,
                [this](std::string_view text, Color color) { traffic.Append(text, color); }}),
        configurations({frm.Collection(), around.folder, prompts, status}),
        session({around.loop, connection, link, cycle, exchange, sequence, script, logs, prompts, status,
                 controls.counters, around.headless}) {}

  StatusNote status;
  FolderWatch folder;  // for whoever wants to know that a file of the program folder has changed
  TimedPrompts prompts;
  Link link;
  IntervalStatistics intervals;
  OfferedList commands;
  OfferedList parserFormats;
  Connection connection;
  ModemLines modem;
  Sequence sequence;
  Expander expander;
  Parser parser;
  CharacterConversion conversion;
  RunRecord record;
  Exchange exchange;
  TrafficLogs logs;
  Traffic traffic;
  Sender sender;
  Cycle cycle;
  ByHand byHand;
  ErrorReports errors;
  ErrorRows errorRows;
  ReceiveLoop receive;
  Dialog dialog;
  ScriptHost script;  // ends before them: a script's last code may use all of the above
  Configurations configurations;
  Session session;
};

FrmMain::FrmMain(Surroundings surroundings)
    : Form("frmMain", fmt::format("Quarlin Ver.{:02}.{:02}.{:02}  {}", version::major, version::minor,
                                  version::revision, bannerText)),
      controls(surroundings.loop),
      surroundings_(std::move(surroundings)) {
  for (const ControlGroup* group : std::initializer_list<const ControlGroup*>{
           &controls.connection, &controls.link, &controls.modem, &controls.cycle, &controls.file,
           &controls.framing, &controls.run, &controls.macro, &controls.receive, &controls.display,
           &controls.test, &controls.counters, &controls.config, &controls.edit, &controls.status,
           &controls.script}) {
    Collection().Add(*group);
  }
  modules_ = std::make_unique<Modules>(*this, controls, surroundings_);
  WireLink();
  WireConnection();
  WireNetwork();
  WireExchange();
  WireCycle();
  WireByHand();
  WireReceive();
  WireTests();
  WireErrorRows();
  WireScript();
  WireSession();
  WireConfiguration();
  WireFiles();
}

FrmMain::~FrmMain() = default;

void FrmMain::WireLink() {
  Link& link = modules_->link;
  link.OnArrival = [this] { controls.receive.Timer3.Wake(); };
  link.OnError = [this] {
    const LinkState& state = modules_->link.State;
    if (!modules_->connection.Searching()) Note(state.CommLastErrorSource + ": " + state.CommLastErrorText);
  };
}

void FrmMain::WireConnection() {
  ConnectionHooks& hooks = modules_->connection.Hooks;
  hooks.expanderBusy = [this] { return modules_->expander.State.ExpandBusy; };
  hooks.connecting = [this] {
    modules_->exchange.LinkOpening();
    modules_->receive.ForgetArrivals();
    modules_->expander.State.Cnt1 = 0;
    modules_->expander.State.CounterWrapped = false;
    controls.receive.tmrric.SetEnabled(true);
    controls.cycle.Timer2.SetEnabled(true);
    controls.counters.Label7.SetInteger(0);
  };
  hooks.disconnected = [this] {
    controls.receive.tmrric.SetEnabled(false);
    controls.cycle.Timer2.SetEnabled(false);
    modules_->exchange.EndWait();
    modules_->cycle.Stop();
    modules_->byHand.LinkLost();
    modules_->dialog.LinkClosed();
    modules_->receive.DarkenLamps();
    modules_->logs.Flush();
  };
  hooks.opened = [this] { modules_->intervals.Restart(); };
  hooks.stateChanged = [this] { LinkChanged(); };
  hooks.outage = [this](std::string_view line) {
    modules_->byHand.LinkLost();
    modules_->exchange.EndWait();  // the next request goes out when the link is back
    modules_->receive.ForgetBeginning();
    modules_->traffic.AppendError(line, "");
    modules_->errorRows.LinkGone(line);
    modules_->logs.Flush();
  };
  hooks.lost = [this](std::string_view line) {
    modules_->traffic.AppendError(line, "");
    modules_->errorRows.LinkGone(line);
    TellLoss(line);
    modules_->session.LinkLost(line);
    modules_->session.RunStopped(RunEnd::Stopped);
  };
  hooks.showLink = [this](std::string_view words) {
    controls.status.lblStatusLink.SetCaption(words);
    modules_->cycle.MaySendAgain();  // a peer may have come
    modules_->byHand.LinkChanged();
  };
  hooks.whoseIsIt = [](const std::string& portName, std::int32_t error) {
    return WhoseIsIt(DevicePath(portName), error);
  };
  hooks.systemPorts = [] { return ListSystemPorts(); };
  hooks.stablePath = [](const std::string& portName) { return StablePath(DevicePath(portName)); };
}

void FrmMain::WireNetwork() {
  LinkHooks& link = modules_->link.Hooks;
  link.newPeer = [this] { modules_->receive.BeginSender(); };
  link.arrivedWhileWriting = [this] {
    modules_->receive.ShowArrivals();
    modules_->logs.Flush();  // no alarm does it while a write waits
  };
  link.lost = [this](std::size_t bytes) {
    const std::string line = fmt::format("{} bytes that the link had accepted were never sent", bytes);
    modules_->sender.TellLost(line);
    TellLoss(line);
  };
}

void FrmMain::WireExchange() {
  ExchangeHooks& exchange = modules_->exchange.Hooks;
  exchange.waitEnded = [this] { modules_->cycle.MaySendAgain(); };
  exchange.takeArrivals = [this] { modules_->receive.TakeArrivals(); };
  exchange.reportTimeOut = [this] { controls.receive.tmrric.Wake(); };
  modules_->sender.Hooks.leaving = [this] { modules_->receive.KeepLampsBright(); };
  LinkHooks& link = modules_->link.Hooks;
  link.transmitted = [this] {
    modules_->exchange.TextSent();
    modules_->intervals.Transmitted();
  };
  link.sentString = [this](const SendOutcome& outcome) { modules_->sender.TellEnd(outcome); };
  link.free = [this] { modules_->cycle.MaySendAgain(); };
}

void FrmMain::WireCycle() {
  CycleHooks& hooks = modules_->cycle.Hooks;
  hooks.stopWithMessage = [this](std::string_view message, std::string_view title) {
    StopWithMessage(message, title);
  };
  hooks.starting = [this] {
    modules_->receive.DropBeginning();
    modules_->session.RunBegins();
  };
  hooks.stopped = [this](RunEnd end) {
    modules_->session.RunStopped(end);
    modules_->byHand.quick.MayGoOn();
  };
}

void FrmMain::WireByHand() {
  ByHand& byHand = modules_->byHand;
  controls.link.chkTerminal.Click = [&byHand] { byHand.LinkChanged(); };
  if (!surroundings_.headless) {
    modules_->cycle.Hooks.commandUsed = [&byHand](std::string_view command) { byHand.history.Add(command); };
  }
  byHand.history.OnChanged = [this] {
    modules_->commands.SetEntriesBehind(modules_->byHand.history.Entries());
  };
  modules_->cycle.Hooks.objection = [&byHand] {
    return byHand.files.Active() ? "a file is being sent; cancel it before you start a cycle" : "";
  };
}

void FrmMain::WireReceive() {
  ReceiveHooks& hooks = modules_->receive.Hooks;
  hooks.signalError = [this](const Finding& finding) { modules_->errors.SignalError(finding); };
  hooks.stopWithMessage = modules_->cycle.Hooks.stopWithMessage;
  hooks.showElapsed = [this] { modules_->cycle.ShowElapsed(); };
  hooks.requestsDone = [this] { modules_->cycle.Stop(RunEnd::Completed); };
  hooks.mayTransmit = [this] { modules_->cycle.MaySendAgain(); };
  hooks.counted = [this] { controls.cycle.Timer2.Resume(); };
  hooks.deviceGone = [this] { surroundings_.loop.Post([this] { LinkLost(); }); };
  hooks.scripting = [this] { return modules_->script.Sees(); };
  hooks.receiveString = [this](std::string& text) {
    modules_->script.Offer(ScriptHook::ReceiveString, text);
  };
  hooks.dialog = [this](std::string_view request) { modules_->dialog.DialogAnswer(request); };
}

void FrmMain::WireTests() {
  modules_->dialog.OnTrouble = [this](std::string_view text) { Trouble(text); };
  ErrorReportHooks& hooks = modules_->errors.Hooks;
  hooks.stopCycle = [this] { modules_->cycle.Stop(); };
  hooks.stopWithMessage = modules_->cycle.Hooks.stopWithMessage;
  hooks.giveUpString = [this] { return modules_->receive.GiveUpString(); };
  controls.test.cmdReport.OnClick = [this] { cmdReport_Click(); };
}

void FrmMain::WireErrorRows() {
  ErrorRows& rows = modules_->errorRows;
  rows.DescribeRun = [this] { return modules_->cycle.Description(); };
  modules_->exchange.Hooks.runRecorded = [this] { modules_->session.RunRecorded(); };
  modules_->session.Hooks.runEnded = [&rows](std::string_view line) { rows.ShowVerdict(line); };
}

ErrorRows& FrmMain::Errors() {
  return modules_->errorRows;
}

void FrmMain::WireScript() {
  ScriptHost& script = modules_->script;
  script.SetFormMain(MakeFormMainObject(*this, modules_->link, [this] { LinkChanged(); }));
  LinkHooks& link = modules_->link.Hooks;
  link.scripting = [&script] { return script.Sees(); };
  link.receiveChar = [&script](std::string& text) { script.Offer(ScriptHook::ReceiveChar, text); };
  link.sendString = [&script](std::string& text) { script.Offer(ScriptHook::SendString, text); };
  link.received = [this](std::string_view text) {
    if (!modules_->script.Sees()) modules_->intervals.Received(text);
  };
  ScriptHooks& hooks = script.Hooks;
  hooks.linkOpen = [this] { return modules_->link.CommIsOpen(); };
  hooks.sendTask = [this](std::string text) { modules_->sender.Send(std::move(text), SendKind::Task); };
  hooks.edit = [this](const std::filesystem::path& file) {
    const bool opened = surroundings_.textOpener.OpenText(file);
    modules_->status.Say(
        opened ? fmt::format("{} is opened in your editor", file.filename().string())
               : fmt::format("the script is {}; no program was found to edit it", file.string()));
  };
  hooks.focusDisplay = [this] { OnFocusDisplay(); };
  hooks.firstError = [this](std::string_view line) { OnTrouble(line); };
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

StatusNote& FrmMain::Status() {
  return modules_->status;
}

ScriptHost& FrmMain::Script() {
  return modules_->script;
}

std::vector<Form*> FrmMain::Forms() {
  return {this, &modules_->script.Panel(), &modules_->script.List()};
}

void FrmMain::Load(std::string_view commandLine) {
  FillLists();
  controls.cycle.Timer1.SetInterval(controls.run.HScroll1.Value());
  controls.receive.Timer3.SetEnabled(true);
  controls.modem.tmrLine.SetEnabled(true);
  ComputeTerminators();
  modules_->configurations.Edited.Settle();
  modules_->session.Start(ParseCommandLine(commandLine));
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
  modules_->byHand.quick.TakeUp();
  if (surroundings_.headless) return;  // a test run leaves nobody's history behind
  if (const std::string trouble = modules_->byHand.history.Load(); !trouble.empty()) Note(trouble);
}

void FrmMain::Refill(OfferedList& list) {
  if (const std::string trouble = list.Refill(); !trouble.empty()) Note(trouble);
}

void FrmMain::WireFiles() {
  FolderWatch& folder = modules_->folder;
  folder.Follow(commandFile, [this] { Refill(modules_->commands); });
  folder.Follow(parserFile, [this] { Refill(modules_->parserFormats); });
  folder.Follow(QuickList::fileName, [this] { modules_->byHand.quick.TakeUp(); });
  folder.Follow(Sequence::fileName, [this] { modules_->sequence.FileChanged(); });
  folder.Follow(CharacterConversion::fileName, [this] { modules_->conversion.FileChanged(); });

  struct EditableFile {
    CommandButton& button;
    std::string_view name;
    std::string firstContent;
  };
  EditControls& edit = controls.edit;
  for (const EditableFile& file : std::initializer_list<EditableFile>{
           {edit.cmdEditCommand, commandFile, std::string(firstfiles::commands)},
           {edit.cmdEditParser, parserFile, std::string(firstfiles::parserFormats)},
           {edit.cmdEditSequence, Sequence::fileName, std::string(firstfiles::sequence)},
           {edit.cmdEditQuick, QuickList::fileName, std::string(firstfiles::quickSends)},
           {edit.cmdEditConversion, CharacterConversion::fileName, std::string(firstfiles::conversion)},
           {controls.test.cmdEditDialog, Dialog::tableName, CommentedFirstDialog()}}) {
    file.button.OnClick = [this, name = file.name, first = file.firstContent] { EditFile(name, first); };
  }
}

void FrmMain::WireSession() {
  modules_->prompts.OnUnshown = [this](std::string_view line) { OnTrouble(line); };
  SessionHooks& hooks = modules_->session.Hooks;
  hooks.folderTrouble = [this] { return FolderTrouble(); };
  hooks.loadConfiguration = [this] { return LoadConfiguration(); };
  hooks.settingTrouble = [this] { return SettingTrouble(); };
  hooks.switchModes = [this](const CommandLine& words) { SwitchModes(words); };
  hooks.closeWindow = [this] { CloseWindow(); };
  hooks.closed = [this] {
    if (surroundings_.headless) WriteMachineResults();
  };
  hooks.complain = [this](std::string_view line) { Trouble(line); };
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
  for (const ComboBox* box : {&controls.receive.cboCheckSum, &controls.connection.ComboWord}) {
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

void FrmMain::WireConfiguration() {
  Configurations& configurations = modules_->configurations;
  configurations.Edited.Moves(controls.run.HScroll1, controls.run.txtInterval);
  ConfigurationHooks& hooks = configurations.Hooks;
  hooks.write = [this](const std::filesystem::path& file) {
    const RequestCount::Saving saving(modules_->exchange.Requests());
    return SaveConfig(Collection(), file);
  };
  hooks.loaded = [this] {
    ComputeTerminators();
    modules_->connection.SettingsLoaded();
    modules_->exchange.Requests().Loaded();
  };
  hooks.unasked = [this] {
    return surroundings_.headless || modules_->session.Ending() || modules_->script.Runner().Running();
  };
  controls.config.cmdSave[0].OnClick = [&configurations] { configurations.SaveAs(configurations.Default()); };
  controls.config.cmdSave[1].OnClick = [&configurations] { configurations.OpenDefault(); };
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
  facts.version = fmt::format("{}.{}.{}", version::major, version::minor, version::revision);
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
  if (!modules_->link.CommIsOpen()) return;
  modules_->session.LinkOpened();
  if (!modules_->link.State.CommNetMode) modules_->status.Clear();
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
    if (modules_->session.Ending() || modules_->configurations.MayLose()) Unload();
  };
  if (surroundings_.loop.Alarms().Held() && !modules_->configurations.Edited.Captions().empty()) {
    surroundings_.loop.Post(unload);
  } else {
    unload();
  }
}

void FrmMain::CloseWindow() {
  OnClosing();
  modules_->byHand.history.Save();
  modules_->script.Panel().SetVisible(false);
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
