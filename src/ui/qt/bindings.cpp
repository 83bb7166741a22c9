// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/bindings.h"

#include <QAbstractSlider>
#include <QApplication>
#include <QCheckBox>
#include <QEvent>
#include <QGroupBox>
#include <QLabel>
#include <QLayout>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <algorithm>
#include <array>

#include "controls/controls.h"
#include "display/display_controls.h"
#include "ui/qt/edit_bindings.h"
#include "ui/qt/error_table.h"
#include "ui/qt/lamp.h"
#include "ui/qt/received_text_view.h"
#include "ui/qt/tint.h"
#include "ui/qt/widget_text.h"

namespace quarlin {

Binding::Binding(Control& control, QWidget& widget)
    : control_(control), widget_(widget), formToolTip_(widget.toolTip()) {}

void Binding::Show() {
  widget_.setEnabled(control_.Enabled());
  if (widget_.isHidden() == control_.Visible()) widget_.setVisible(control_.Visible());
  ShowToolTip();
  ShowColors();
  ShowPlace();
  ShowLook();
  ShowValue();
  if (control_.TakeFocusWish()) widget_.setFocus(Qt::OtherFocusReason);
}

QString Binding::ToolTip() const {
  const std::string& own = control_.ToolTipText();
  return own.empty() ? formToolTip_ : ShownText(own);
}

void Binding::ShowToolTip() {
  if (control_.Kind() == ControlKind::Shape) return;  // tells the lamp's state, too
  const QString shown = ToolTip();
  if (widget_.toolTip() != shown) widget_.setToolTip(shown);
}

void Binding::ShowColors() {
  const bool colors = control_.BackColor() || control_.ForeColor();
  if (colors) widget_.setPalette(Tinted(widget_, control_.BackColor(), control_.ForeColor()));
  if (colored_ && !colors) widget_.setPalette(QPalette());
  colored_ = colors;
}

namespace {

// Out of the layout that holds it, which may lie within others.
bool TakeOut(QLayout& layout, QWidget& widget) {
  if (layout.indexOf(&widget) >= 0) {
    layout.removeWidget(&widget);
    return true;
  }
  for (int i = 0; i < layout.count(); ++i) {
    QLayout* inner = layout.itemAt(i)->layout();
    if (inner != nullptr && TakeOut(*inner, widget)) return true;
  }
  return false;
}

}  // namespace

void Binding::ShowPlace() {
  const Placement& place = control_.Place();
  if (place == Placement() || !widget_.window()->property("placeable").toBool()) return;
  constexpr double twipsPerPixel = 15;
  const auto pixels = [](std::optional<double> twips, int otherwise) {
    return twips ? static_cast<int>(std::clamp(*twips / twipsPerPixel, -10000.0, 10000.0)) : otherwise;
  };
  if (place.width) widget_.setFixedWidth(std::max(pixels(place.width, 0), 0));
  if (place.height) widget_.setFixedHeight(std::max(pixels(place.height, 0), 0));
  if (!place.left && !place.top) return;
  if (QLayout* layout = widget_.parentWidget()->layout()) TakeOut(*layout, widget_);
  widget_.adjustSize();
  const QPoint corner(pixels(place.left, widget_.x()), pixels(place.top, widget_.y()));
  if (corner == widget_.pos()) return;
  widget_.move(corner);
  widget_.raise();  // where it goes there may be others
}

namespace {

// What a script has set; the rest is the desktop's, and not the frame's around it.
QFont FontOf(const Lettering& lettering, const QWidget& widget) {
  if (lettering == Lettering()) return {};
  QFont font = QApplication::font(&widget);
  font.setResolveMask(QFont::AllPropertiesResolved);
  if (lettering.name && !lettering.name->empty()) font.setFamily(ShownText(*lettering.name));
  if (lettering.size) font.setPointSizeF(*lettering.size);
  if (lettering.bold) font.setBold(*lettering.bold);
  if (lettering.italic) font.setItalic(*lettering.italic);
  if (lettering.underline) font.setUnderline(*lettering.underline);
  if (lettering.strikethrough) font.setStrikeOut(*lettering.strikethrough);
  return font;
}

// What stands in a frame has letters of its own.
void KeepFontsWithin(const QWidget& frame) {
  for (QWidget* inner : frame.findChildren<QWidget*>()) {
    if (inner->testAttribute(Qt::WA_SetFont)) continue;
    QFont own = QApplication::font(inner);
    own.setResolveMask(QFont::AllPropertiesResolved);
    inner->setFont(own);
  }
}

}  // namespace

void Binding::ShowLook() {
  const Looks& look = control_.Look();
  if (look == shownLook_ || !widget_.window()->property("placeable").toBool()) return;
  if (look.font != shownLook_.font) {
    if (control_.Kind() == ControlKind::Frame) KeepFontsWithin(widget_);
    widget_.setFont(FontOf(look.font, widget_));
  }
  shownLook_ = look;
  ShowBorder(look);
}

namespace {

void ShowCaption(QAbstractButton& widget, std::string_view text, QChar mnemonic) {
  const QString caption = WithMnemonic(text, mnemonic);
  if (WithoutMnemonic(widget.text()) != WithoutMnemonic(caption)) widget.setText(caption);
}

class CheckBoxBinding : public Binding {
 public:
  CheckBoxBinding(CheckBox& control, QCheckBox& widget, const UserSide& user)
      : Binding(control, widget), control_(control), widget_(widget), mnemonic_(MnemonicOf(widget.text())) {
    QObject::connect(&widget, &QCheckBox::clicked, &Context(), [this, user] {
      user.run([this, user] {
        user.aboutToEdit(control_, widget_);
        control_.SetChecked(widget_.checkState() != Qt::Unchecked);
      });
      Show();
    });
  }

