// SPDX-License-Identifier: GPL-3.0-or-later
// Where bytes come from piece by piece: a file, or a text that was pasted.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>

namespace quarlin {

class ByteSource {
 public:
  virtual ~ByteSource() = default;

  // For messages: "firmware.hex", "the clipboard".
  virtual std::string Name() const = 0;

  // How many bytes there are, as things stand.
  virtual std::uint64_t Size() const = 0;

  // Adds the next bytes to `buffer`, at most so many; none at the end.
  virtual std::error_code ReadMore(std::string& buffer, std::size_t atMost) = 0;
};

struct OpenedSource {
  std::unique_ptr<ByteSource> source;  // empty on failure
  std::error_code error;
};

// A regular file; anything else might keep the program waiting, and is refused.
OpenedSource OpenFileSource(const std::filesystem::path& file);

std::unique_ptr<ByteSource> MakeTextSource(std::string name, std::string text);

}  // namespace quarlin
