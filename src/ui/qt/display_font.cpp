// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/display_font.h"

#include <fmt/format.h>

#include <QFontDatabase>
#include <QFontInfo>
#include <QWheelEvent>
#include <algorithm>

#include "base/text.h"
#include "ui/qt/widget_text.h"

namespace quarlin {
namespace {

constexpr int wheelStep = 120;  // of one notch

QFont DesktopFont() {
  return QFontDatabase::systemFont(QFontDatabase::FixedFont);
}

}  // namespace

DisplayFont::DisplayFont(DisplayControls& controls, StatusNote& status, ReceivedTextView& view)
    : QObject(&view),
      controls_(controls),
      status_(status),
      view_(view),
      ordinaryFont_(DesktopFont()),
      family_(QFontInfo(ordinaryFont_).family()),
      size_(std::clamp(QFontInfo(ordinaryFont_).pointSize(), smallest, largest)),
      larger_(tr("La&rger text"), this),
      smaller_(tr("S&maller text"), this),
      ordinary_(tr("&Ordinary text size"), this) {
  OfferFonts();
  WireActions();
  controls_.ComboFont.Change = [this] { Choose(); };
  if (controls_.ComboFont.Text().empty()) controls_.ComboFont.SetText(BytesOf(family_));
  view_.viewport()->installEventFilter(this);
  Show();
}

DisplayFont::~DisplayFont() {
  controls_.ComboFont.Change = nullptr;
}

// A name that cannot stand in a configuration file is left out: it could not be found again.
void DisplayFont::OfferFonts() {
  std::vector<std::string> list;
  for (const bool fixedPitch : {true, false}) {
    for (const QString& family : QFontDatabase::families()) {
      if (QFontDatabase::isFixedPitch(family) != fixedPitch) continue;
      if (QFontDatabase::isPrivateFamily(family)) continue;
      std::string name = BytesOf(family);
      if (ShownText(name) != family || !families_.emplace(name, family).second) continue;
      list.push_back(std::move(name));
    }
  }
  controls_.ComboFont.SetList(std::move(list));
}

void DisplayFont::WireActions() {
  larger_.setObjectName("actionLargerText");
  smaller_.setObjectName("actionSmallerText");
  ordinary_.setObjectName("actionOrdinaryText");
  larger_.setIconText("A+");
  smaller_.setIconText(QStringLiteral("A\u2212"));
  larger_.setToolTip(tr("Larger text in the display (Ctrl+plus, or Ctrl and the wheel)"));
  smaller_.setToolTip(tr("Smaller text in the display (Ctrl+minus, or Ctrl and the wheel)"));
  larger_.setShortcuts({QKeySequence(Qt::CTRL | Qt::Key_Plus), QKeySequence(Qt::CTRL | Qt::Key_Equal)});
  smaller_.setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Minus));
  ordinary_.setShortcut(QKeySequence(Qt::CTRL | Qt::Key_0));
  connect(&larger_, &QAction::triggered, this, [this] { SetSize(size_ + 1); });
  connect(&smaller_, &QAction::triggered, this, [this] { SetSize(size_ - 1); });
  connect(&ordinary_, &QAction::triggered, this, [this] { SetSize(QFontInfo(ordinaryFont_).pointSize()); });
}

// A text that names no installed font stays, so that saving keeps what was loaded on another computer.
void DisplayFont::Choose() {
  const std::string& name = controls_.ComboFont.Text();
  const auto found = families_.find(name);
  family_ = found != families_.end() ? found->second : QFontInfo(ordinaryFont_).family();
  if (found == families_.end() && !name.empty()) {
    status_.Say(fmt::format("the font \"{}\" is not installed; the display uses {}", CodedText(name, 40),
                            BytesOf(family_)));
  }
  Show();
}

void DisplayFont::SetSize(int points) {
  size_ = std::clamp(points, smallest, largest);
  Show();
}

void DisplayFont::Show() {
  QFont font(family_, size_);
  font.setStyleHint(QFont::Monospace);
  if (view_.font() != font) view_.SetDisplayFont(font);
  controls_.lblfontsize.SetInteger(size_);
  larger_.setEnabled(size_ < largest);
  smaller_.setEnabled(size_ > smallest);
}

bool DisplayFont::eventFilter(QObject*, QEvent* event) {
  if (event->type() != QEvent::Wheel) return false;
  const auto& wheel = static_cast<const QWheelEvent&>(*event);
  if (!wheel.modifiers().testFlag(Qt::ControlModifier)) return false;
  wheel_ += wheel.angleDelta().y();
  const int steps = wheel_ / wheelStep;
  wheel_ -= steps * wheelStep;
  if (steps != 0) SetSize(size_ + steps);
  return true;
}

}  // namespace quarlin