 private:
  // The third state is shown, but a click only leaves it.
  void ShowValue() override {
    widget_.setTristate(control_.Value() == 2);
    widget_.setCheckState(control_.Value() == 2 ? Qt::PartiallyChecked
                                                : (control_.Checked() ? Qt::Checked : Qt::Unchecked));
    ShowCaption(widget_, control_.Caption(), mnemonic_);
  }

  CheckBox& control_;
  QCheckBox& widget_;
  QChar mnemonic_;
};

class OptionBinding : public Binding {
 public:
  OptionBinding(OptionButton& control, QRadioButton& widget, const UserSide& user)
      : Binding(control, widget), control_(control), widget_(widget), mnemonic_(MnemonicOf(widget.text())) {
    QObject::connect(&widget, &QRadioButton::clicked, &Context(), [this, user] {
      user.run([this, user] {
        user.aboutToEdit(control_, widget_);
        control_.SetValue(true);
      });
    });
  }

 private:
  // A group in which nothing is selected can be shown only while the buttons do not exclude each other.
  void ShowValue() override {
    ShowCaption(widget_, control_.Caption(), mnemonic_);
    if (widget_.isChecked() == control_.Value()) return;
    widget_.setAutoExclusive(control_.Value());
    widget_.setChecked(control_.Value());
    widget_.setAutoExclusive(true);
  }

  OptionButton& control_;
  QRadioButton& widget_;
  QChar mnemonic_;
};

// The form names the longest caption of a button whose caption changes, so that it keeps its width.
class CommandBinding : public Binding {
 public:
  CommandBinding(CommandButton& control, QPushButton& widget, const UserSide& user)
      : Binding(control, widget), control_(control), widget_(widget), mnemonic_(MnemonicOf(widget.text())) {
    if (const QString longest = widget.property("longestCaption").toString(); !longest.isEmpty()) {
      widget.setText(longest);
      widget.setMinimumWidth(std::max(widget.minimumWidth(), widget.sizeHint().width()));
    }
    QObject::connect(&widget, &QPushButton::clicked, &Context(),
                     [this, user] { user.run([this] { control_.Click(); }); });
  }

 private:
  void ShowValue() override {
    const QString caption = WithMnemonic(control_.Caption(), mnemonic_);
    if (widget_.text() != caption) widget_.setText(caption);
  }

  CommandButton& control_;
  QPushButton& widget_;
  QChar mnemonic_;
};

// The form says how many digits a label that changes all the time has room for. Its size is then fixed,
// and a new number repaints it without laying out the window again.
class LabelBinding : public Binding {
 public:
  LabelBinding(Label& control, QLabel& widget)
      : Binding(control, widget), control_(control), widget_(widget) {
    const int characters = widget.property("characters").toInt();
    if (characters == 0) return;
    const QFontMetrics metrics = widget.fontMetrics();
    widget.setFixedSize(metrics.horizontalAdvance(QString(characters, '0')), metrics.height());
  }

