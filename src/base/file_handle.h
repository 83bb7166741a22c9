// SPDX-License-Identifier: GPL-3.0-or-later
// An open file of the system, closed when it goes out of scope.
#pragma once

#include <unistd.h>

#include <utility>

namespace quarlin {

class FileHandle {
 public:
  explicit FileHandle(int number = -1) : number_(number) {}  // negative: none
  ~FileHandle() { Close(); }
  FileHandle(FileHandle&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  FileHandle& operator=(FileHandle&& other) noexcept {
    Close();
    number_ = std::exchange(other.number_, -1);
    return *this;
  }

  int Get() const { return number_; }

 private:
  void Close() const {
    if (number_ >= 0) close(number_);
  }

  int number_;
};

}  // namespace quarlin
