// SPDX-License-Identifier: GPL-3.0-or-later
#include "welcome/bundle.h"

#include <unistd.h>

#include <string>

namespace quarlin {
namespace fs = std::filesystem;
namespace {

// The session's own folder, which goes with it, before that of everybody.
fs::path ScratchFolder(const Environment& environment) {
  for (const char* name : {"XDG_RUNTIME_DIR", "TMPDIR"}) {
    fs::path named = environment(name);
    if (named.is_absolute() && access(named.c_str(), W_OK | X_OK) == 0) return named;
  }
  return "/tmp";
}

}  // namespace

Bundle FindBundle(const fs::path& executable, const Environment& environment) {
  return {FindSharedFolder(executable) / "demo", executable.parent_path() / "quarlin-instrument",
          ScratchFolder(environment)};
}

}  // namespace quarlin
