// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <fstream>
#include <sstream>

#include "base/file_handle.h"
#include "base/file_replacement.h"
#include "base/system_call.h"

namespace quarlin {
namespace fs = std::filesystem;
namespace {

class FileFaults : public std::error_category {
 public:
  const char* name() const noexcept override { return "files"; }
  std::string message(int) const override { return "it is no regular file"; }
};

std::error_code RefusalOfLog(const struct stat& status) {
  const bool nowhere = S_ISCHR(status.st_mode) && status.st_rdev == makedev(1, 3);  // /dev/null
  return nowhere ? std::error_code() : RefusalOf(status);
}

}  // namespace

std::error_code NoRegularFile() {
  static const FileFaults category;
  return {1, category};
}

std::optional<std::string> ReadWholeFile(const fs::path& file) {
  std::error_code ignored;
  if (!fs::is_regular_file(file, ignored)) return std::nullopt;
  std::ifstream stream(file, std::ios::binary);
  if (!stream) return std::nullopt;
  std::ostringstream content;
  content << stream.rdbuf();
  return std::move(content).str();
}

FileContent ReadFileUpTo(const fs::path& file, std::size_t most) {
  struct stat status {};
  // Looked at first: opening some devices moves the wires of what is attached to them.
  if (stat(file.c_str(), &status) != 0) return {{}, LastError()};
  if (const std::error_code refusal = RefusalOf(status)) return {{}, refusal};
  const FileHandle handle(open(file.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  if (handle.Get() < 0 || fstat(handle.Get(), &status) != 0) return {{}, LastError()};
  if (const std::error_code refusal = RefusalOf(status)) return {{}, refusal};
  FileContent content;
  constexpr std::size_t piece = std::size_t{64} << 10;
  for (std::size_t size = 0;;) {
    content.bytes.resize(size + piece);
    const ssize_t taken =
        Uninterrupted([&] { return read(handle.Get(), content.bytes.data() + size, piece); });
    if (taken < 0) return {{}, LastError()};
    size += static_cast<std::size_t>(taken);
    if (size > most) return {{}, std::make_error_code(std::errc::file_too_large)};
    content.bytes.resize(size);
    if (taken == 0) return content;
  }
}

std::error_code WriteWholeFile(const fs::path& file, std::string_view content) {
  return WriteWholeFile(file, [content](const TakePiece& take) { take(content); });
}

std::error_code WriteWholeFile(const fs::path& file, const FillFile& fill) {
  return FileReplacement(file).Write(fill);
}

std::error_code OverwriteFile(const fs::path& file, std::string_view content) {
  const FileReplacement replacement(file);
  std::string whole(content);
  if (const std::error_code error = replacement.ReadBehind(content.size(), whole)) return error;
  return replacement.Write([&](const TakePiece& take) { take(whole); });
}

std::error_code WriteNewFile(const fs::path& file, std::string_view content) {
  const FileHandle made(open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
  if (made.Get() < 0) return LastError();
  const std::error_code error = WriteAll(made.Get(), content);
  if (error) unlink(file.c_str());
  return error;
}

std::error_code AppendToFile(const fs::path& file, std::string_view content, std::size_t& written) {
  written = 0;
  struct stat status {};
  // Looked at first: opening some devices moves the wires of what is attached to them.
  if (stat(file.c_str(), &status) == 0) {
    if (const std::error_code refusal = RefusalOfLog(status)) return refusal;
  }
  constexpr int flags = O_WRONLY | O_CREAT | O_APPEND | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
  const FileHandle log(open(file.c_str(), flags, 0666));
  if (log.Get() < 0 || fstat(log.Get(), &status) != 0) return LastError();
  if (const std::error_code refusal = RefusalOfLog(status)) return refusal;
  const std::size_t wanted = content.size();
  const std::error_code error = WriteAll(log.Get(), content);
  written = wanted - content.size();
  return error;
}

}  // namespace quarlin
