// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/licence.h"

#include <fmt/format.h>

#include "base/version.h"

namespace quarlin {

std::string_view VersionNumber() {
  return version::text;
}

std::string VersionText(std::string_view program) {
  return fmt::format(
      "{} {}\n{}\n"
      "Free software under the GNU General Public License, version 3 or later: {}\n"
      "There is no warranty, as far as the law allows that.\n",
      program, version::text, copyrightText, licenceAddress);
}

}  // namespace quarlin
