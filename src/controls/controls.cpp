// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/controls.h"

#include <algorithm>
#include <limits>

#include "base/numbers.h"

namespace quarlin {

TextBox::TextBox(ControlGroup& group, std::string_view name, std::string_view text, std::optional<int> index)
    : Control(group, ControlKind::TextBox, name, index), text_(text) {}

void TextBox::SetText(std::string_view text) {
  if (text_ == text) return;
  text_ = text;
  integer_.reset();
  marked_ = {};
  Changed();
  Change();
}

void TextBox::Type(std::string_view text) {
  if (text_ == text) {
    Change();
    return;
  }
  text_ = text;  // and the mark is the user's, too
  integer_.reset();
  Changed();
  Change();
}

std::int32_t TextBox::Integer() const {
  if (!integer_) integer_ = IntegerOf(text_);
  return *integer_;
}

void TextBox::SetLocked(bool locked) {
  if (std::exchange(locked_, locked) != locked) Changed();
}

void TextBox::SetMaxLength(int characters) {
  if (std::exchange(maxLength_, characters) != characters) Changed();
}

void TextBox::Select(Marked marked) {
  marked_ = marked;
  selectionWish_ = true;
  Changed();
}

void TextBox::ForgetLooks() {
  Control::ForgetLooks();
  SetLocked(false);
  SetMaxLength(0);
}

ComboBox::ComboBox(ControlGroup& group, std::string_view name, std::vector<std::string> list,
                   std::string_view text, std::optional<int> index)
    : Control(group, ControlKind::ComboBox, name, index), text_(text), list_(std::move(list)) {
  listIndex_ = IndexOf(text_);
}

int ComboBox::IndexOf(std::string_view text) const {
  const auto found = std::find(list_.begin(), list_.end(), text);
  return found == list_.end() ? -1 : static_cast<int>(found - list_.begin());
}

void ComboBox::Select(std::string_view text, int index) {
  if (text_ == text && listIndex_ == index) return;
  text_ = text;
  listIndex_ = index;
  Changed();
  Change();
}

void ComboBox::SetText(std::string_view text) {
  Select(text, IndexOf(text));
}

void ComboBox::SetListIndex(int index) {
  if (index == -1) Select("", -1);
  if (HasItem(index)) Select(list_[static_cast<std::size_t>(index)], index);
}

void ComboBox::ListChanged() {
  listIndex_ = IndexOf(text_);
  ++listRevision_;
  Changed();
}

void ComboBox::SetList(std::vector<std::string> list) {
  list_ = std::move(list);
  itemToolTips_.clear();
  numbers_.Cleared();
  ListChanged();
}

void ComboBox::AddItem(std::string_view item) {
  list_.emplace_back(item);
  numbers_.Inserted(static_cast<int>(list_.size()) - 1);
  ListChanged();
}

void ComboBox::InsertItem(int index, std::string_view item) {
  if (index < 0 || index > static_cast<int>(list_.size())) return;
  list_.emplace(list_.begin() + index, item);
  itemToolTips_.clear();
  numbers_.Inserted(index);
  ListChanged();
}

void ComboBox::SetItem(int index, std::string_view item) {
  if (!HasItem(index)) return;
  list_[static_cast<std::size_t>(index)] = item;
  ListChanged();
}

void ComboBox::RemoveItem(int index) {
  if (!HasItem(index)) return;
  list_.erase(list_.begin() + index);
  itemToolTips_.clear();
  numbers_.Removed(index);
  ListChanged();
}

const std::string& ComboBox::ItemToolTip(int index) const {
  static const std::string none;
  return index >= 0 && index < static_cast<int>(itemToolTips_.size())
             ? itemToolTips_[static_cast<std::size_t>(index)]
             : none;
}

void ComboBox::SetItemToolTip(int index, std::string_view text) {
  if (!HasItem(index)) return;
  itemToolTips_.resize(list_.size());
  itemToolTips_[static_cast<std::size_t>(index)] = text;
  ++listRevision_;
  Changed();
}

CheckBox::CheckBox(ControlGroup& group, std::string_view name, std::string_view caption,
                   std::optional<int> index)
    : Control(group, ControlKind::CheckBox, name, index), caption_(caption) {}

void CheckBox::SetValue(int value) {
  const int known = value == 0 || value == 2 ? value : 1;
  if (value_ == known) return;
  value_ = known;
  Changed();
  Click();
}

void CheckBox::SetCaption(std::string_view caption) {
  if (caption_ == caption) return;
  caption_ = caption;
  Changed();
}

OptionButton::OptionButton(ControlGroup& group, std::string_view name, std::string_view caption, int index)
    : Control(group, ControlKind::OptionButton, name, index), caption_(caption) {}

void OptionButton::SetValue(bool value) {
  if (value_ == value) return;
  value_ = value;
  Changed();
  if (!value) return;
  for (OptionButton* other : others_) {
    if (other != this) other->SetValue(false);
  }
  Click();
}

void OptionButton::SetCaption(std::string_view caption) {
  if (caption_ == caption) return;
  caption_ = caption;
  Changed();
}

CommandButton::CommandButton(ControlGroup& group, std::string_view name, std::string_view caption,
                             std::optional<int> index)
    : Control(group, ControlKind::CommandButton, name, index), caption_(caption) {}

void CommandButton::SetCaption(std::string_view caption) {
  if (caption_ == caption) return;
  caption_ = caption;
  Changed();
}

Label::Label(ControlGroup& group, std::string_view name, std::string_view caption)
    : Control(group, ControlKind::Label, name), caption_(caption) {}

void Label::SetCaption(std::string_view caption) {
  if (caption_ == caption) return;
  caption_ = caption;
  number_.reset();
  Changed();
}

std::int32_t Label::Integer() const {
  return number_ ? *number_ : IntegerOf(caption_);
}

void Label::SetInteger(std::int32_t value) {
  if (number_ == value) return;  // the ordinary case of a length: the same as before
  SetCaption(PaddedDecimal(value, 1));
  number_ = value;
}

void Label::Increment() {
  const std::int32_t value = Integer();
  if (value != std::numeric_limits<std::int32_t>::max()) SetInteger(value + 1);
}

Frame::Frame(ControlGroup& group, std::string_view name, std::string_view caption)
    : Control(group, ControlKind::Frame, name), caption_(caption) {}

void Frame::SetCaption(std::string_view caption) {
  if (caption_ == caption) return;
  caption_ = caption;
  Changed();
}

Shape::Shape(ControlGroup& group, std::string_view name, Color fill, std::optional<int> index)
    : Control(group, ControlKind::Shape, name, index), fillColor_(fill) {}

void Shape::SetFillColor(Color color) {
  if (std::exchange(fillColor_, color) != color) Changed();
}

ScrollBar::ScrollBar(ControlGroup& group, std::string_view name, int min, int max, int value,
                     std::optional<int> index)
    : Control(group, ControlKind::ScrollBar, name, index), min_(min), max_(max), value_(value) {}

void ScrollBar::SetValue(int value) {
  const int held = std::clamp(value, min_, max_);
  if (value_ == held) return;
  value_ = held;
  Changed();
  Change();
}

void ScrollBar::SetRange(int min, int max) {
  if (min_ == min && max_ == max) return;
  min_ = min;
  max_ = std::max(min, max);
  Changed();
  SetValue(value_);
}

ListBox::ListBox(ControlGroup& group, std::string_view name) : Control(group, ControlKind::ListBox, name) {}

void ListBox::ListChanged() {
  ++listRevision_;
  Changed();
}

void ListBox::SetList(std::vector<ListEntry> list) {
  if (list == list_) return;
  list_ = std::move(list);
  numbers_.Cleared();
  listIndex_ = -1;
  ListChanged();
}

void ListBox::AddItem(std::string_view text, std::string_view toolTip) {
  list_.push_back({std::string(text), std::string(toolTip)});
  numbers_.Inserted(ListCount() - 1);
  ListChanged();
}

void ListBox::InsertItem(int index, std::string_view text) {
  if (index < 0 || index > ListCount()) return;
  list_.insert(list_.begin() + index, {std::string(text), ""});
  numbers_.Inserted(index);
  if (listIndex_ >= index) ++listIndex_;
  ListChanged();
}

void ListBox::SetItem(int index, std::string_view text) {
  if (!HasItem(index)) return;
  list_[static_cast<std::size_t>(index)].text = text;
  ListChanged();
}

void ListBox::RemoveItem(int index) {
  if (!HasItem(index)) return;
  list_.erase(list_.begin() + index);
  numbers_.Removed(index);
  if (listIndex_ == index) {
    listIndex_ = -1;
  } else if (listIndex_ > index) {
    --listIndex_;
  }
  ListChanged();
}

void ListBox::Clear() {
  list_.clear();
  numbers_.Cleared();
  listIndex_ = -1;
  ListChanged();
}

void ListBox::SetListIndex(int index) {
  const int known = HasItem(index) ? index : -1;
  if (std::exchange(listIndex_, known) == known) return;
  Changed();
  Click();
}

std::string_view ListBox::Text() const {
  return HasItem(listIndex_) ? std::string_view(list_[static_cast<std::size_t>(listIndex_)].text) : "";
}

}  // namespace quarlin
