// SPDX-License-Identifier: GPL-3.0-or-later
#include "instrument/options.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <numeric>
#include <string_view>
#include <system_error>

#include "faults/chance.h"
#include "instrument/bound_socket.h"

namespace quarlin::instrument {

namespace {

constexpr double mostMilliseconds = 3'600'000;
constexpr double mostStreamed = 10'000;

// The name of a checksum in the receive side's list, in small letters and without blanks.
std::string NameOf(ChecksumStyle style) {
  std::string name(ChecksumOf(style).listed);
  std::erase(name, ' ');
  for (char& c : name) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return name;
}

// "none, motorola, ... or 2c".
std::string ChecksumNames() {
  std::string names = "none";
  for (const ChecksumStyle style : AnswerChecksums()) {
    names += (style == AnswerChecksums().back() ? " or " : ", ") + NameOf(style);
  }
  return names;
}

struct EndName {
  std::string_view name;
  std::string_view end;
};
constexpr std::array<EndName, 3> endNames{{{"cr", "\r"}, {"lf", "\n"}, {"crlf", "\r\n"}}};

// Each reader takes one value into the options and returns what is wrong with it, or an empty text.
using Reader = std::string (*)(std::string_view value, Options& options);

template <typename Number>
std::string ReadNumber(std::string_view value, Number least, Number most, Number& number) {
  Number read{};
  const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), read);
  const bool whole = error == std::errc{} && end == value.data() + value.size();
  if (!whole || !(read >= least && read <= most)) {
    return fmt::format("must be a number from {} to {}", least, most);
  }
  number = read;
  return {};
}

std::string ReadMilliseconds(std::string_view value, Duration& duration) {
  double milliseconds = 0;
  auto wrong = ReadNumber(value, 0.0, mostMilliseconds, milliseconds);
  duration = std::chrono::duration_cast<Duration>(std::chrono::duration<double, std::milli>(milliseconds));
  return wrong;
}

std::string ReadSeed(std::string_view value, Options& options) {
  return ReadNumber(value, std::uint64_t{0}, UINT64_MAX, options.settings.seed);
}

std::string ReadCount(std::string_view value, Options& options) {
  return ReadNumber(value, std::uint64_t{1}, UINT64_MAX, options.settings.count);
}

std::string ReadDelay(std::string_view value, Options& options) {
  return ReadMilliseconds(value, options.settings.delay);
}

std::string ReadJitter(std::string_view value, Options& options) {
  return ReadMilliseconds(value, options.settings.jitter);
}

std::string ReadStream(std::string_view value, Options& options) {
  return ReadNumber(value, 0.0, mostStreamed, options.settings.streamRate);
}

template <Fault fault>
std::string ReadRate(std::string_view value, Options& options) {
  const auto rate = ReadProbability(value);
  if (!rate) return "must be a number from 0 to 1";
  options.settings.RateOf(fault) = *rate;
  return {};
}

std::string ReadChecksum(std::string_view value, Options& options) {
  options.settings.checksum = std::nullopt;
  if (value == "none") return {};
  for (const ChecksumStyle style : AnswerChecksums()) {
    if (value != NameOf(style)) continue;
    options.settings.checksum = style;
    return {};
  }
  return "must be " + ChecksumNames();
}

std::string ReadEnd(std::string_view value, Options& options) {
  for (const auto& [name, end] : endNames) {
    if (value != name) continue;
    options.settings.end = end;
    return {};
  }
  return "must be cr, lf or crlf";
}

std::string ReadLink(std::string_view value, Options& options) {
  options.link = value;
  return value.empty() ? "must be the path of a link" : "";
}

std::string ReadTcp(std::string_view value, Options& options) {
  return ReadNumber(value, std::uint16_t{0}, std::uint16_t{UINT16_MAX}, options.tcp.emplace());
}

std::string ReadUdp(std::string_view value, Options& options) {
  return ReadNumber(value, std::uint16_t{0}, std::uint16_t{UINT16_MAX}, options.udp.emplace());
}

std::string ReadBind(std::string_view value, Options& options) {
  options.bind = value;
  return IsAddress(options.bind) ? "" : "must be an IPv4 or IPv6 address";
}

