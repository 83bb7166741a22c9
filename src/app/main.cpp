// SPDX-License-Identifier: GPL-3.0-or-later
// Quarlin: the program, with a window or without one.

#include <fmt/format.h>
#include <unistd.h>

#include <QApplication>
#include <QCoreApplication>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <random>

#include "app/engines.h"
#include "base/ending_signals.h"
#include "base/licence.h"
#include "base/process.h"
#include "base/text.h"
#include "config/arguments.h"
#include "desktop/desktop_text_opener.h"
#include "link/posix_device.h"
#include "ui/frm_main.h"
#include "ui/headless.h"
#include "ui/qt/legible_style.h"
#include "ui/qt/main_window.h"
#include "ui/qt/qt_loop.h"
#include "ui/qt/qt_prompts.h"
#include "welcome/bundle.h"

namespace quarlin {
namespace {

constexpr Duration longestFarewell = std::chrono::seconds(10);  // to readers of what is printed

constexpr std::string_view helpText =
    R"(Quarlin, a test terminal for instruments that speak line-oriented ASCII protocols

  quarlin [--headless] [KEYWORD...]

Keywords, in any order, found anywhere on the command line without regard to case:
  LOAD      load config.cfg from the program folder, then connect
  DIALOG    check "Dialog.txt"
  LOG       check "Log": both directions go to LOG.TXT (not as the first word)
  LOGPAR    check "Log parser": the parser's output goes to LOGPAR.TXT
  SEQUENCE  send the lines of sequence.txt in turn
  RUN       connect if need be, then start the cycle
  EXIT      end the program when a run with a number of requests has ended

Options:
  --headless  no window: traffic and report on standard output, messages on standard error.
              Also without a display. At the end Report.json and junit.xml are written.
  --help      this text
  --version   version and licence
  The window toolkit's own options (--platform, --style, --geometry ...) work as well. Another word
  that begins with "--" is status 2.

Exit status: 0 what was asked for was done without an error; 1 there were errors, a run ended before
its end, or RUN exchanged nothing; 2 the link could not be opened or the set-up failed; or what a
script says with FormMain.Finish. Every status but 0 has its reason on standard error.

The program folder is $QUARLIN_HOME; else the program's own folder, where it can be written and is no
installation; else quarlin below $XDG_DATA_HOME, which is ~/.local/share where nothing else is said.
)";

std::string EnvironmentText(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

bool HasDisplay(const Arguments& arguments) {
  return arguments.choosesPlatform || !EnvironmentText("DISPLAY").empty() ||
         !EnvironmentText("WAYLAND_DISPLAY").empty() || !EnvironmentText("QT_QPA_PLATFORM").empty();
}

std::function<double()> UniformGenerator() {
  auto engine = std::make_shared<std::mt19937_64>(std::random_device()());
  return [engine] { return std::uniform_real_distribution<double>(0, 1)(*engine); };
}

std::unique_ptr<Watch> EndOnSignal(QtLoop& loop, EndingSignals& endings, FrmMain& frm) {
  return loop.WatchReadable(endings.Descriptor(), [&endings, &frm] {
    while (endings.Take()) frm.Unload(EndCause::Signal);
  });
}

LastResort AgainstScripts(const EndingSignals& endings, bool nobodyToAsk) {
  return {[&endings] { return endings.Wait(); }, Abandon, nobodyToAsk};
}

// A second signal cuts the wait for the readers short.
void Finish(StandardStream& output, std::string_view report, StandardStream& errors, Instant deadline,
            EndingSignals& endings) {
  output.Finish(report, deadline, endings.Descriptor());
  const std::uint64_t lost = output.LostLines();
  const std::string words = lost == 0 ? "" : fmt::format("quarlin: {} lines were not printed\n", lost);
  errors.Finish(words, deadline, endings.Descriptor());
}

// Why the exit status is not 0.
void PrintReason(const FrmMain& frm, StandardStream& errors) {
  const std::string reason = frm.Ending().reason;
  if (!reason.empty()) errors.Write("quarlin: " + Utf8FromBytes(reason) + "\n");
}

int RunHeadless(const Arguments& arguments, const ProgramFolder& folder, EndingSignals& endings) {
  QtLoop loop;
  PosixDeviceSource devices(loop);
  StandardStream output(loop, STDOUT_FILENO);
  StandardStream errors(loop, STDERR_FILENO);
  output.OnFirstLoss = [&] { errors.Write("quarlin: standard output is not read; lines are lost\n"); };
  HeadlessPrompts prompts([&](std::string_view line) { errors.Write(line); });
  NoTextOpener opener;
  FrmMain frm({loop,
               folder,
               devices,
               prompts,
               opener,
               UniformGenerator(),
               true,
               MakeEngine,
               {},
               AgainstScripts(endings, true)});
  const auto watch = EndOnSignal(loop, endings, frm);
  frm.OnTrouble = [&](std::string_view text) { errors.Write(Utf8FromBytes(text) + "\n"); };
  int status = 0;
  {
    const TrafficPrinter printer(loop, frm.controls.display.txtric, output);
    loop.Post([&] { frm.Load(arguments.commandLine); });
    status = loop.Run();
    frm.controls.display.txtric.OnAppend = nullptr;
  }
  PrintReason(frm, errors);
  std::string report;
  for (const std::string& line : SplitLines(frm.ReportText())) report += Utf8FromBytes(line) + "\n";
  Finish(output, report, errors, loop.Now() + longestFarewell, endings);
  return status;
}

int RunWindow(const Arguments& arguments, const ProgramFolder& folder, const Bundle& bundle,
              EndingSignals& endings) {
  QtLoop loop;
  PosixDeviceSource devices(loop);
  QtPrompts prompts;
  DesktopTextOpener opener(EnvironmentText);
  StandardStream errors(loop, STDERR_FILENO);
  FrmMain frm({loop, folder, devices, prompts, opener, UniformGenerator(), false, MakeEngine, bundle,
               AgainstScripts(endings, false)});
  const auto watch = EndOnSignal(loop, endings, frm);
  frm.OnTrouble = [&](std::string_view text) { errors.Write(Utf8FromBytes(text) + "\n"); };
  MainWindow window(frm);
  prompts.SetWindow(&window);
  window.ShowAsLast();
  loop.Post([&] { frm.Load(arguments.commandLine); });
  const int status = loop.Run();
  PrintReason(frm, errors);
  errors.Finish("", loop.Now() + longestFarewell, endings.Descriptor());
  return status;
}

}  // namespace
}  // namespace quarlin

