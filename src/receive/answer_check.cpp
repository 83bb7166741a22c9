// SPDX-License-Identifier: GPL-3.0-or-later
#include "receive/answer_check.h"

#include <fmt/format.h>

#include "base/text.h"
#include "receive/answer_checksum.h"

namespace quarlin {
namespace {

constexpr std::size_t mostQuoted = 60;  // bytes

}  // namespace

std::optional<Finding> CheckAnswer(std::string_view text, const AnswerRules& rules) {
  if (rules.length != 0 && text.size() != static_cast<std::size_t>(rules.length)) {
    return Finding{Verdict::WrongLength,
                   fmt::format("{} characters instead of {}", text.size(), rules.length),
                   fmt::format("{} characters", rules.length), fmt::format("{} characters", text.size())};
  }
  if (rules.same && text != *rules.same) {
    return Finding{Verdict::NotEqual,
                   fmt::format("\"{}\" instead of \"{}\"", CodedText(text, mostQuoted),
                               CodedText(*rules.same, mostQuoted)),
                   std::string(*rules.same), std::string(text)};
  }
  return std::nullopt;
}

std::optional<Finding> CheckAnswerSum(std::string_view text, std::string_view stripped, int listIndex) {
  const auto mismatch = FindChecksumMismatch(text, stripped, listIndex);
  if (!mismatch) return std::nullopt;
  return Finding{Verdict::WrongChecksum,
                 fmt::format("{} received, {} computed", CodedText(mismatch->received, mostQuoted),
                             CodedText(mismatch->computed, mostQuoted)),
                 mismatch->computed, mismatch->received};
}

}  // namespace quarlin
