// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editor/debug_panel.h"

#include <QFile>
#include <QFormLayout>
#include <QShortcut>
#include <QSignalBlocker>
#include <QSplitter>
#include <QVBoxLayout>

namespace quarlin {
namespace {

constexpr std::size_t mostCalls = 200;

QWidget* WithHeading(const QString& heading, QWidget* widget) {
  auto* both = new QWidget;
  auto* column = new QVBoxLayout(both);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(new QLabel(heading));
  column->addWidget(widget, 1);
  return both;
}

}  // namespace

DebugPanel::DebugPanel(ScriptDebugger& debugger, QWidget* parent)
    : QWidget(parent),
      debugger_(debugger),
      state_(new QLabel),
      errors_(new QComboBox),
      values_(new DebugValues(debugger)),
      watch_(new QLineEdit),
      calls_(new QListWidget) {
  setObjectName("debugPanel");
  state_->setObjectName("debugState");
  state_->setWordWrap(true);
  errors_->setObjectName("debugErrors");
  errors_->addItems({tr("no errors"), tr("errors that nobody catches"), tr("all errors")});
  errors_->setToolTip(tr("At which errors the script is to stand, before anything else happens"));
  watch_->setObjectName("debugWatch");
  watch_->setPlaceholderText(tr("expression"));
  watch_->setClearButtonEnabled(true);
  watch_->setToolTip(
      tr("Enter adds it to the watches; Delete in the list takes one away.\n"
         "An expression may call functions of the script, which then run."));
  calls_->setObjectName("debugCalls");
  calls_->setAccessibleName(tr("Calls, the innermost first"));
  calls_->setToolTip(tr("The procedures that run, the innermost first; a click shows its variables"));

  auto* form = new QFormLayout;
  form->addRow(tr("&Stop at"), errors_);
  auto* values = new QWidget;
  auto* valuesColumn = new QVBoxLayout(values);
  valuesColumn->setContentsMargins(0, 0, 0, 0);
  valuesColumn->addWidget(values_, 1);
  auto* watchRow = new QFormLayout;
  watchRow->addRow(tr("Watc&h"), watch_);
  valuesColumn->addLayout(watchRow);
  auto* splitter = new QSplitter(Qt::Vertical);
  splitter->setObjectName("debugSplitter");
  splitter->setChildrenCollapsible(false);
  splitter->addWidget(values);
  splitter->addWidget(WithHeading(tr("Calls"), calls_));
  splitter->setStretchFactor(0, 3);
  splitter->setStretchFactor(1, 1);
  auto* column = new QVBoxLayout(this);
  column->addWidget(state_);
  column->addLayout(form);
  column->addWidget(splitter, 1);

  connect(errors_, &QComboBox::currentIndexChanged, this,
          [this](int index) { debugger_.SetErrorStops(static_cast<ErrorStops>(index)); });
  connect(watch_, &QLineEdit::returnPressed, this, [this] {
    values_->AddWatch(watch_->text());
    watch_->clear();
  });
  auto* remove = new QShortcut(QKeySequence::Delete, values_, nullptr, nullptr, Qt::WidgetShortcut);
  connect(remove, &QShortcut::activated, values_, &DebugValues::RemoveSelectedWatch);
  connect(calls_, &QListWidget::currentRowChanged, this, &DebugPanel::ShowCall);
  Refresh();
}

void DebugPanel::SetMayFollow(bool mayFollow) {
  mayFollow_ = mayFollow;
  ShowState();
}

void DebugPanel::ShowState() {
  if (debugger_.Stands()) {
    const ScriptPlace& place = debugger_.Place();
    const QString stands = tr("<b>Stands at line %1 of %2.</b> The test waits.")
                               .arg(place.line)
                               .arg(QFile::decodeName(place.file.filename().c_str()).toHtmlEscaped());
    state_->setText(
        place.why.empty() ? stands : stands + "<br>" + QString::fromStdU16String(place.why).toHtmlEscaped());
  } else if (!mayFollow_) {
    state_->setText(tr("JScript runs, but only VBScript can be stopped and stepped."));
  } else if (debugger_.Pausing()) {
    state_->setText(tr("Pauses at the next statement that the script does."));
  } else {
    state_->setText(debugger_.Followed().empty() ? tr("No VBScript runs.") : tr("The script runs."));
  }
}

void DebugPanel::Refresh() {
  ShowState();
  const QSignalBlocker quiet(calls_);
  calls_->clear();
  calls_->setEnabled(debugger_.Stands());
  if (!debugger_.Stands()) return values_->LetGo();
  FillCalls();
  calls_->setCurrentRow(0);
  values_->ShowCall(0);
}

void DebugPanel::FillCalls() {
  const std::size_t depth = debugger_.Depth();
  for (std::size_t call = 0; call < std::min(depth, mostCalls); ++call) {
    const vbs::CallView view = debugger_.CallAt(call);
    const QString name =
        view.procedure.empty() ? tr("top-level code") : QString::fromStdU16String(view.procedure);
    calls_->addItem(view.ofScript ? tr("%1, line %2").arg(name).arg(view.at.line)
                                  : tr("%1, in a text given to Execute").arg(name));
  }
  if (depth > mostCalls) {
    auto* rest = new QListWidgetItem(tr("and %1 more").arg(depth - mostCalls), calls_);
    rest->setFlags(Qt::NoItemFlags);
  }
}

void DebugPanel::ShowCall(int row) {
  if (row < 0 || !debugger_.Stands()) return;
  const auto call = static_cast<std::size_t>(row);
  values_->ShowCall(call);
  const vbs::CallView view = debugger_.CallAt(call);
  if (view.ofScript) emit lineWanted(view.at.line);
}

}  // namespace quarlin