 private:
  void ShowValue() override {
    const QString caption = EditText(control_.Caption());
    if (widget_.text() != caption) widget_.setText(caption);
  }

  Label& control_;
  QLabel& widget_;
};

// A frame without a box around it tells its caption only to those who cannot see it.
class FrameBinding : public Binding {
 public:
  FrameBinding(Frame& control, QWidget& widget)
      : Binding(control, widget),
        control_(control),
        widget_(widget),
        box_(qobject_cast<QGroupBox*>(&widget)),
        mnemonic_(box_ == nullptr ? QChar() : MnemonicOf(box_->title())) {}

 private:
  void ShowValue() override {
    if (box_ == nullptr) {
      widget_.setAccessibleName(ShownText(control_.Caption()));
      return;
    }
    const QString caption = WithMnemonic(control_.Caption(), mnemonic_);
    if (WithoutMnemonic(box_->title()) != WithoutMnemonic(caption)) box_->setTitle(caption);
  }
  void ShowBorder(const Looks& look) override {
    if (box_ != nullptr) box_->setFlat(look.borderStyle == 0);
  }

  Frame& control_;
  QWidget& widget_;
  QGroupBox* box_;
  QChar mnemonic_;
};

// Tells in words, too, whether the lamp is lit; the form has the words for it. A lamp of more than two states
// has none there: its tool tip tells its state.
class LampBinding : public Binding {
 public:
  LampBinding(Shape& control, Lamp& widget)
      : Binding(control, widget),
        control_(control),
        widget_(widget),
        litText_(widget.property("activeText").toString()),
        darkText_(widget.property("idleText").toString()) {}

 private:
  void ShowValue() override {
    const QColor color = ColorOf(control_.FillColor());
    widget_.SetColor(color);
    const bool lit = std::max({color.red(), color.green(), color.blue()}) > darkest;
    const QString state = litText_.isEmpty() ? ToolTip() : lit ? litText_ : darkText_;
    if (widget_.accessibleDescription() != state) widget_.setAccessibleDescription(state);
    const QString shown = litText_.isEmpty() ? ToolTip() : ToolTip() + QStringLiteral("\nNow: ") + state;
    if (widget_.toolTip() != shown) widget_.setToolTip(shown);
  }

  void ShowBorder(const Looks& look) override {
    widget_.SetFill(fills[static_cast<std::size_t>(look.fillStyle)]);
    const Qt::PenStyle pen =
        look.borderStyle ? pens[static_cast<std::size_t>(*look.borderStyle)] : Qt::SolidLine;
    widget_.SetBorder(look.borderColor ? ColorOf(*look.borderColor) : QColor(), pen);
  }

  static constexpr int darkest = 128;  // the strongest component of a dark lamp

  // By the numbers that scripts give them.
  static constexpr std::array fills{Qt::SolidPattern, Qt::NoBrush,         Qt::HorPattern,
                                    Qt::VerPattern,   Qt::FDiagPattern,    Qt::BDiagPattern,
                                    Qt::CrossPattern, Qt::DiagCrossPattern};
  static constexpr std::array pens{Qt::NoPen,       Qt::SolidLine,      Qt::DashLine, Qt::DotLine,
                                   Qt::DashDotLine, Qt::DashDotDotLine, Qt::SolidLine};

  Shape& control_;
  Lamp& widget_;
  QString litText_;
  QString darkText_;
};

class ScrollBinding : public Binding {
 public:
  ScrollBinding(ScrollBar& control, QAbstractSlider& widget, const UserSide& user)
      : Binding(control, widget), control_(control), widget_(widget) {
    QObject::connect(&widget, &QAbstractSlider::valueChanged, &Context(), [this, user](int value) {
      user.run([this, user, value] {
        user.aboutToEdit(control_, widget_);
        control_.SetValue(value);
      });
      Show();  // one that springs back can be pressed again at once
    });
  }

 private:
  void ShowValue() override {
    const QSignalBlocker blocker(widget_);
    widget_.setRange(control_.Min(), control_.Max());
    widget_.setValue(control_.Value());
  }

