#include <fmt/format.h>

#include <cstdio>
#include <exception>
#include <optional>
#include <span>
#include <string_view>

#include "base/clock.h"
#include "instrument/instrument.h"
#include "instrument/options.h"
#include "instrument/pty_port.h"
#include "instrument/server.h"
#include "instrument/signal_input.h"

namespace quarlin::instrument {

namespace {

void Complain(std::string_view what) {
  fmt::print(stderr, "quarlin-instrument: {}\n", what);
}

// Whoever started the instrument waits for its lines, so each text goes out at once.
void Tell(std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), stdout);
  std::fflush(stdout);
}

int Play(const Options& options) {
  const SignalInput signals;  // first, so that a signal from now on is an orderly end
  const PtyPort port;
  std::optional<PortLink> link;
  if (!options.link.empty()) link.emplace(options.link, port.ClientPath());
  const SystemClock clock;
  Instrument instrument(options.settings, clock.Now());
  Server server(instrument, port, signals, clock, [&] { Tell(ReportText(instrument.Totals())); });
  Tell(port.ClientPath() + "\n");
  const auto error = server.Run();
  if (!options.quiet) Tell(ReportText(instrument.Totals()));
  if (!error) return 0;
  Complain(error.message());
  return 1;
}

int Run(std::span<const char* const> arguments) {
  const Options options = ParseOptions(arguments);
  if (!options.error.empty()) {
    Complain(options.error);
    return 2;
  }
  if (options.help) {
    Tell(HelpText());
    return 0;
  }
  try {
    return Play(options);
  } catch (const std::exception& failure) {
    Complain(failure.what());
    return 1;
  }
}

}  // namespace

}  // namespace quarlin::instrument

int main(int count, char** arguments) {
  return quarlin::instrument::Run({arguments + 1, static_cast<std::size_t>(count - 1)});
}
