// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/command_window.h"

#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QVBoxLayout>

#include "ui/qt/lamp.h"
#include "ui/qt/spin_arrows.h"

namespace quarlin {
namespace {

// A widget of a control array. Its tip and its name for those who cannot see it are those that a script
// uses.
template <typename Widget>
Widget* Numbered(const char* name, int index) {
  auto* widget = new Widget;
  const QString scriptName = QStringLiteral("%1(%2)").arg(name).arg(index);
  widget->setObjectName(QStringLiteral("%1_%2").arg(name).arg(index));
  widget->setAccessibleName(scriptName);
  widget->setToolTip(scriptName);
  return widget;
}

QGroupBox* Group(const char* name, QGridLayout*& grid) {
  auto* group = new QGroupBox;
  group->setObjectName(name);
  grid = new QGridLayout(group);
  grid->setHorizontalSpacing(8);
  grid->setVerticalSpacing(4);
  return group;
}

QLabel* NumberLabel(int index, QWidget* buddy) {
  auto* label = new QLabel(QString::number(index));
  label->setBuddy(buddy);
  return label;
}

QLineEdit* TextLine(const char* name) {
  auto* line = new QLineEdit;
  line->setObjectName(name);
  line->setToolTip(name);
  return line;
}

constexpr int lampsInARow = 12;

}  // namespace

CommandWindow::CommandWindow(Form& panel) : FormWindow(panel), contents_(new QWidget) {
  setProperty("placeable", true);
  setAttribute(Qt::WA_ShowWithoutActivating);  // the script's panel does not take the keyboard
  auto* column = new QVBoxLayout(contents_);
  column->addWidget(MakeNumbers());
  column->addWidget(MakeChoices());
  column->addLayout(MakeTexts());
  column->addWidget(MakeLamps());
  column->addWidget(MakeSwitches());
  column->addLayout(MakeExit());
  column->addStretch();
  auto* scroll = new QScrollArea;  // for a small screen
  scroll->setFrameShape(QFrame::NoFrame);
  scroll->setWidgetResizable(true);
  scroll->setFocusPolicy(Qt::NoFocus);
  scroll->setWidget(contents_);
  auto* whole = new QVBoxLayout(this);
  whole->setContentsMargins(0, 0, 0, 0);
  whole->addWidget(scroll);
  Bind();
  MakeRoom();
  contents_->installEventFilter(this);
}

QWidget* CommandWindow::MakeNumbers() {
  QGridLayout* grid = nullptr;
  QGroupBox* group = Group("FrameText", grid);
  for (int i = 0; i < 8; ++i) {
    auto* text = Numbered<QLineEdit>("TextIO", i);
    text->setAlignment(Qt::AlignRight);
    auto* cell = new QHBoxLayout;
    cell->setSpacing(2);
    cell->addWidget(NumberLabel(i, text));
    cell->addWidget(text, 1);
    cell->addWidget(Numbered<SpinArrows>("VScrollIO", i));
    grid->addLayout(cell, i / 4, i % 4);
  }
  return group;
}

QWidget* CommandWindow::MakeChoices() {
  QGridLayout* grid = nullptr;
  QGroupBox* group = Group("FarmeCombo", grid);
  constexpr int columns = 5;
  for (int i = 0; i < 20; ++i) {
    auto* box = Numbered<QComboBox>("comboIO", i);
    box->setEditable(true);
    box->setInsertPolicy(QComboBox::NoInsert);
    box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    box->setMinimumContentsLength(6);
    auto* cell = new QHBoxLayout;
    cell->setSpacing(4);
    QLabel* number = NumberLabel(i, box);
    number->setMinimumWidth(number->fontMetrics().horizontalAdvance("00"));
    number->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    cell->addWidget(number);
    cell->addWidget(box, 1);
    grid->addLayout(cell, i / columns, i % columns);
  }
  return group;
}

QLayout* CommandWindow::MakeTexts() {
  auto* row = new QHBoxLayout;
  const std::pair<QString, const char*> lines[] = {{tr("I&nput"), "txtInput"}, {tr("O&utput"), "txtOutput"}};
  for (const auto& [caption, name] : lines) {
    QLineEdit* line = TextLine(name);
    auto* label = new QLabel(caption);
    label->setBuddy(line);
    row->addWidget(label);
    row->addWidget(line, 1);
  }
  return row;
}

QWidget* CommandWindow::MakeLamps() {
  QGridLayout* grid = nullptr;
  QGroupBox* group = Group("FrameOutput", grid);
  for (int i = 0; i < 24; ++i) {
    auto* lamp = Numbered<Lamp>("ShpOutput", i);
    lamp->setProperty("activeText", tr("on"));
    lamp->setProperty("idleText", tr("off"));
    auto* cell = new QHBoxLayout;
    cell->setSpacing(4);
    cell->addWidget(lamp);
    cell->addWidget(NumberLabel(i, nullptr), 1);
    grid->addLayout(cell, i / lampsInARow, i % lampsInARow);
  }
  return group;
}

QWidget* CommandWindow::MakeSwitches() {
  QGridLayout* grid = nullptr;
  QGroupBox* group = Group("FrameInput", grid);
  for (int i = 0; i < 24; ++i) {
    grid->addWidget(Numbered<QCheckBox>("ChkInput", i), i / lampsInARow, i % lampsInARow);
  }
  return group;
}

QLayout* CommandWindow::MakeExit() {
  auto* row = new QHBoxLayout;
  row->addStretch();
  auto* exit = new QPushButton(tr("E&xit"));
  exit->setObjectName("cmdExit");
  exit->setToolTip(tr("Closes the panel and switches scripting off"));
  row->addWidget(exit);
  return row;
}

bool CommandWindow::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::LayoutRequest) MakeRoom();
  return FormWindow::eventFilter(watched, event);
}

void CommandWindow::MakeRoom() {
  const QSize wanted = (contents_->sizeHint() + QSize(4, 4)).boundedTo(screen()->availableSize());
  const bool grows = wanted.width() > room_.width() || wanted.height() > room_.height();
  room_ = wanted;
  if (grows) resize(size().expandedTo(wanted));  // else the user may have made the window smaller
}

}  // namespace quarlin
