#include "macro/checksum_macros.h"

#include <array>
#include <optional>
#include <string_view>

#include "base/numbers.h"
#include "macro/checksum.h"
#include "macro/expander.h"

namespace quarlin {
namespace {

struct ChecksumMacro {
  std::string_view macro;
  ChecksumStyle style;
};

constexpr std::array<ChecksumMacro, 7> inserting{{
    {"[CHECKSUMMOT]", ChecksumStyle::Motorola},
    {"[CHECKSUMARC]", ChecksumStyle::Archive},
    {"[CHECKSUMMOD8]", ChecksumStyle::Modulo256},
    {"[CHECKSUMLRC]", ChecksumStyle::Lrc},
    {"[CHECKSUMSYS]", ChecksumStyle::Sysway},
    {"[CHECKSUMMOTR]", ChecksumStyle::MotorolaRecord},
    {"[CHECKSUMARCR]", ChecksumStyle::ArchiveRecord},
}};

constexpr std::array<ChecksumMacro, 7> keeping{{
    {"[CCHECKSUMMOT]", ChecksumStyle::Motorola},
    {"[CCHECKSUMARC]", ChecksumStyle::Archive},
    {"[CCHECKSUMMOD8]", ChecksumStyle::Modulo256},
    {"[CCHECKSUMSYS]", ChecksumStyle::Sysway},
    {"[CCHECKSUMLRC]", ChecksumStyle::Lrc},
    {"[CCHECKSUMMOTR]", ChecksumStyle::MotorolaRecord},
    {"[CCHECKSUMARCR]", ChecksumStyle::ArchiveRecord},
}};

// Nothing where the kept checksum cannot be written so.
struct RecallingMacro {
  std::string_view macro;
  std::optional<std::string> (*write)(const std::string& checksum);
};

std::optional<std::string> AsItIs(const std::string& checksum) {
  return checksum;
}

std::optional<std::string> DecimalCode(const std::string& checksum) {
  if (checksum.empty()) return std::nullopt;
  return PaddedDecimal(static_cast<std::uint8_t>(checksum.front()), 3);
}

// A lone digit gets a zero in front of it, a lone letter does not: "05" but "A".
std::optional<std::string> HexCode(const std::string& checksum) {
  if (checksum.empty()) return std::nullopt;
  const auto code = static_cast<std::uint8_t>(checksum.front());
  return Hexadecimal(code, code < 10 ? 2 : 1);
}

constexpr std::array<RecallingMacro, 3> recalling{{
    {"[CHECKSUMCALC]", AsItIs},
    {"[CHECKSUMCALCA]", DecimalCode},
    {"[CHECKSUMCALCH]", HexCode},
}};

}  // namespace

void ExpandChecksums(std::string& text, std::string& lastChecksum) {
  for (const auto& [macro, style] : inserting) {
    const std::size_t at = text.find(macro);
    if (at == std::string::npos) continue;
    text.replace(at, macro.size(), ComputeChecksum(std::string_view(text).substr(0, at), style));
  }
  for (const auto& [macro, style] : keeping) {
    const std::size_t at = text.find(macro);
    if (at == std::string::npos) continue;
    lastChecksum = ComputeChecksum(std::string_view(text).substr(0, at), style);
    text.erase(at, macro.size());
  }
  for (const auto& [macro, write] : recalling) {
    if (text.find(macro) == std::string::npos) continue;
    if (const auto written = write(lastChecksum)) ReplaceFirst(text, macro, *written);
  }
}

}  // namespace quarlin
