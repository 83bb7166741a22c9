// SPDX-License-Identifier: GPL-3.0-or-later
// Which module asks what of which: every hook of FrmMain's modules is filled in here.
#include <fmt/format.h>

#include "base/files.h"
#include "base/text.h"
#include "connect/port_list.h"
#include "connect/port_owner.h"
#include "link/posix_device.h"
#include "ui/first_files.h"
#include "ui/form_main_object.h"
#include "ui/frm_main_modules.h"

namespace quarlin {

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
  hooks.held = [this](std::string_view line) { Trouble(line); };
  hooks.whoseIsIt = [](const std::string& portName, std::int32_t error) {
    return WhoseIsIt(DevicePath(portName), error);
  };
  hooks.missingPermission = [](const std::string& portName) {
    return MissingPermission(DevicePath(portName));
  };
  hooks.systemPorts = [] { return ListSystemPorts(); };
  hooks.stablePath = [](const std::string& portName) { return StablePath(DevicePath(portName)); };
}

void FrmMain::WireAdapter() {
  controls.link.FlowChanged = [this] { modules_->connection.FlowChanged(); };
  modules_->lowLatency.delayOf = [](const std::string& portName) {
    return AdapterDelay(DevicePath(portName));
  };
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
    modules_->byHand.quick.StopWaiting();
    modules_->lowLatency.CycleStarts(controls.run.HScroll1.Value());
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
  hooks.completed = [this](const std::string& text) { modules_->script.Waits().Completed(text); };
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

void FrmMain::WirePlot() {
  modules_->plot.OnTold = [this](std::string_view words) { modules_->status.Say(words); };
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
  controls.display.txtric.OnTakeSelection = [this] { return OnTakeTraffic(); };
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
  hooks.finish = [this] { modules_->session.Finish(); };
  hooks.firstError = [this](std::string_view line) { OnTrouble(line); };
  hooks.cutShort = [this](std::string_view line) { OnTrouble(line); };
}

void FrmMain::WireCalculator() {
  FrmCalculator& calculator = modules_->calculator;
  calculator.Hooks.insert = [this](std::string_view text) {
    const bool inserted = OnInsert(text);
    modules_->status.Say(inserted ? fmt::format("put into the command: {}", CodedText(text, 60))
                                  : fmt::format("{} characters have no room in a command", text.size()));
  };
  calculator.Hooks.takeTraffic = [this] { return OnTakeTraffic(); };
  calculator.Hooks.note = [this](std::string_view line) { Note(line); };
}

// The watch on the program folder would notice most of it, too, but later, and not everywhere.
void FrmMain::WireWelcome() {
  FirstStepsHooks& hooks = modules_->welcome.Hooks;
  hooks.confirm = [this](std::string_view question) {
    return modules_->prompts.Confirm(question, "Quarlin");
  };
  hooks.mayLoad = [this] { return modules_->configurations.MayLose(); };
  hooks.takeUp = [this](bool withConfiguration) {
    Refill(modules_->commands);
    Refill(modules_->parserFormats);
    modules_->byHand.quick.TakeUp();
    modules_->sequence.FileChanged();
    modules_->script.List().Load();
    if (withConfiguration) modules_->configurations.LoadDefault();
  };
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

void FrmMain::WireConfiguration() {
  Configurations& configurations = modules_->configurations;
  configurations.Edited.Moves(controls.run.HScroll1, controls.run.txtInterval);
  ConfigurationHooks& hooks = configurations.Hooks;
  hooks.write = [this](const std::filesystem::path& file) {
    const RequestCount::Saving saving(modules_->exchange.Requests());
    const Trial::Away away(modules_->welcome.Try);
    return SaveConfig(Collection(), file);
  };
  hooks.loaded = [this] {
    ComputeTerminators();
    modules_->connection.SettingsLoaded();
    modules_->exchange.Requests().Loaded();
  };
  hooks.unasked = [this] {
    const ScriptRunner& runner = modules_->script.Runner();
    return surroundings_.headless || modules_->session.Ending() || (runner.Running() && !runner.Rests());
  };
  controls.config.cmdSave[0].OnClick = [&configurations] { configurations.SaveAs(configurations.Default()); };
  controls.config.cmdSave[1].OnClick = [&configurations] { configurations.OpenDefault(); };
}

}  // namespace quarlin
