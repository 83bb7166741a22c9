// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/file_replacement.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include "base/files.h"
#include "base/system_call.h"

namespace quarlin {
namespace fs = std::filesystem;
namespace {

constexpr int mostLinks = 40;  // as the system itself follows
constexpr int mostNames = 100;

// Also where the last link leads to nothing yet. A ring of links stays one, and opening it fails.
fs::path BehindLinks(fs::path file) {
  for (int i = 0; i < mostLinks; ++i) {
    std::error_code noLink;
    const fs::path next = fs::read_symlink(file, noLink);
    if (noLink) break;
    file = file.parent_path() / next;
  }
  return file;
}

fs::path FolderOf(const fs::path& file) {
  return file.has_parent_path() ? file.parent_path() : fs::path(".");
}

// True for what forbids us to put another file there, though the file itself may be open to us.
bool ForbidsReplacing(std::error_code error) {
  return error == std::errc::permission_denied || error == std::errc::operation_not_permitted ||
         error == std::errc::device_or_resource_busy || error == std::errc::cross_device_link;
}

std::error_code ErrorUnless(bool worked) {
  return worked ? std::error_code() : LastError();
}

std::error_code WritePieces(int descriptor, const FillFile& fill) {
  std::error_code error;
  fill([&](std::string_view piece) {
    error = WriteAll(descriptor, piece);
    return !error;
  });
  return error;
}

// A file beside the one that it is to replace, removed again unless it took the other's place.
class Newcomer {
 public:
  explicit Newcomer(const fs::path& folder) : folder_(folder) {}
  Newcomer(const Newcomer&) = delete;
  Newcomer& operator=(const Newcomer&) = delete;
  ~Newcomer() {
    if (handle_.Get() >= 0) unlink(name_.c_str());
  }

  std::error_code Make() {
    for (int i = 0; i < mostNames; ++i) {  // one that a crash left behind may have the name
      name_ = folder_ / fmt::format(".quarlin-{}-{}.new", getpid(), i);
      handle_ = FileHandle(open(name_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
      if (handle_.Get() >= 0 || errno != EEXIST) break;
    }
    return ErrorUnless(handle_.Get() >= 0);
  }

  // The owner first, since a change of owner takes rights away.
  std::error_code BelongLike(const struct stat& other) const {
    struct stat own {};
    if (fstat(handle_.Get(), &own) != 0) return LastError();
    const bool same = own.st_uid == other.st_uid && own.st_gid == other.st_gid;
    if (!same && fchown(handle_.Get(), other.st_uid, other.st_gid) != 0) return LastError();
    return ErrorUnless(fchmod(handle_.Get(), other.st_mode & ALLPERMS) == 0);
  }

  std::error_code Fill(const FillFile& fill) const {
    if (const std::error_code error = WritePieces(handle_.Get(), fill)) return error;
    return ErrorUnless(fsync(handle_.Get()) == 0);
  }

  // Once renamed there is no way back, so a folder that cannot be synchronised is no failure.
  std::error_code TakePlaceOf(const fs::path& file) {
    if (rename(name_.c_str(), file.c_str()) != 0) return LastError();
    handle_ = FileHandle();
    const FileHandle folder(open(folder_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder.Get() >= 0) fsync(folder.Get());
    return {};
  }

 private:
  fs::path folder_;
  fs::path name_;
  FileHandle handle_;
};

}  // namespace

std::error_code RefusalOf(const struct stat& status) {
  if (S_ISDIR(status.st_mode)) return SystemError(EISDIR);
  return S_ISREG(status.st_mode) ? std::error_code() : NoRegularFile();
}

std::error_code WriteAll(int descriptor, std::string_view& content) {
  while (!content.empty()) {
    const ssize_t wrote = Uninterrupted([&] { return write(descriptor, content.data(), content.size()); });
    if (wrote < 0) return LastError();
    content.remove_prefix(static_cast<std::size_t>(wrote));
  }
  return {};
}

FileReplacement::FileReplacement(const fs::path& file) : file_(BehindLinks(file)) {
  // Looked at before it is opened: opening a pipe would wait, and opening a device may do anything.
  if (stat(file_.c_str(), &status_) != 0) {
    refusal_ = errno == ENOENT ? std::error_code() : LastError();
    return;
  }
  refusal_ = RefusalOf(status_);
  if (refusal_) return;
  old_ = FileHandle(open(file_.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC));
  if (!Exists()) refusal_ = LastError();
}

std::error_code FileReplacement::ReadBehind(std::size_t position, std::string& content) const {
  if (!Exists()) return refusal_;
  while (true) {
    char block[4096];
    const ssize_t count =
        Uninterrupted([&] { return pread(old_.Get(), block, sizeof block, static_cast<off_t>(position)); });
    if (count <= 0) return ErrorUnless(count == 0);
    content.append(block, static_cast<std::size_t>(count));
    position += static_cast<std::size_t>(count);
  }
}

std::error_code FileReplacement::Write(const FillFile& fill) const {
  if (refusal_) return refusal_;
  const bool hasOtherNames = Exists() && status_.st_nlink > 1;
  if (hasOtherNames) return WriteInPlace(fill);
  const std::error_code error = WriteBeside(fill);
  return Exists() && ForbidsReplacing(error) ? WriteInPlace(fill) : error;
}

std::error_code FileReplacement::WriteBeside(const FillFile& fill) const {
  Newcomer newcomer(FolderOf(file_));
  std::error_code error = newcomer.Make();
  if (!error && Exists()) error = newcomer.BelongLike(status_);
  if (!error) error = newcomer.Fill(fill);
  return error ? error : newcomer.TakePlaceOf(file_);
}

std::error_code FileReplacement::WriteInPlace(const FillFile& fill) const {
  off_t size = 0;
  fill([&](std::string_view piece) {
    size += static_cast<off_t>(piece.size());
    return true;
  });
  if (const int failure = size == 0 ? 0 : posix_fallocate(old_.Get(), 0, size)) {
    static_cast<void>(!ftruncate(old_.Get(), status_.st_size));  // it can only be too long
    return SystemError(failure);
  }
  if (const std::error_code error = WritePieces(old_.Get(), fill)) return error;
  return ErrorUnless(ftruncate(old_.Get(), size) == 0 && fsync(old_.Get()) == 0);
}

}  // namespace quarlin
