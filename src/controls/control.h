// SPDX-License-Identifier: GPL-3.0-or-later
// The controls of the window without a window: values with a name. The modules read and write these; the
// view shows them and brings back what the user did; the configuration file and scripts find them by
// name and index.
//
// Setting a value that differs runs the control's handler, whoever set it; setting the same value again
// does nothing. Every change is noted for the view, which repaints once a frame.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/hook.h"
#include "controls/event_loop.h"
#include "controls/looks.h"

namespace quarlin {

class Control;

// A colour with its bytes blue-green-red from high to low.
using Color = std::int32_t;

namespace colors {
inline constexpr Color black = 0;
inline constexpr Color red = 255;
inline constexpr Color darkRed = 128;
inline constexpr Color green = 65280;
inline constexpr Color yellow = 65535;
inline constexpr Color darkGreen = 32768;
inline constexpr Color blue = 0xFF0000;
inline constexpr Color magenta = 0xFF00FF;
inline constexpr Color rxLamp = 0x80F000;
}  // namespace colors

enum class ControlKind {
  TextBox,
  ComboBox,
  CheckBox,
  OptionButton,
  CommandButton,
  Label,
  Frame,
  Shape,
  ScrollBar,
  ListBox,
  RichTextBox,
  Timer
};

// Where a script wants a control, in twips (15 to a pixel). Nothing: where the form has it.
struct Placement {
  std::optional<double> left, top, width, height;
  bool operator==(const Placement&) const = default;
};

// The controls that changed since the view last looked. A control stands in it at most once.
class RepaintList {
 public:
  // Called when the list gets its first entry; the view then plans a frame.
  Hook<void()> onFirst;

  void Add(Control& control);

  // Hands the changed controls over, once.
  std::vector<Control*> Take();

  bool Empty() const { return changed_.empty(); }

 private:
  std::vector<Control*> changed_;
};

// A struct of controls declared beside the module that reads them, in the order in which they are saved.
class ControlGroup {
 public:
  explicit ControlGroup(EventLoop& loop) : loop_(loop) {}
  ControlGroup(const ControlGroup&) = delete;
  ControlGroup& operator=(const ControlGroup&) = delete;

  EventLoop& Loop() { return loop_; }
  const std::vector<Control*>& Members() const { return members_; }

 private:
  friend class Control;
  EventLoop& loop_;
  std::vector<Control*> members_;
};

class Control {
 public:
  Control(ControlGroup& group, ControlKind kind, std::string_view name,
          std::optional<int> index = std::nullopt);
  virtual ~Control() = default;
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  ControlKind Kind() const { return kind_; }
  const std::string& Name() const { return name_; }
  std::optional<int> Index() const { return index_; }  // within its control array

  bool Enabled() const { return enabled_; }
  void SetEnabled(bool enabled);
  bool Visible() const { return visible_; }
  void SetVisible(bool visible);
  const std::string& ToolTipText() const { return toolTipText_; }
  void SetToolTipText(std::string_view text);

  // Nothing means the desktop's own colour.
  std::optional<Color> BackColor() const { return backColor_; }
  void SetBackColor(std::optional<Color> color);
  std::optional<Color> ForeColor() const { return foreColor_; }
  void SetForeColor(std::optional<Color> color);

  const Placement& Place() const { return place_; }
  void SetPlace(const Placement& place);

  const Looks& Look() const { return look_; }
  void SetLook(const Looks& look);

  // What a script notes at the control; it means nothing here.
  const std::string& Tag() const { return tag_; }
  void SetTag(std::string_view tag) { tag_ = tag; }

  // Takes back whatever scripts set beside its value and its caption.
  virtual void ForgetLooks();

  // Asks the view to give it the keyboard; the view takes the wish, once.
  void SetFocus();
  bool TakeFocusWish() { return std::exchange(focusWish_, false); }

  void ReportChangesTo(RepaintList& list) { repaint_ = &list; }

 protected:
  void Changed();
  virtual void EnabledChanged() {}

 private:
  friend class RepaintList;

  ControlKind kind_;
  std::string name_;
  std::optional<int> index_;
  bool enabled_ = true;
  bool visible_ = true;
  bool queued_ = false;  // stands in the repaint list
  std::string toolTipText_;
  std::optional<Color> backColor_;
  std::optional<Color> foreColor_;
  Placement place_;
  Looks look_;
  std::string tag_;
  bool focusWish_ = false;
  RepaintList* repaint_ = nullptr;
};

}  // namespace quarlin
