// SPDX-License-Identifier: GPL-3.0-or-later
// The kinds of control. See control.h for what they have in common.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/hook.h"
#include "controls/control.h"
#include "controls/item_numbers.h"

namespace quarlin {

class TextBox : public Control {
 public:
  TextBox(ControlGroup& group, std::string_view name, std::string_view text = "",
          std::optional<int> index = std::nullopt);

  Hook<void()> Change;

  const std::string& Text() const { return text_; }
  void SetText(std::string_view text);

  // The user typed it: Change runs also where it is the text that stood there.
  void Type(std::string_view text);

  // The text as an integer, 0 when it is none; kept until the text changes.
  std::int32_t Integer() const;

  // Bounds of what the user may do: only read it; type so many characters, 0 for any number.
  bool Locked() const { return locked_; }
  void SetLocked(bool locked);
  int MaxLength() const { return maxLength_; }
  void SetMaxLength(int characters);

  // What of the text is marked. A mark that the user sets is told by the view; another one is a wish to it,
  // which it takes once.
  Marked Selection() const { return Within(marked_, text_.size()); }
  void Select(Marked marked);
  void NoteSelection(Marked marked) { marked_ = marked; }
  bool TakeSelectionWish() { return std::exchange(selectionWish_, false); }

  void ForgetLooks() override;

 private:
  std::string text_;
  bool locked_ = false;
  int maxLength_ = 0;
  Marked marked_;
  bool selectionWish_ = false;
  mutable std::optional<std::int32_t> integer_;
};

// A text with a list of choices. Whether another text can be typed is the view's business.
class ComboBox : public Control {
 public:
  ComboBox(ControlGroup& group, std::string_view name, std::vector<std::string> list = {},
           std::string_view text = "", std::optional<int> index = std::nullopt);

  Hook<void()> Change;

  const std::string& Text() const { return text_; }
  void SetText(std::string_view text);

  // The chosen entry, or -1 when the text stands in no entry.
  int ListIndex() const { return listIndex_; }
  void SetListIndex(int index);  // -1 also empties the text

  const std::vector<std::string>& List() const { return list_; }
  std::uint64_t ListRevision() const { return listRevision_; }  // differs whenever the list does
  void SetList(std::vector<std::string> list);
  void AddItem(std::string_view item);
  void InsertItem(int index, std::string_view item);  // in front of the entry of that index

  // Nothing happens where there is no such entry. The text stays as it is.
  void SetItem(int index, std::string_view item);
  void RemoveItem(int index);
  void Clear() { SetList({}); }

  // What scripts note beside the entries.
  ItemNumbers& Numbers() { return numbers_; }

  // What the view tells about one entry when the user points at it.
  const std::string& ItemToolTip(int index) const;
  void SetItemToolTip(int index, std::string_view text);

 private:
  int IndexOf(std::string_view text) const;
  bool HasItem(int index) const { return index >= 0 && index < static_cast<int>(list_.size()); }
  void Select(std::string_view text, int index);
  void ListChanged();

  std::string text_;
  int listIndex_ = -1;
  std::vector<std::string> list_;
  std::vector<std::string> itemToolTips_;
  ItemNumbers numbers_;
  std::uint64_t listRevision_ = 0;
};

class CheckBox : public Control {
 public:
  CheckBox(ControlGroup& group, std::string_view name, std::string_view caption,
           std::optional<int> index = std::nullopt);

  Hook<void()> Click;

  // 0 clear, 1 checked, 2 grayed; any other number counts as 1.
  int Value() const { return value_; }
  void SetValue(int value);
  bool Checked() const { return value_ != 0; }
  void SetChecked(bool checked) { SetValue(checked ? 1 : 0); }

  const std::string& Caption() const { return caption_; }
  void SetCaption(std::string_view caption);

 private:
  std::string caption_;
  int value_ = 0;
};

// One of several of which at most one is selected. Its handler runs when it becomes selected.
class OptionButton : public Control {
 public:
  OptionButton(ControlGroup& group, std::string_view name, std::string_view caption, int index);

  Hook<void()> Click;

  bool Value() const { return value_; }
  void SetValue(bool value);
  const std::string& Caption() const { return caption_; }
  void SetCaption(std::string_view caption);

  void ExcludeWith(std::vector<OptionButton*> others) { others_ = std::move(others); }

 private:
  std::string caption_;
  bool value_ = false;
  std::vector<OptionButton*> others_;
};

class CommandButton : public Control {
 public:
  CommandButton(ControlGroup& group, std::string_view name, std::string_view caption,
                std::optional<int> index = std::nullopt);

  Hook<void()> OnClick;

  void Click() const { OnClick(); }

  const std::string& Caption() const { return caption_; }
  void SetCaption(std::string_view caption);

 private:
  std::string caption_;
};

class Label : public Control {
 public:
  Label(ControlGroup& group, std::string_view name, std::string_view caption = "");

  const std::string& Caption() const { return caption_; }
  void SetCaption(std::string_view caption);
  std::int32_t Integer() const;

  // Adds 1 to the number that the caption shows; at the end of the 32-bit range it stays.
  void Increment();
  void SetInteger(std::int32_t value);

