// SPDX-License-Identifier: GPL-3.0-or-later
// The File and Folder objects and the collections of them.
#pragma once

#include <filesystem>
#include <memory>
#include <span>
#include <string_view>

#include "script/files/file_paths.h"
#include "script/values/dispatch.h"
#include "script/values/services.h"

namespace quarlin::vbs {

// A file by its path: every member asks the system anew, so a file that has gone gives error 53.
class File final : public TableObject<File> {
 public:
  static constexpr EntryKind kind = EntryKind::File;
  File(Services& services, std::filesystem::path path) : services_(services), path_(std::move(path)) {}
  static std::span<const Member<File>> Members();
  std::u16string_view TypeName() const override { return u"File"; }

  Services& Host() const { return services_; }
  const std::filesystem::path& Path() const { return path_; }
  void MovedTo(std::filesystem::path path) { path_ = std::move(path); }

 private:
  Services& services_;
  std::filesystem::path path_;
};

// The same for a folder, with error 76.
class Folder final : public TableObject<Folder> {
 public:
  static constexpr EntryKind kind = EntryKind::Folder;
  Folder(Services& services, std::filesystem::path path) : services_(services), path_(std::move(path)) {}
  static std::span<const Member<Folder>> Members();
  std::u16string_view TypeName() const override { return u"Folder"; }

  Services& Host() const { return services_; }
  const std::filesystem::path& Path() const { return path_; }
  void MovedTo(std::filesystem::path path) { path_ = std::move(path); }
  bool IsRoot() const { return !path_.has_relative_path(); }

 private:
  Services& services_;
  std::filesystem::path path_;
};

// The files in a folder, or the folders in it, as they are when asked.
template <class Entry>
class EntryCollection final : public TableObject<EntryCollection<Entry>> {
 public:
  EntryCollection(Services& services, std::filesystem::path folder)
      : services_(services), folder_(std::move(folder)) {}
  static std::span<const Member<EntryCollection>> Members();
  std::u16string_view TypeName() const override;
  std::unique_ptr<Enumerator> Enumerate() override;

  Services& Host() const { return services_; }
  const std::filesystem::path& Path() const { return folder_; }

 private:
  Services& services_;
  std::filesystem::path folder_;
};

// Makes the folder. Errors 58 when it is there, 76 when the one around it is not.
Value CreateFolder(Services& services, const std::filesystem::path& path);

}  // namespace quarlin::vbs
