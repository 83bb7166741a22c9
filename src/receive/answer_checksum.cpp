// SPDX-License-Identifier: GPL-3.0-or-later
#include "receive/answer_checksum.h"

#include <algorithm>

#include "macro/checksum.h"

namespace quarlin {
namespace {

// In front of its checksum an answer has more than nothing.
constexpr std::size_t fewestBefore = 3;
constexpr std::size_t shortestVerified = 5;

std::size_t ShortestVerified(const Checksum& checksum) {
  return std::max(shortestVerified, checksum.characters + fewestBefore);
}

// The entry of the list, 0 being none.
const Checksum* Listed(int index) {
  const auto styles = AnswerChecksums();
  if (index < 1 || static_cast<std::size_t>(index) > styles.size()) return nullptr;
  return &ChecksumOf(styles[static_cast<std::size_t>(index - 1)]);
}

}  // namespace

std::vector<std::string> AnswerChecksumNames() {
  std::vector<std::string> names{"None"};
  for (const ChecksumStyle style : AnswerChecksums()) names.emplace_back(ChecksumOf(style).listed);
  return names;
}

std::optional<ChecksumMismatch> FindChecksumMismatch(std::string_view text, std::string_view stripped,
                                                     int listIndex) {
  const Checksum* const checksum = Listed(listIndex);
  if (checksum == nullptr || text.size() < ShortestVerified(*checksum)) return std::nullopt;
  std::string body(stripped);
  if (checksum->style != ChecksumStyle::Lrc) {
    body = text;
    std::erase_if(body, [](char c) { return c == '\r' || c == '\n'; });
  }
  const std::size_t bodyLength = body.size() - std::min(body.size(), checksum->characters);
  const std::string received = body.substr(bodyLength);
  const std::string computed = ComputeChecksum(std::string_view(body).substr(0, bodyLength), checksum->style);
  if (received == computed) return std::nullopt;
  return ChecksumMismatch{received, computed};
}

}  // namespace quarlin
