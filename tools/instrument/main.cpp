// SPDX-License-Identifier: GPL-3.0-or-later
#include <fmt/format.h>

#include <cstdio>
#include <exception>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <system_error>

#include "base/clock.h"
#include "base/licence.h"
#include "instrument/instrument.h"
#include "instrument/joint.h"
#include "instrument/options.h"
#include "instrument/pty_port.h"
#include "instrument/server.h"
#include "instrument/signal_input.h"
#include "instrument/tcp_port.h"
#include "instrument/udp_port.h"

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

int Status(std::error_code error) {
  if (!error) return 0;
  Complain(error.message());
  return 1;
}

std::unique_ptr<Port> OpenPort(const Options& options) {
  const std::string address = options.bind.empty() ? "127.0.0.1" : options.bind;
  if (options.tcp) return std::make_unique<TcpPort>(address, *options.tcp);
  if (options.udp) return std::make_unique<UdpPort>(address, *options.udp);
  return std::make_unique<PtyPort>();
}

// In both, the signals come first, so that one from then on is an orderly end.

int Join(const Options& options) {
  const SignalInput signals;
  Joint joint;
  const std::string names[] = {joint.Plug(0).Name(), joint.Plug(1).Name()};
  const PortLink first(options.join[0], names[0]);
  const PortLink second(options.join[1], names[1]);
  Tell(names[0] + "\n" + names[1] + "\n");
  return Status(joint.Run(signals));
}

int Play(const Options& options) {
  const SignalInput signals;
  const auto port = OpenPort(options);
  std::optional<PortLink> link;
  if (!options.link.empty()) link.emplace(options.link, port->Name());
  const SystemClock clock;
  Instrument instrument(options.settings, clock.Now());
  Server server(instrument, *port, signals, clock, [&] { Tell(ReportText(instrument.Totals())); });
  Tell(port->Name() + "\n");
  const auto error = server.Run();
  if (!options.quiet) Tell(ReportText(instrument.Totals()));
  return Status(error);
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
  if (options.version) {
    Tell(VersionText("quarlin-instrument"));
    return 0;
  }
  try {
    return options.join.empty() ? Play(options) : Join(options);
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
