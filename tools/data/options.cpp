// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/options.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>
#include <vector>

#include "base/text.h"

namespace quarlin::data_tool {
namespace {

constexpr std::array<std::pair<std::string_view, Verb>, 3> verbs{{
    {"stats", Verb::Stats},
    {"filter", Verb::Filter},
    {"plot", Verb::Plot},
}};

constexpr std::array<std::pair<std::string_view, FilterKind>, 6> kinds{{
    {"moving-average", FilterKind::MovingAverage},
    {"median", FilterKind::Median},
    {"exponential", FilterKind::Exponential},
    {"butterworth", FilterKind::Butterworth},
    {"chebyshev", FilterKind::Chebyshev},
    {"notch", FilterKind::Notch},
}};

std::string_view NameOf(FilterKind kind) {
  for (const auto& [name, each] : kinds) {
    if (each == kind) return name;
  }
  return "none";
}

// Each reader takes one value into the options and returns what is wrong with it, or an empty text.
using Reader = std::string (*)(std::string_view value, Options& options);

template <typename Number>
bool ReadWhole(std::string_view text, Number& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc{} && end == text.data() + text.size();
}

template <FilterField field, double FilterSettings::*member>
std::string ReadFraction(std::string_view value, Options& options) {
  options.given.insert(field);
  return ReadWhole(value, options.filter.*member) ? "" : "must be a number with a point as decimal sign";
}

template <FilterField field, int FilterSettings::*member>
std::string ReadInteger(std::string_view value, Options& options) {
  options.given.insert(field);
  return ReadWhole(value, options.filter.*member) ? "" : "must be a whole number of at most 9 digits";
}

std::string ReadKind(std::string_view value, Options& options) {
  for (const auto& [name, kind] : kinds) {
    if (name != value) continue;
    options.filter.kind = kind;
    return {};
  }
  return "must be moving-average, median, exponential, butterworth, chebyshev or notch";
}

std::string ReadColumn(std::string_view value, Options& options) {
  NumberRule rule{.kind = NumberRule::Kind::Column, .expression = {}, .name = {}};
  const bool good = ReadWhole(value, rule.place) && rule.place >= 1;
  if (options.rule && options.rule->kind == NumberRule::Kind::Group) return "does not go with --match";
  options.rule = rule;
  return good ? "" : "must be a whole number from 1";
}

std::string ReadTimeColumn(std::string_view value, Options& options) {
  const bool good = ReadWhole(value, options.timeColumn.emplace()) && *options.timeColumn >= 1;
  return good ? "" : "must be a whole number from 1";
}

std::string ReadMatch(std::string_view value, Options& options) {
  if (options.rule && options.rule->kind == NumberRule::Kind::Column) return "does not go with --column";
  options.rule = NumberRule{.kind = NumberRule::Kind::Group, .expression = std::string(value), .name = {}};
  return {};
}

std::string ReadFolder(std::string_view value, Options& options) {
  options.folder = value;
  return value.empty() ? "must be a folder" : "";
}

std::string ReadPicture(std::string_view value, Options& options) {
  options.picture = value;
  const std::string_view ending = value.substr(value.size() - std::min<std::size_t>(value.size(), 4));
  return EqualsIgnoringCase(ending, ".svg") || EqualsIgnoringCase(ending, ".png")
             ? ""
             : "must be a file that ends in .svg or .png";
}

std::string ReadJson(std::string_view /*none*/, Options& options) {
  options.json = true;
  return {};
}

std::string ReadZeroPhase(std::string_view /*none*/, Options& options) {
  options.zeroPhase = true;
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

constexpr unsigned stats = 1U << static_cast<unsigned>(Verb::Stats);
constexpr unsigned filter = 1U << static_cast<unsigned>(Verb::Filter);
constexpr unsigned plot = 1U << static_cast<unsigned>(Verb::Plot);

struct Option {
  std::string_view name;
  std::string_view value;  // what stands for it in the help; empty when the option has none
  unsigned verbs;          // of those it belongs to
  Reader read;
  std::string_view help;
};

using enum FilterField;

constexpr std::array<Option, 19> optionTable{{
    {"--column", "N", stats | filter | plot, ReadColumn, "take the number in the N-th column of each row"},
    {"--match", "REGEX", stats | filter | plot, ReadMatch,
     "take what the group \"value\", else the first group, of REGEX matches"},
    {"--time-column", "N", stats | filter | plot, ReadTimeColumn,
     "the time of each row stands in column N; in a log with times: any N"},
    {"--json", "", stats, ReadJson, "print the figures as JSON"},
    {"--rate", "HZ", stats | filter | plot, ReadFraction<Rate, &FilterSettings::rate>, "values a second"},
    {"--kind", "KIND", filter | plot, ReadKind,
     "moving-average, median, exponential, butterworth, chebyshev or notch"},
    {"--width", "N", filter | plot, ReadInteger<Width, &FilterSettings::width>,
     "moving average, median: over N values; odd for the median"},
    {"--alpha", "A", filter | plot, ReadFraction<Alpha, &FilterSettings::alpha>,
     "exponential: weight of the new value, up to 1"},
    {"--order", "N", filter | plot, ReadInteger<Order, &FilterSettings::order>, "low-pass: 1 to 8"},
    {"--cutoff", "HZ", filter | plot, ReadFraction<Cutoff, &FilterSettings::cutoff>,
     "low-pass: where the gain is -3 dB; Chebyshev: the edge of the ripple"},
    {"--ripple", "DB", filter | plot, ReadFraction<Ripple, &FilterSettings::ripple>,
     "Chebyshev: up to 20 (0.5)"},
    {"--frequency", "HZ", filter | plot, ReadFraction<Frequency, &FilterSettings::frequency>,
     "notch: what is taken out"},
    {"--q", "Q", filter | plot, ReadFraction<Q, &FilterSettings::q>, "notch: frequency by width at -3 dB"},
    {"--zero-phase", "", filter | plot, ReadZeroPhase, "both ways, so that nothing is shifted"},
    {"--out", "FOLDER", filter, ReadFolder, "also write orig.dat and filter.dat there"},
    {"-o", "FILE", plot, ReadPicture, "the picture: a name that ends in .svg or .png"},
    {"--version", "", stats | filter | plot, ReadVersion, "print version and licence, and end"},
    {"--help", "", stats | filter | plot, ReadHelp, "print this and end"},
    {"-h", "", stats | filter | plot, ReadHelp, ""},
}};

struct FieldOption {
  FilterField field;
  std::string_view name;
};
constexpr std::array<FieldOption, 8> fieldOptions{{{Width, "--width"},
                                                   {Alpha, "--alpha"},
                                                   {Order, "--order"},
                                                   {Cutoff, "--cutoff"},
                                                   {Ripple, "--ripple"},
                                                   {Frequency, "--frequency"},
                                                   {Q, "--q"},
                                                   {Rate, "--rate"}}};

std::string_view OptionOf(FilterField field) {
  for (const auto& [each, name] : fieldOptions) {
    if (each == field) return name;
  }
  return {};
}

unsigned BitOf(Verb verb) {
  return 1U << static_cast<unsigned>(verb);
}

bool TakeVerb(std::string_view word, Options& options) {
  for (const auto& [name, verb] : verbs) {
    if (name != word) continue;
    options.verb = verb;
    return true;
  }
  return false;
}

void TakeFile(std::string_view word, bool& taken, Options& options) {
  if (taken) {
    options.error = fmt::format("one file at a time: {} is one too many", word);
  } else if (word.empty()) {
    options.error = "a file needs a name";
  }
  taken = true;
  options.file = word == "-" ? "" : word;
}

// Takes the option that begins `arguments`, and its value, off them.
void TakeOption(std::span<const char* const>& arguments, Options& options) {
  const std::string_view argument = arguments.front();
  arguments = arguments.subspan(1);
  const auto equals = argument.find('=');
  const auto name = argument.substr(0, equals);
  const auto* option = std::find_if(optionTable.begin(), optionTable.end(),
                                    [&](const Option& each) { return each.name == name; });
  if (option == optionTable.end()) {
    options.error = fmt::format("{}: unknown option; --help lists all", name);
    return;
  }
  if ((option->verbs & BitOf(options.verb)) == 0) {
    options.error = fmt::format("{} does not go with this verb; --help lists all", name);
    return;
  }
  std::string_view value;
  if (equals != std::string_view::npos) {
    value = argument.substr(equals + 1);
  } else if (!option->value.empty()) {
    if (arguments.empty()) {
      options.error = fmt::format("{} needs a value: {}", name, option->value);
      return;
    }
    value = arguments.front();
    arguments = arguments.subspan(1);
  }
  if (option->value.empty() && equals != std::string_view::npos) {
    options.error = fmt::format("{} takes no value", name);
    return;
  }
  const std::string wrong = option->read(value, options);
  if (!wrong.empty()) options.error = fmt::format("{} {}; it is \"{}\"", name, wrong, value);
}

// The rate matters to every filter, and to these only in what is said in seconds; the ripple has a value that
// serves, and may stand with both kinds of low-pass.
bool MayBeMissing(FilterKind kind, FilterField field) {
  if (field == Ripple) return true;
  return field == Rate &&
         (kind == FilterKind::MovingAverage || kind == FilterKind::Median || kind == FilterKind::Exponential);
}

std::string FieldComplaint(const Options& options, FilterField field, std::string_view name) {
  const FilterKind kind = options.filter.kind;
  const bool given = options.given.contains(field);
  if (Reads(kind, field)) {
    return given || MayBeMissing(kind, field) ? "" : fmt::format("--kind {} needs {}", NameOf(kind), name);
  }
  const bool harmless = field == Rate || (field == Ripple && kind == FilterKind::Butterworth);
  if (!given || harmless) return {};
  if (kind == FilterKind::None) return fmt::format("{} needs --kind", name);
  return fmt::format("{} does not go with --kind {}", name, NameOf(kind));
}

std::string Complaint(const Options& options) {
  if (options.verb == Verb::Filter && options.filter.kind == FilterKind::None) return "filter needs --kind";
  if (options.verb == Verb::Plot && options.picture.empty()) return "plot needs -o FILE";
  for (const auto& [field, name] : fieldOptions) {
    if (std::string complaint = FieldComplaint(options, field, name); !complaint.empty()) return complaint;
  }
  if (const auto objection = ObjectionTo(options.filter)) {
    return fmt::format("{}: {}", OptionOf(objection->field), objection->sentence);
  }
  if (options.given.contains(Rate) && !(options.filter.rate > 0)) return "--rate must be above 0 Hz";
  return {};
}

}  // namespace

Options ParseOptions(std::span<const char* const> arguments) {
  Options options;
  const std::string_view verb = arguments.empty() ? "" : arguments.front();
  if (verb == "--help" || verb == "-h") {
    options.help = true;
    return options;
  }
  if (verb == "--version") {
    options.version = true;
    return options;
  }
  if (!TakeVerb(verb, options)) {
    options.error = verb.empty()
                        ? "say stats, filter or plot; --help tells more"
                        : fmt::format("\"{}\" is none of stats, filter and plot; --help tells more", verb);
    return options;
  }
  arguments = arguments.subspan(1);
  bool fileTaken = false;
  while (!arguments.empty() && options.error.empty()) {
    const std::string_view argument = arguments.front();
    if (argument.starts_with('-') && argument != "-") {
      TakeOption(arguments, options);
    } else {
      TakeFile(argument, fileTaken, options);
      arguments = arguments.subspan(1);
    }
  }
  if (options.error.empty() && !options.help && !options.version) options.error = Complaint(options);
  return options;
}

std::string HelpText() {
  std::string text = R"(Figures, filters and pictures of measured values.

  quarlin-data stats  [--json] [FILE]
  quarlin-data filter --kind moving-average|median --width N
                      | exponential --alpha A
                      | butterworth|chebyshev --order N --cutoff HZ --rate HZ [--ripple DB]
                      | notch --frequency HZ --q Q --rate HZ
                      [--zero-phase] [--out FOLDER] [FILE]
  quarlin-data plot   [FILE] -o run.svg|run.png [--kind ... as above]

FILE has a number in each row: alone, in a log, or in a table with columns. Standard input is read where there
is no FILE, or "-". The first number of a row counts unless --column or --match says which one. Rows without a
number are left out; the first ten are named on standard error. filter prints the filtered values, one a line.

)";
  for (const Option& option : optionTable) {
    if (option.help.empty()) continue;
    text += fmt::format("  {:18}{}\n", fmt::format("{} {}", option.name, option.value), option.help);
  }
  return text + R"(
Exit status: 0, or 2 for wrong use, for a file that cannot be read or written, and where there is no number at
all, with one line on standard error.
)";
}

}  // namespace quarlin::data_tool
