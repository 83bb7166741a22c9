// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/figures_text.h"

#include <fmt/format.h>

#include <nlohmann/json.hpp>

#include "base/numbers.h"
#include "data/figures.h"

namespace quarlin::data_tool {

std::string FiguresAsText(const Statistics& statistics, const std::string& unit, bool timed) {
  std::string text = fmt::format("{:20}{}\n", "count", statistics.count);
  for (const Figure& figure : FiguresOf(statistics, timed)) {
    if (!figure.value) continue;
    text += fmt::format("{:20}{}", figure.caption, DecimalText(*figure.value));
    if (!unit.empty()) text += fmt::format(" {}{}", unit, figure.perHour ? "/h" : "");
    text += '\n';
  }
  return text + fmt::format("{:20}{} values\n", "settled after", statistics.settledFrom);
}

std::string FiguresAsJson(const Statistics& statistics, const std::string& unit, bool timed) {
  nlohmann::ordered_json json{{"count", statistics.count}};
  for (const Figure& figure : FiguresOf(statistics, timed)) {
    json[std::string(figure.key)] = figure.value ? nlohmann::ordered_json(*figure.value) : nullptr;
  }
  json["settled_after"] = statistics.settledFrom;
  json["unit"] = unit;
  return json.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

}  // namespace quarlin::data_tool
