// SPDX-License-Identifier: GPL-3.0-or-later
// What system calls return, as values: errno becomes an error code here and nowhere else.
#pragma once

#include <cerrno>
#include <system_error>

namespace quarlin {

// The error of that number; 0 is none.
inline std::error_code SystemError(int number) {
  return {number, std::system_category()};
}

// The error of the system call just made. Asked at once: the next call may change it.
inline std::error_code LastError() {
  return SystemError(errno);
}

// The result of a system call that no signal has cut short.
template <typename Call>
auto Uninterrupted(Call call) {
  auto result = call();
  while (result == -1 && errno == EINTR) result = call();
  return result;
}

}  // namespace quarlin