  ScrollBar& control_;
  QAbstractSlider& widget_;
};

class ListBinding : public Binding {
 public:
  ListBinding(ListBox& control, QListWidget& widget, const UserSide& user)
      : Binding(control, widget), control_(control), widget_(widget) {
    QObject::connect(&widget, &QListWidget::currentRowChanged, &Context(),
                     [this, user](int row) { user.run([this, row] { control_.SetListIndex(row); }); });
    QObject::connect(&widget, &QListWidget::itemDoubleClicked, &Context(),
                     [this, user] { user.run([this] { control_.DblClick(); }); });
  }

 private:
  // A hidden list is filled when it comes into sight, which is a change of its control.
  void ShowValue() override {
    if (!control_.Visible()) return;
    const QSignalBlocker blocker(widget_);
    if (shownList_ != control_.ListRevision()) Fill();
    if (widget_.currentRow() != control_.ListIndex()) widget_.setCurrentRow(control_.ListIndex());
  }

  void Fill() {
    widget_.clear();
    for (const ListEntry& entry : control_.List()) {
      auto* item = new QListWidgetItem(EditText(entry.text), &widget_);
      item->setToolTip(Qt::convertFromPlainText(EditText(entry.toolTip)));
    }
    shownList_ = control_.ListRevision();
    widget_.scrollToBottom();
  }

  ListBox& control_;
  QListWidget& widget_;
  std::optional<std::uint64_t> shownList_;  // revision of the list that the widget holds
};

// The table shows more than the list holds, from the record; the control says whether it is to be seen.
class ErrorTableBinding : public Binding {
 public:
  ErrorTableBinding(ListBox& control, ErrorTable& widget) : Binding(control, widget) {}

 private:
  void ShowValue() override {}
};

class DisplayBinding : public Binding {
 public:
  DisplayBinding(DisplayText& control, ReceivedTextView& widget) : Binding(control, widget), widget_(widget) {
    widget.Show(control);
  }

 private:
  void ShowValue() override { widget_.Refresh(); }

  ReceivedTextView& widget_;
};

template <typename Made, typename Kind, typename Widget, typename... Others>
std::unique_ptr<Binding> Tie(Control& control, QWidget& widget, const Others&... others) {
  auto* ofKind = qobject_cast<Widget*>(&widget);
  if (ofKind == nullptr) return nullptr;
  return std::make_unique<Made>(static_cast<Kind&>(control), *ofKind, others...);
}

}  // namespace

std::unique_ptr<Binding> MakeBinding(Control& control, QWidget& widget, const UserSide& user) {
  switch (control.Kind()) {
    case ControlKind::TextBox:
      return Tie<TextBoxBinding, TextBox, QLineEdit>(control, widget, user);
    case ControlKind::ComboBox:
      return Tie<ComboBoxBinding, ComboBox, QComboBox>(control, widget, user);
    case ControlKind::CheckBox:
      return Tie<CheckBoxBinding, CheckBox, QCheckBox>(control, widget, user);
    case ControlKind::OptionButton:
      return Tie<OptionBinding, OptionButton, QRadioButton>(control, widget, user);
    case ControlKind::CommandButton:
      return Tie<CommandBinding, CommandButton, QPushButton>(control, widget, user);
    case ControlKind::Label:
      return Tie<LabelBinding, Label, QLabel>(control, widget);
    case ControlKind::Frame:
      return Tie<FrameBinding, Frame, QWidget>(control, widget);
    case ControlKind::Shape:
      return Tie<LampBinding, Shape, Lamp>(control, widget);
    case ControlKind::ScrollBar:
      return Tie<ScrollBinding, ScrollBar, QAbstractSlider>(control, widget, user);
    case ControlKind::ListBox:
      if (auto table = Tie<ErrorTableBinding, ListBox, ErrorTable>(control, widget)) return table;
      return Tie<ListBinding, ListBox, QListWidget>(control, widget, user);
    case ControlKind::RichTextBox:
      return Tie<DisplayBinding, DisplayText, ReceivedTextView>(control, widget);
    case ControlKind::Timer:
      break;
  }
  return nullptr;
}

}  // namespace quarlin
