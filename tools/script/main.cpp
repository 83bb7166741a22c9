// SPDX-License-Identifier: GPL-3.0-or-later
// quarlin-script: runs a script with the program's engine and objects, without a window.

#include <fmt/format.h>

#include <QCoreApplication>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>

#include "app/engines.h"
#include "base/ending_signals.h"
#include "base/licence.h"
#include "base/process.h"
#include "base/text.h"
#include "link/posix_device.h"
#include "script/inspection.h"
#include "script/options.h"
#include "script/script_host.h"
#include "script/values/conversions.h"
#include "ui/frm_main.h"
#include "ui/headless.h"
#include "ui/qt/qt_loop.h"

namespace quarlin::script_tool {
namespace {

namespace fs = std::filesystem;

void Complain(std::string_view what) {
  PrintText(stderr, fmt::format("quarlin-script: {}\n", what));
}

bool CanBeRead(const fs::path& file) {
  std::error_code ignored;
  return fs::is_regular_file(file, ignored) && std::ifstream(file).is_open();
}

bool IsFolder(const fs::path& folder) {
  std::error_code ignored;
  return fs::is_directory(folder, ignored);
}

ScriptHook HookOf(ActionKind kind) {
  if (kind == ActionKind::Input) return ScriptHook::ReceiveChar;
  return kind == ActionKind::Receive ? ScriptHook::ReceiveString : ScriptHook::SendString;
}

// What the hook makes of the text, or of each of its characters.
std::string Offered(ScriptHost& host, ScriptHook hook, std::string text) {
  if (hook != ScriptHook::ReceiveChar) {
    host.OfferStrictly(hook, text);
    return text;
  }
  std::string seen;
  for (const char character : text) {
    std::string one(1, character);
    host.OfferStrictly(hook, one);
    seen += one;
  }
  return seen;
}

void Do(ScriptHost& host, const Action& action) {
  if (action.kind == ActionKind::Run) {
    const std::u16string procedure = vbs::Utf16Of(action.text);
    if (!host.Runner().Has(procedure)) throw vbs::ScriptError(vbs::procedureUndefined, procedure);
    host.Runner().Run(procedure, MayWait::Yes);
  } else {
    const std::string seen = Offered(host, HookOf(action.kind), BytesFromUtf8(action.text));
    PrintText(stdout, Utf8FromBytes(seen) + "\n");
  }
}

// Up to the signal that ends it, if one comes.
int RunScript(const Options& options, const fs::path& file, ScriptHost& host,
              const std::function<bool()>& ended) {
  int status = done;
  try {
    host.Runner().Start(file);
    for (const Action& action : options.actions) {
      if (host.FinishStatus() || ended()) break;
      Do(host, action);
    }
    host.Runner().Stop();
    status = host.FinishStatus().value_or(done);
  } catch (const vbs::ScriptError& error) {
    status = scriptError;
    if (!error.isFinal || !ended()) ReportError(file, error);
  }
  if (!ended()) return status;
  Complain("ended by a signal");
  return scriptError;
}

ScriptConsole ConsoleOf(const Options& options) {
  ScriptConsole console{[](std::u16string_view text) { PrintText(stdout, vbs::Utf8Of(text)); },
                        [](std::u16string_view text) { PrintText(stderr, vbs::Utf8Of(text)); }, u"\n"};
  for (const std::string& argument : options.arguments) console.arguments.push_back(vbs::Utf16Of(argument));
  return console;
}

std::function<double()> UniformGenerator() {
  auto engine = std::make_shared<std::mt19937_64>(std::random_device()());
  return [engine] { return std::uniform_real_distribution<double>(0, 1)(*engine); };
}

// Without `endings`, as nothing is to be brought to an end in order, a signal kills.
int RunInProgram(const Options& options, EndingSignals* endings) {
  const fs::path file = fs::absolute(options.file);
  QtLoop loop;
  PosixDeviceSource devices(loop);
  HeadlessPrompts prompts([](std::string_view line) { PrintText(stderr, line); });
  NoTextOpener opener;
  const LastResort lastResort{[endings] { return endings != nullptr && endings->Wait(); }, Abandon, true};
  FrmMain frm({loop,
               ProgramFolder(options.inventory ? file : file.parent_path()),
               devices,
               prompts,
               opener,
               UniformGenerator(),
               true,
               MakeEngine,
               {},
               lastResort});
  frm.controls.display.txtric.OnAppend = [](std::string_view text, Color) {
    PrintText(stdout, Utf8FromBytes(text));
  };
  frm.OnTrouble = [](std::string_view line) { Complain(Utf8FromBytes(line)); };
  frm.Script().Console = ConsoleOf(options);
  frm.Load("");
  if (options.inventory) return TakeInventory(options, file, frm.Script().Runner());
  if (options.check) return CheckScript(options, file, frm.Script().Runner());
  bool wasEnded = false;
  const auto watch = loop.WatchReadable(endings->Descriptor(), [&] {
    wasEnded = endings->Take();
    frm.Script().Runner().Stop();
  });
  return RunScript(options, file, frm.Script(), [&] { return wasEnded || endings->Wait(); });
}

int Run(std::span<const char* const> arguments) {
  const Options options = ParseOptions(arguments);
  if (options.help) {
    PrintText(stdout, HelpText());
    return done;
  }
  if (options.version) {
    PrintText(stdout, VersionText("quarlin-script"));
    return done;
  }
  if (!options.error.empty()) {
    Complain(options.error);
    PrintText(stderr, HelpText());
    return wrongUsage;
  }
  if (options.inventory ? !IsFolder(options.file) : !CanBeRead(options.file)) {
    Complain(options.file + " cannot be read");
    return wrongUsage;
  }
  if (options.inventory || options.check) return RunInProgram(options, nullptr);
  EndingSignals endings;
  return RunInProgram(options, &endings);
}

}  // namespace
}  // namespace quarlin::script_tool

// What nobody expects ends the program where a debugger sees it. NOLINTNEXTLINE(bugprone-exception-escape)
int main(int argc, char** argv) {
  quarlin::PrepareProcess();
  const QCoreApplication application(argc, argv);
  return quarlin::script_tool::Run({argv + 1, static_cast<std::size_t>(argc - 1)});
}