std::string ReadJoin(std::string_view value, Options& options) {
  if (options.join.size() == 2) options.join.clear();
  options.join.emplace_back(value);
  return value.empty() ? "must be the paths of two links" : "";
}

std::string ReadQuiet(std::string_view /*none*/, Options& options) {
  options.quiet = true;
  return {};
}

std::string ReadHelp(std::string_view /*none*/, Options& options) {
  options.help = true;
  return {};
}

std::string ReadVersion(std::string_view /*none*/, Options& options) {
  options.version = true;
  return {};
}

struct Option {
  std::string_view name;
  std::string_view
      value;  // what stands for it in the help; empty when the option has none, two words for two
  Reader read;
  std::string_view help;
};

constexpr std::array<Option, 21> optionTable{{
    {"--link", "PATH", ReadLink, "also make a symbolic link PATH to the port; removed at the end"},
    {"--tcp", "PORT", ReadTcp, "play on this TCP port instead; 0 is any free one"},
    {"--udp", "PORT", ReadUdp, "play on this UDP port instead; 0 is any free one"},
    {"--bind", "ADDRESS", ReadBind, "address of that port (127.0.0.1)"},
    {"--join", "PATH1 PATH2", ReadJoin, "no instrument: join two pseudo-terminals, with links to them"},
    {"--end", "END", ReadEnd, "end answers with cr, lf or crlf (crlf)"},
    {"--checksum", "STYLE", ReadChecksum, "checksum behind each answer, see below (none)"},
    {"--delay", "MS", ReadDelay, "milliseconds from a request to its answer (0)"},
    {"--jitter", "MS", ReadJitter, "up to MS more, evenly spread (0)"},
    {"--stream", "HZ", ReadStream, "send HZ weights a second without being asked (0)"},
    {"--drop", "RATE", ReadRate<Fault::Drop>, "no answer"},
    {"--garble", "RATE", ReadRate<Fault::Garble>, "one character altered, checksum of the true text"},
    {"--short", "RATE", ReadRate<Fault::Short>, "1-3 last characters missing, checksum of what is left"},
    {"--bad-checksum", "RATE", ReadRate<Fault::BadChecksum>, "wrong checksum; needs --checksum"},
    {"--split", "RATE", ReadRate<Fault::Split>, "sent in 2-4 pieces, 2-8 ms apart"},
    {"--err", "RATE", ReadRate<Fault::Err>, "answers ERR, without checksum"},
    {"--seed", "N", ReadSeed, "begin of all chance: same seed, same faults (1)"},
    {"--count", "N", ReadCount, "end after N requests, when all is sent and fetched (never)"},
    {"--quiet", "", ReadQuiet, "do not print the counts at the end"},
    {"--help", "", ReadHelp, "print this and end"},
    {"--version", "", ReadVersion, "print version and licence, and end"},
}};

const Option* FindOption(std::string_view name) {
  for (const auto& option : optionTable) {
    if (option.name == name) return &option;
  }
  return nullptr;
}

std::size_t ValueCount(const Option& option) {
  if (option.value.empty()) return 0;
  return 1 + static_cast<std::size_t>(std::count(option.value.begin(), option.value.end(), ' '));
}

// Takes the option that begins `arguments`, and its values, off them.
void TakeOption(std::span<const char* const>& arguments, Options& options) {
  const std::string_view argument = arguments.front();
  arguments = arguments.subspan(1);
  const auto equals = argument.find('=');
  const auto name = argument.substr(0, equals);
  const Option* option = FindOption(name);
  if (option == nullptr) {
    options.error = fmt::format("{}: unknown option; --help lists all", name);
    return;
  }
  const std::size_t count = ValueCount(*option);
  std::vector<std::string_view> values;
  if (equals != std::string_view::npos) values.push_back(argument.substr(equals + 1));
  for (; values.size() < count && !arguments.empty(); arguments = arguments.subspan(1)) {
    values.push_back(arguments.front());
  }
  if (values.size() != count) {
    options.error = fmt::format("{}: {}", name,
                                count == 0   ? "takes no value"
                                : count == 1 ? "needs a value"
                                             : "needs two values");
    return;
  }
  if (count == 0) values.emplace_back();
  for (const auto value : values) {
    const auto wrong = option->read(value, options);
    if (wrong.empty()) continue;
    options.error = fmt::format("{} {}: {}", name, value, wrong);
    return;
  }
}

