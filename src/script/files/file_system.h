// SPDX-License-Identifier: GPL-3.0-or-later
// Scripting.FileSystemObject: the files of the system by name.
#pragma once

#include <span>
#include <string_view>

#include "script/values/dispatch.h"
#include "script/values/services.h"

namespace quarlin::vbs {

class FileSystem final : public TableObject<FileSystem> {
 public:
  explicit FileSystem(Services& services) : services_(services) {}
  static std::span<const Member<FileSystem>> Members();
  std::u16string_view TypeName() const override { return u"FileSystemObject"; }

  Services& Host() const { return services_; }

 private:
  Services& services_;
};

}  // namespace quarlin::vbs
