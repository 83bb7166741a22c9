#include "receive/answer_checksum.h"

#include <array>

#include "macro/checksum.h"

namespace quarlin {
namespace {

struct ListedStyle {
  ChecksumStyle style;
  std::size_t characters;  // compared
};

constexpr std::array<ListedStyle, 5> listedStyles{{
    {ChecksumStyle::MotorolaRecord, 2},
    {ChecksumStyle::Sysway, 2},
    {ChecksumStyle::Modulo256, 2},
    {ChecksumStyle::ArchiveRecord, 2},
    {ChecksumStyle::Lrc, 1},
}};

constexpr std::size_t shortestVerified = 5;

}  // namespace

std::optional<ChecksumMismatch> FindChecksumMismatch(std::string_view text, std::string_view stripped,
                                                     int listIndex) {
  if (text.size() < shortestVerified) return std::nullopt;
  if (listIndex < 1 || listIndex > static_cast<int>(listedStyles.size())) return std::nullopt;
  const ListedStyle listed = listedStyles[static_cast<std::size_t>(listIndex - 1)];
  std::string body(stripped);
  if (listed.style != ChecksumStyle::Lrc) {
    body = text;
    std::erase_if(body, [](char c) { return c == '\r' || c == '\n'; });
  }
  const std::size_t bodyLength = body.size() > listed.characters ? body.size() - listed.characters : 0;
  const std::string received = body.substr(bodyLength);
  const std::string computed = ComputeChecksum(std::string_view(body).substr(0, bodyLength), listed.style);
  if (received == computed) return std::nullopt;
  return ChecksumMismatch{received, computed};
}

}  // namespace quarlin