// What nobody expects ends the program where a debugger sees it. NOLINTNEXTLINE(bugprone-exception-escape)
int main(int argc, char** argv) {
  using namespace quarlin;
  PrepareProcess();
  const Arguments arguments = ReadArguments(argc, argv);
  if (!arguments.unknownOption.empty()) {
    fmt::print(stderr, "quarlin: unknown option {}\n\n{}", arguments.unknownOption, helpText);
    return 2;
  }
  if (arguments.help) {
    fmt::print("{}", helpText);
    return 0;
  }
  if (arguments.version) {
    fmt::print("{}", VersionText("quarlin"));
    return 0;
  }
  // The toolkit's own dispatcher takes half the time of the one over GLib for each descriptor served.
  setenv("QT_NO_GLIB", "1", 0);
  EndingSignals endings;
  std::error_code ignored;
  const auto executable = std::filesystem::read_symlink("/proc/self/exe", ignored);
  const ProgramFolder folder = FindProgramFolder(executable, EnvironmentText);
  if (arguments.headless || !HasDisplay(arguments)) {
    const QCoreApplication application(argc, argv);
    return RunHeadless(arguments, folder, endings);
  }
  QGuiApplication::setDesktopFileName("quarlin");  // by it a desktop finds the icon and the name
  const QApplication application(argc, argv);
  MakeStyleLegible();
  return RunWindow(arguments, folder, FindBundle(executable, EnvironmentText), endings);
}
