// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/files/file_operations.h"

#include <algorithm>
#include <string>

#include "script/values/library_object.h"

namespace quarlin::vbs {
namespace {

namespace fs = std::filesystem;

ErrorNumber NotFound(EntryKind kind) {
  return kind == EntryKind::File ? fileNotFound : pathNotFound;
}

bool IsThere(const fs::path& path) {
  std::error_code ignored;
  return fs::exists(fs::symlink_status(path, ignored));
}

bool IsProtected(const fs::path& path) {
  std::error_code error;
  const fs::file_status status = fs::symlink_status(path, error);
  if (error || fs::is_symlink(status)) return false;
  return (status.permissions() & fs::perms::owner_write) == fs::perms::none;
}

// What `inner` names is `outer` or lies in it.
bool LiesIn(const fs::path& inner, const fs::path& outer) {
  std::error_code ignored;
  const fs::path whole = fs::weakly_canonical(inner, ignored);
  const fs::path around = fs::weakly_canonical(outer, ignored);
  return std::mismatch(around.begin(), around.end(), whole.begin(), whole.end()).first == around.end();
}

// Where a file or folder goes that is to be copied or moved `to`.
fs::path Target(Services& services, const fs::path& from, std::u16string_view to, bool intoFolder) {
  fs::path target = LocatedPath(services, to);
  if (!intoFolder && !EndsWithSeparator(to)) {
    if (!Exists(target.parent_path(), EntryKind::Folder)) throw ScriptError(pathNotFound);
    return target;
  }
  if (!Exists(target, EntryKind::Folder)) throw ScriptError(pathNotFound);
  return LocatedIn(target, from.filename());
}

void CopyFile(const fs::path& from, const fs::path& to, CopyOptions options) {
  std::error_code error;
  if (!fs::is_regular_file(from, error)) throw ScriptError(IsThere(from) ? permissionDenied : fileNotFound);
  if (IsThere(to)) {
    if (!options.overwrite) throw ScriptError(fileExists);
    if (Exists(to, EntryKind::Folder) || IsProtected(to) || fs::equivalent(from, to, error)) {
      throw ScriptError(permissionDenied);
    }
  }
  fs::copy_file(from, to, fs::copy_options::overwrite_existing, error);
  Check(error, pathNotFound);
}

void CopyFolder(Services& services, const fs::path& from, const fs::path& to, CopyOptions options) {
  if (Exists(to, EntryKind::File)) throw ScriptError(fileExists);
  if (LiesIn(to, from)) throw ScriptError(permissionDenied);
  std::error_code error;
  fs::create_directory(to, error);
  Check(error, pathNotFound);
  for (fs::directory_iterator entry(from, error), end; !error && entry != end; entry.increment(error)) {
    AskToGoOn(services);
    const fs::path target = LocatedIn(to, entry->path().filename());
    if (entry->is_symlink() && !IsThere(target)) {
      fs::copy_symlink(entry->path(), target, error);
      Check(error, pathNotFound);
    } else if (Exists(entry->path(), EntryKind::Folder)) {
      CopyFolder(services, entry->path(), target, options);
    } else {
      CopyFile(entry->path(), target, options);
    }
  }
  Check(error, pathNotFound);
}

void Copy(Services& services, EntryKind kind, const fs::path& from, const fs::path& to, CopyOptions options) {
  if (kind == EntryKind::File) return CopyFile(from, to, options);
  CopyFolder(services, from, to, options);
}

// To another disk a file or folder can only be copied.
void Move(Services& services, EntryKind kind, const fs::path& from, const fs::path& to) {
  if (IsThere(to)) throw ScriptError(fileExists);
  std::error_code error;
  fs::rename(from, to, error);
  if (error != std::errc::cross_device_link) return Check(error, NotFound(kind));
  Copy(services, kind, from, to, {.overwrite = false});
  fs::remove_all(from, error);
  Check(error, NotFound(kind));
}

bool HoldsProtected(const fs::path& folder) {
  std::error_code error;
  for (fs::recursive_directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    if (IsProtected(entry->path())) return true;
  }
  Check(error, pathNotFound);
  return false;
}

std::vector<fs::path> Sources(Services& services, EntryKind kind, std::u16string_view name) {
  std::vector<fs::path> sources = Matching(services, name, kind);
  if (sources.empty()) throw ScriptError(NotFound(kind));
  return sources;
}

}  // namespace

void CopyAll(Services& services, EntryKind kind, std::u16string_view from, std::u16string_view to,
             CopyOptions options) {
  for (const fs::path& source : Sources(services, kind, from)) {
    AskToGoOn(services);
    Copy(services, kind, source, Target(services, source, to, HasWildcards(from)), options);
  }
}

void MoveAll(Services& services, EntryKind kind, std::u16string_view from, std::u16string_view to) {
  for (const fs::path& source : Sources(services, kind, from)) {
    AskToGoOn(services);
    Move(services, kind, source, Target(services, source, to, HasWildcards(from)));
  }
}

void DeleteAll(Services& services, EntryKind kind, std::u16string_view name, DeleteOptions options) {
  for (const fs::path& path : Sources(services, kind, name)) {
    AskToGoOn(services);
    DeleteOne(kind, path, options);
  }
}

void CopyOne(Services& services, EntryKind kind, const fs::path& from, std::u16string_view to,
             CopyOptions options) {
  Copy(services, kind, from, Target(services, from, to, false), options);
}

std::filesystem::path MoveOne(Services& services, EntryKind kind, const fs::path& from,
                              std::u16string_view to) {
  fs::path target = Target(services, from, to, false);
  Move(services, kind, from, target);
  return target;
}

void DeleteOne(EntryKind kind, const fs::path& path, DeleteOptions options) {
  if (!path.has_relative_path()) throw ScriptError(permissionDenied);
  if (!options.force && IsProtected(path)) throw ScriptError(permissionDenied);
  std::error_code error;
  if (kind == EntryKind::File) {
    if (!fs::remove(path, error) && !error) throw ScriptError(fileNotFound);
  } else {
    if (!options.force && !fs::is_symlink(path, error) && HoldsProtected(path)) {
      throw ScriptError(permissionDenied);
    }
    fs::remove_all(path, error);
  }
  Check(error, NotFound(kind));
}

std::filesystem::path Rename(EntryKind kind, const fs::path& path, std::u16string_view name) {
  const NameParts parts = PartsOf(name);
  if (name.empty() || parts.name != name || name.find(u'\0') != name.npos || name == u"." || name == u"..") {
    throw ScriptError(invalidCall);
  }
  fs::path target = path.parent_path() / Utf8Of(name);
  if (target == path) return target;
  if (IsThere(target)) throw ScriptError(fileExists);
  std::error_code error;
  fs::rename(path, target, error);
  Check(error, NotFound(kind));
  return target;
}

std::uintmax_t SizeOfFolder(Services& services, const fs::path& folder) {
  std::uintmax_t size = 0;
  std::error_code error;
  for (fs::recursive_directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    AskToGoOn(services);
    std::error_code gone;  // a file that went away meanwhile has no size
    if (entry->is_regular_file(gone) && !entry->is_symlink(gone)) {
      const std::uintmax_t length = entry->file_size(gone);
      if (!gone) size += length;
    }
  }
  Check(error, pathNotFound);
  return size;
}

}  // namespace quarlin::vbs