// What is wrong with the options together.
std::string Conflict(const Options& options) {
  const auto& rates = options.settings.faultRates;
  constexpr double roundingAllowance = 1e-9;  // ten times 0.1 may come out a little above 1
  if (std::accumulate(rates.begin(), rates.end(), 0.0) > 1 + roundingAllowance) {
    return "the rates of all faults together must not be above 1";
  }
  if (rates[static_cast<std::size_t>(Fault::BadChecksum)] > 0 && !options.settings.checksum) {
    return "--bad-checksum needs a --checksum other than none";
  }
  const bool network = options.tcp || options.udp;
  if (options.tcp && options.udp) return "--tcp and --udp exclude each other";
  if (network && !options.link.empty()) return "--link is for a pseudo-terminal, not for the network";
  if (!network && !options.bind.empty()) return "--bind needs --tcp or --udp";
  return {};
}

}  // namespace

Options ParseOptions(std::span<const char* const> arguments) {
  Options options;
  std::size_t count = 0;
  for (; !arguments.empty() && options.error.empty(); ++count) TakeOption(arguments, options);
  if (options.error.empty()) options.error = Conflict(options);
  if (options.error.empty() && !options.join.empty() && count > 1) options.error = "--join stands alone";
  return options;
}

std::string HelpText() {
  std::string text = R"(Usage: quarlin-instrument [OPTION]...

Plays a weighing indicator on a pseudo-terminal, or on a TCP or UDP port. The first line it prints says where: the
path of the port to open, or "127.0.0.1:4001". Line speed and parity do not matter.

A request is a line that ends with CR, LF or CR LF, in upper or lower case; STX and ETX in it are ignored.
  READ   the weight, always 19 characters: "ST,GS,+00012.345 kg";
         US instead of ST while it settles, NT instead of GS (net) after TARE
  TARE   the present weight becomes the tare: "TARE OK"
  ZERO   the present weight becomes zero, the tare is cleared: "ZERO OK"
  SN     the serial number, which depends on the seed: "SN,18460219"
  UNIT   steps the unit from kg to g to lb and back to kg: "UNIT,g"
  VER    the version: "VER,1.00"
Anything else is answered "ERR", without checksum and without faults.

Options (the value after a blank or "="; the default in parentheses):
)";
  for (const auto& option : optionTable) {
    text += fmt::format("  {:<21}{}\n", fmt::format("{} {}", option.name, option.value), option.help);
  }
  text += "\nA STYLE is " + ChecksumNames() + ".\n";
  text += R"(
--drop, --garble, --short, --bad-checksum, --split and --err are faults. A RATE goes from 0 to 1 and is the
share of answers struck; an answer has one fault at most, so all rates together may not be above 1.
Weights that were not asked for have the checksum but no faults.

SIGINT or SIGTERM ends the instrument; then it prints what it did, and on SIGUSR1 in between:
  requests      lines that were not empty
  answers       answers whose sending has begun, faulty ones and every ERR among them
  dropped       requests left without an answer by --drop; not among the answers
  garbled, short, bad-checksum, split, err
                answers with that fault; all are among the answers
  unknown       requests that were not understood; their ERR is among the answers, but not in err
  streamed      weights sent without being asked; not among the answers
  bytes-in, bytes-out
                bytes taken from and given to the port
Once nothing waits to be sent any more, requests = answers + dropped, unless a TCP client left before its answer.

Over TCP there is one client at a time: a new one replaces the old one, whose begun request and unsent answers are
thrown away. Over UDP each answer, and each piece of a split one, is one datagram to the sender of the last one.
--join prints the paths of its two pseudo-terminals and copies every byte from each to the other, until ended.

The exit status is 0, 1 when the port or the link failed, or 2 when an option is wrong.

Examples:
  quarlin-instrument --link /tmp/scale
  quarlin-instrument --delay 20 --jitter 10 --checksum sysway --garble 0.01 --bad-checksum 0.01
  quarlin-instrument --tcp 4001 --stream 10 --end cr
  quarlin-instrument --count 1000 --drop 0.05 --split 0.2 --seed 7
)";
  return text;
}

}  // namespace quarlin::instrument