 private:
  std::string caption_;
  std::optional<std::int32_t> number_;  // what the caption is the plain form of, where that is known
};

// A frame disabled takes the user's access to everything in it; the controls keep their own state.
class Frame : public Control {
 public:
  Frame(ControlGroup& group, std::string_view name, std::string_view caption);
  const std::string& Caption() const { return caption_; }
  void SetCaption(std::string_view caption);

 private:
  std::string caption_;
};

// A lamp.
class Shape : public Control {
 public:
  Shape(ControlGroup& group, std::string_view name, Color fill, std::optional<int> index = std::nullopt);
  Color FillColor() const { return fillColor_; }
  void SetFillColor(Color color);

 private:
  Color fillColor_;
};

class ScrollBar : public Control {
 public:
  ScrollBar(ControlGroup& group, std::string_view name, int min, int max, int value,
            std::optional<int> index = std::nullopt);

  Hook<void()> Change;

  int Min() const { return min_; }
  int Max() const { return max_; }
  int Value() const { return value_; }
  void SetValue(int value);  // held within Min and Max
  void SetRange(int min, int max);

 private:
  int min_;
  int max_;
  int value_;
};

struct ListEntry {
  std::string text;
  std::string toolTip;
  bool operator==(const ListEntry&) const = default;
};

class ListBox : public Control {
 public:
  ListBox(ControlGroup& group, std::string_view name);

  Hook<void()> Click;     // another entry was selected, or none
  Hook<void()> DblClick;  // on the selected entry

  const std::vector<ListEntry>& List() const { return list_; }
  int ListCount() const { return static_cast<int>(list_.size()); }
  std::uint64_t ListRevision() const { return listRevision_; }  // differs whenever the list does
  void SetList(std::vector<ListEntry> list);  // nothing is selected; the same list again does nothing
  void AddItem(std::string_view text, std::string_view toolTip = "");
  void InsertItem(int index, std::string_view text);  // in front of the entry of that index

  // Nothing happens where there is no such entry.
  void SetItem(int index, std::string_view text);
  void RemoveItem(int index);
  void Clear();

  ItemNumbers& Numbers() { return numbers_; }

  // The selected entry, or -1; its text, or "".
  int ListIndex() const { return listIndex_; }
  void SetListIndex(int index);
  std::string_view Text() const;

 private:
  bool HasItem(int index) const { return index >= 0 && index < ListCount(); }

  void ListChanged();

  std::vector<ListEntry> list_;
  ItemNumbers numbers_;
  int listIndex_ = -1;
  std::uint64_t listRevision_ = 1;
};

// A control array: one name, indexes from 0.
template <typename Kind, std::size_t count>
class ControlArray {
 public:
  // `make` builds the element of an index.
  template <typename Make>
  explicit ControlArray(Make make) : items_(Build(make, std::make_index_sequence<count>())) {}

  Kind& operator[](std::size_t index) { return *items_.at(index); }
  const Kind& operator[](std::size_t index) const { return *items_.at(index); }
  static constexpr std::size_t size() { return count; }

 private:
  template <typename Make, std::size_t... indexes>
  static std::array<std::unique_ptr<Kind>, count> Build(Make& make, std::index_sequence<indexes...>) {
    return {make(static_cast<int>(indexes))...};
  }

  std::array<std::unique_ptr<Kind>, count> items_;
};

// An array of text boxes that start empty.
template <std::size_t count>
class TextBoxArray : public ControlArray<TextBox, count> {
 public:
  TextBoxArray(ControlGroup& group, std::string_view name)
      : ControlArray<TextBox, count>(
            [&](int index) { return std::make_unique<TextBox>(group, name, "", index); }) {}
};

// Check boxes, option buttons, buttons: an array whose elements differ in their captions.
template <typename Kind, std::size_t count>
class CaptionedArray : public ControlArray<Kind, count> {
 public:
  CaptionedArray(ControlGroup& group, std::string_view name,
                 const std::array<std::string_view, count>& captions)
      : ControlArray<Kind, count>([&](int index) {
          return std::make_unique<Kind>(group, name, captions[static_cast<std::size_t>(index)], index);
        }) {}
};

// Option buttons of which one is selected from the start.
template <std::size_t count>
class OptionArray : public CaptionedArray<OptionButton, count> {
 public:
  OptionArray(ControlGroup& group, std::string_view name, const std::array<std::string_view, count>& captions,
              std::size_t selected)
      : CaptionedArray<OptionButton, count>(group, name, captions) {
    std::vector<OptionButton*> all;
    for (std::size_t i = 0; i < count; ++i) all.push_back(&(*this)[i]);
    for (OptionButton* option : all) option->ExcludeWith(all);
    (*this)[selected].SetValue(true);
  }

  void OnClick(const std::function<void()>& handler) {
    for (std::size_t i = 0; i < count; ++i) (*this)[i].Click = handler;
  }

  // The selected index; nothing right after a configuration cleared the one that was.
  std::optional<std::size_t> Selected() const {
    for (std::size_t i = 0; i < count; ++i) {
      if ((*this)[i].Value()) return i;
    }
    return std::nullopt;
  }
};

template <std::size_t count>
class ShapeArray : public ControlArray<Shape, count> {
 public:
  ShapeArray(ControlGroup& group, std::string_view name, const std::array<Color, count>& fills)
      : ControlArray<Shape, count>([&](int index) {
          return std::make_unique<Shape>(group, name, fills[static_cast<std::size_t>(index)], index);
        }) {}
};

}  // namespace quarlin
