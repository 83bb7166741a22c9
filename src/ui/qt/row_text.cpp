#include "ui/qt/row_text.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <string_view>

#include "base/clock.h"

namespace quarlin {
namespace {

constexpr std::size_t cellsPerPair = 3;  // two digits and the gap

std::string TimeStamp(LocalTime time) {
  using std::chrono::milliseconds;
  const auto sinceEpoch = std::chrono::floor<milliseconds>(time).time_since_epoch();
  const auto thousandth = (sinceEpoch % 1000 + milliseconds(1000)) % 1000;
  return fmt::format("{}.{:03}  ", TimeText(time), thousandth.count());
}

void AppendPairs(std::string& cells, std::string_view bytes) {
  if (bytes.empty()) return;
  constexpr std::string_view digits = "0123456789ABCDEF";
  const std::size_t begin = cells.size();
  cells.resize(begin + bytes.size() * cellsPerPair - 1, ' ');
  char* pair = cells.data() + begin;
  for (const char byte : bytes) {
    const auto code = static_cast<unsigned char>(byte);
    pair[0] = digits[code >> 4];
    pair[1] = digits[code & 15];
    pair += cellsPerPair;
  }
}

bool IsControlByte(char byte) {
  const auto code = static_cast<unsigned char>(byte);
  return code < 0x20 || (code >= 0x7F && code < 0xA0);
}

}  // namespace

Row::Row(TextLine line, RowFormat format) : line_(std::move(line)) {
  const std::string_view text = line_.text;
  const std::string_view shown = format.lineEnds ? text : text.substr(0, line_.visible);
  cells_.reserve(shown.size() + 16 + (format.hex ? text.size() * cellsPerPair : 0));
  if (format.times) cells_ = TimeStamp(line_.time);
  hexBegin_ = cells_.size();
  if (format.hex) AppendPairs(cells_, text);
  hexEnd_ = cells_.size();
  if (format.hex) cells_ += "  |";
  textBegin_ = cells_.size();
  cells_ += shown;
  textEnd_ = cells_.size();
  if (format.hex) cells_ += '|';
}

std::optional<std::size_t> Row::ByteAt(std::size_t cell) const {
  if (cell >= textBegin_ && cell < textEnd_) return cell - textBegin_;
  if (cell < hexBegin_ || cell >= hexEnd_) return std::nullopt;
  const std::size_t offset = cell - hexBegin_;
  if (offset % cellsPerPair == cellsPerPair - 1) return std::nullopt;
  return offset / cellsPerPair;
}

bool Row::IsControl(std::size_t cell) const {
  return cell >= textBegin_ && cell < textEnd_ && IsControlByte(cells_[cell]);
}

Color Row::ColorAt(std::size_t byte) const {
  const auto after = std::upper_bound(line_.runs.begin(), line_.runs.end(), byte,
                                      [](std::size_t at, const ColorRun& run) { return at < run.begin; });
  return after == line_.runs.begin() ? colors::black : std::prev(after)->color;
}

std::string Row::CopiedText(std::size_t begin, std::size_t end) const {
  const std::size_t lineEnd = std::min(textBegin_ + line_.visible, textEnd_);
  const auto between = [&](std::size_t from, std::size_t to) {
    from = std::max(begin, from);
    to = std::min(end, to);
    return from < to ? std::string_view(cells_).substr(from, to - from) : std::string_view();
  };
  return std::string(between(0, lineEnd)).append(between(textEnd_, cells_.size()));
}

std::string Row::CopiedBytes(std::size_t begin, std::size_t end) const {
  std::string bytes;
  std::size_t next = 0;  // bytes before it were taken: a row as hex shows most of them twice
  for (std::size_t cell = begin; cell < std::min(end, cells_.size()); ++cell) {
    const auto byte = ByteAt(cell);
    if (!byte || *byte < next) continue;
    bytes += line_.text[*byte];
    next = *byte + 1;
  }
  if (end == throughLineEnd) bytes += line_.text.substr(std::max(next, line_.visible));
  return bytes;
}

}  // namespace quarlin
