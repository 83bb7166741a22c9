// SPDX-License-Identifier: GPL-3.0-or-later
// A stream of bytes of which the last part is kept, in blocks that are used again: text that comes in at
// the end while as much leaves at the beginning costs one copy and no allocation.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quarlin {

class ByteBlocks {
 public:
  static constexpr std::size_t blockSize = std::size_t{64} << 10;

  // Takes memory as bytes come, two blocks more than `limit` at the most.
  explicit ByteBlocks(std::size_t limit) : slots_(limit / blockSize + 2) {}

  // Positions count all bytes that were ever added; those from Begin() to End() - 1 are kept.
  std::uint64_t Begin() const { return begin_; }
  std::uint64_t End() const { return end_; }
  std::size_t Size() const { return static_cast<std::size_t>(end_ - begin_); }

  // Requires that the limit is not passed.
  void Append(std::string_view bytes);

  // Lets go of what lies before the position, which is at most End().
  void DropBefore(std::uint64_t position);

  // Lets go of everything, and of the memory.
  void Clear();

  // Adds the bytes from `begin` to before `end`, which are kept, to the text.
  void CopyTo(std::uint64_t begin, std::uint64_t end, std::string& text) const;

 private:
  using Block = std::unique_ptr<char[]>;

  Block& BlockAt(std::uint64_t position) { return slots_[(position / blockSize) % slots_.size()]; }
  void OpenBlock();

  std::vector<Block> slots_;  // a ring: the blocks from begin_ to end_
  Block spare_;               // the block that was let go last
  std::span<char> room_;      // what is still free in the block at end_
  std::uint64_t begin_ = 0;
  std::uint64_t end_ = 0;
};

}  // namespace quarlin
