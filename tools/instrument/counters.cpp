// SPDX-License-Identifier: GPL-3.0-or-later
#include "instrument/counters.h"

#include <fmt/format.h>

#include <string_view>
#include <utility>

namespace quarlin::instrument {

std::string ReportText(const Counters& counters) {
  const std::pair<std::string_view, std::uint64_t> rows[] = {
      {"requests", counters.requests},       {"answers", counters.answers},
      {"dropped", counters.Of(Fault::Drop)}, {"garbled", counters.Of(Fault::Garble)},
      {"short", counters.Of(Fault::Short)},  {"bad-checksum", counters.Of(Fault::BadChecksum)},
      {"split", counters.Of(Fault::Split)},  {"err", counters.Of(Fault::Err)},
      {"unknown", counters.unknown},         {"streamed", counters.streamed},
      {"bytes-in", counters.bytesIn},        {"bytes-out", counters.bytesOut},
  };
  std::string text;
  for (const auto& [name, number] : rows) text += fmt::format("{}: {}\n", name, number);
  return text;
}

}  // namespace quarlin::instrument
