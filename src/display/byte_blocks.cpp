// SPDX-License-Identifier: GPL-3.0-or-later
#include "display/byte_blocks.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace quarlin {

void ByteBlocks::OpenBlock() {
  Block& block = BlockAt(end_);
  block = spare_ ? std::move(spare_) : std::make_unique_for_overwrite<char[]>(blockSize);
  room_ = std::span(block.get(), blockSize).subspan(end_ % blockSize);
}

void ByteBlocks::Append(std::string_view bytes) {
  while (!bytes.empty()) {
    if (room_.empty()) OpenBlock();
    const std::size_t count = std::min(room_.size(), bytes.size());
    std::memcpy(room_.data(), bytes.data(), count);
    room_ = room_.subspan(count);
    end_ += count;
    bytes.remove_prefix(count);
  }
}

void ByteBlocks::DropBefore(std::uint64_t position) {
  const std::uint64_t kept = position / blockSize;
  for (std::uint64_t block = begin_ / blockSize; block < kept; ++block) {
    spare_ = std::move(BlockAt(block * blockSize));
  }
  begin_ = position;
}

void ByteBlocks::Clear() {
  for (Block& block : slots_) block.reset();
  spare_.reset();
  room_ = {};
  begin_ = end_;
}

void ByteBlocks::CopyTo(std::uint64_t begin, std::uint64_t end, std::string& text) const {
  text.reserve(text.size() + static_cast<std::size_t>(end - begin));
  while (begin < end) {
    const Block& block = slots_[(begin / blockSize) % slots_.size()];
    const std::size_t offset = begin % blockSize;
    const std::size_t count =
        static_cast<std::size_t>(std::min<std::uint64_t>(blockSize - offset, end - begin));
    text.append(block.get() + offset, count);
    begin += count;
  }
}

}  // namespace quarlin
