// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/workbook/sheet_style.h"

#include <utility>

namespace quarlin::vbs::sheets {
namespace {

constexpr std::size_t mostStyles = 64'000;
constexpr std::size_t bytesOfStyle = sizeof(CellStyle) + 128;  // with its place in the map and its texts

}  // namespace

StyleTable::StyleTable() {
  IdOf(CellStyle{});
}

StyleId StyleTable::IdOf(const CellStyle& style) {
  if (const auto found = ids_.find(style); found != ids_.end()) return found->second;
  if (styles_.size() == mostStyles) throw SheetError(u"A workbook has at most 64000 different cell formats");
  share_.Resize((styles_.size() + 1) * bytesOfStyle);
  const auto id = static_cast<StyleId>(styles_.size());
  styles_.push_back(&ids_.emplace(style, id).first->first);
  return id;
}

ScriptError SheetError(std::u16string description) {
  constexpr std::int32_t applicationError = 1004;
  ScriptError error(applicationError);
  error.description = std::move(description);
  error.source = u"Excel.Application";
  return error;
}

}  // namespace quarlin::vbs::sheets
