#include "display/line_builder.h"

#include <fmt/format.h>

namespace quarlin {
namespace {

constexpr int mostErrors = 100;

}  // namespace

std::string_view LineBuilder::Append(std::string_view text, Color color) {
  controls_.txtric.Append(text, color);
  return text;
}

void LineBuilder::AppendError(std::string_view line, std::string_view detail) {
  Append(fmt::format("{}\r\n", line), colors::red);
  const std::string time = DateTimeText(loop_.Local());
  controls_.lstError.AddItem(line, detail.empty() ? time : fmt::format("{} {}", time, detail));
  while (controls_.lstError.ListCount() > mostErrors) controls_.lstError.RemoveItem(0);
}

}  // namespace quarlin
