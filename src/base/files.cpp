#include "base/files.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <sstream>

namespace quarlin {
namespace {

std::error_code LastError() {
  return {errno, std::system_category()};
}

// The part of `content` that could not be written stays in it.
std::error_code WriteAll(int descriptor, std::string_view& content) {
  while (!content.empty()) {
    const ssize_t wrote = write(descriptor, content.data(), content.size());
    if (wrote < 0 && errno == EINTR) continue;
    if (wrote < 0) return LastError();
    content.remove_prefix(static_cast<std::size_t>(wrote));
  }
  return {};
}

std::error_code WriteWith(int flags, const std::filesystem::path& file, std::string_view& content) {
  const int descriptor = open(file.c_str(), flags | O_WRONLY | O_CREAT | O_CLOEXEC, 0666);
  if (descriptor < 0) return LastError();
  std::error_code error = WriteAll(descriptor, content);
  if (close(descriptor) != 0 && !error) error = LastError();
  return error;
}

}  // namespace

std::optional<std::string> ReadWholeFile(const std::filesystem::path& file) {
  std::error_code ignored;
  if (!std::filesystem::is_regular_file(file, ignored)) return std::nullopt;
  std::ifstream stream(file, std::ios::binary);
  if (!stream) return std::nullopt;
  std::ostringstream content;
  content << stream.rdbuf();
  return std::move(content).str();
}

std::error_code WriteWholeFile(const std::filesystem::path& file, std::string_view content) {
  return WriteWith(O_TRUNC, file, content);
}

std::error_code OverwriteFile(const std::filesystem::path& file, std::string_view content) {
  return WriteWith(0, file, content);
}

std::error_code AppendToFile(const std::filesystem::path& file, std::string_view content,
                             std::size_t& written) {
  const std::size_t wanted = content.size();
  const std::error_code error = WriteWith(O_APPEND, file, content);
  written = wanted - content.size();
  return error;
}

}  // namespace quarlin
