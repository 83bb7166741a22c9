// SPDX-License-Identifier: GPL-3.0-or-later
// Copying, moving and deleting, as the FileSystemObject and its files and folders do it.
#pragma once

#include <filesystem>
#include <string_view>

#include "script/files/file_paths.h"
#include "script/values/services.h"

namespace quarlin::vbs {

// What exists is not overwritten unless told so; what is protected is not deleted unless forced.
struct CopyOptions {
  bool overwrite = true;
};
struct DeleteOptions {
  bool force = false;
};

// The sources may hold wildcards in their last part. A destination that ends with a separator, or that
// several files or folders go to, is a folder that must be there. Errors 53 or 76 when nothing is meant,
// 58 when the destination is there, 70 when it must not be touched.
void CopyAll(Services& services, EntryKind kind, std::u16string_view from, std::u16string_view to,
             CopyOptions options);
void MoveAll(Services& services, EntryKind kind, std::u16string_view from, std::u16string_view to);
void DeleteAll(Services& services, EntryKind kind, std::u16string_view name, DeleteOptions options);

// Of one file or folder that was found already. Move tells where it is now.
void CopyOne(Services& services, EntryKind kind, const std::filesystem::path& from, std::u16string_view to,
             CopyOptions options);
std::filesystem::path MoveOne(Services& services, EntryKind kind, const std::filesystem::path& from,
                              std::u16string_view to);
void DeleteOne(EntryKind kind, const std::filesystem::path& path, DeleteOptions options);

// Another name in the same folder; 58 when that is taken. Returns where it is now.
std::filesystem::path Rename(EntryKind kind, const std::filesystem::path& path, std::u16string_view name);

// The lengths of all files in the folder and in those below it, in bytes.
std::uintmax_t SizeOfFolder(Services& services, const std::filesystem::path& folder);

}  // namespace quarlin::vbs
