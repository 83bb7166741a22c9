// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/plot_window.h"

#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QFileInfo>
#include <QScrollArea>
#include <QScrollBar>
#include <QToolButton>
#include <cmath>
#include <limits>
#include <vector>

#include "data/csv_writer.h"
#include "ui/qt/dropped_files.h"
#include "ui/qt/filter_pane.h"
#include "ui/qt/trouble_labels.h"
#include "ui/qt/widget_text.h"
#include "ui_plot_window.h"

namespace quarlin {
namespace {

QString TitleOf(const Series& series, std::size_t place) {
  const QString name = TextOfFile(series.name);
  return name.isEmpty() ? PlotWindow::tr("Number %1").arg(place + 1) : name;
}

QString AxisTitleOf(const Series& series, std::size_t place) {
  const QString title = TitleOf(series, place);
  return series.unit.empty() ? title : title + " (" + TextOfFile(series.unit) + ")";
}

// A pane does not make the window higher than the screen is.
QScrollArea* Scrolled(QWidget* pane) {
  auto* area = new QScrollArea;
  area->setFrameShape(QFrame::NoFrame);
  area->setWidgetResizable(true);
  area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  area->setWidget(pane);
  area->setMinimumWidth(pane->minimumSizeHint().width() + area->verticalScrollBar()->sizeHint().width());
  return area;
}

}  // namespace

PlotWindow::PlotWindow(Form& form)
    : FormWindow(form),
      plot_(static_cast<FrmPlot&>(form)),
      load_(
          plot_.Loop(), [this](LoadedNumbers numbers) { plot_.ShowLoaded(std::move(numbers)); }, this),
      ui_(std::make_unique<Ui::PlotWindow>()),
      statistics_(new StatisticsPane),
      filter_(new FilterPane) {
  ui_->setupUi(this);
  resize(1000, 620);
  ShowAsTrouble(*this, {ui_->lblCurveTrouble});
  FillTools();
  WireSource();
  WireCanvas();
  WirePanes();
  Bind();
  plot_.OnCurves = [this] { ShowCurves(); };
  plot_.OnPoints = [this] { TakePoints(); };
  ShowCurves();
  ui_->canvas->setFocus();
}

PlotWindow::~PlotWindow() {
  plot_.OnCurves = nullptr;
  plot_.OnPoints = nullptr;
  plot_.OnFilter = nullptr;
  plot_.OnOpenNumbers = nullptr;
}

void PlotWindow::FillTools() {
  ui_->tools->addActions({ui_->actionLive, ui_->actionOpen, ui_->actionPaste});
  ui_->tools->addSeparator();
  ui_->tools->addActions(
      {ui_->actionPause, ui_->actionFollow, ui_->actionFit, ui_->actionBack, ui_->actionBox});
  ui_->tools->addSeparator();
  ui_->tools->addActions({ui_->actionCursors, ui_->actionPoints, ui_->actionLines, ui_->actionSecondAxis});
  ui_->tools->addSeparator();
  ui_->tools->addActions({ui_->actionCopy, ui_->actionExport, ui_->actionPanes});
  if (auto* more = ui_->tools->findChild<QToolButton*>("qt_toolbar_ext_button")) {
    more->setToolButtonStyle(Qt::ToolButtonTextOnly);
    more->setText(QStringLiteral("»"));
  }
  ui_->plotAndPanes->setStretchFactor(0, 1);
  ui_->plotAndPanes->setStretchFactor(1, 0);
  connect(ui_->actionPanes, &QAction::toggled, ui_->panes, &QWidget::setVisible);
}

void PlotWindow::WireSource() {
  connect(ui_->actionLive, &QAction::triggered, this, [this] { plot_.ShowLive(); });
  plot_.OnOpenNumbers = [this] { load_.ChooseFile(); };
  connect(ui_->actionOpen, &QAction::triggered, &load_, &LoadDialog::ChooseFile);
  TakeDroppedFiles(*this, [this](const QString& file) { load_.TakeFile(file); });
  connect(ui_->actionPaste, &QAction::triggered, &load_, &LoadDialog::TakeClipboard);
}

void PlotWindow::WireCanvas() {
  CurveCanvas* canvas = ui_->canvas;
  canvas->SetFollow(true);
  connect(ui_->actionPause, &QAction::toggled, canvas, &CurveCanvas::SetPaused);
  connect(canvas, &CurveCanvas::PausedChanged, ui_->actionPause, &QAction::setChecked);
  connect(ui_->actionFollow, &QAction::toggled, canvas, &CurveCanvas::SetFollow);
  connect(canvas, &CurveCanvas::FollowChanged, ui_->actionFollow, &QAction::setChecked);
  connect(ui_->actionCursors, &QAction::toggled, canvas, &CurveCanvas::SetCursors);
  connect(canvas, &CurveCanvas::CursorsShown, ui_->actionCursors, &QAction::setChecked);
  connect(ui_->actionBox, &QAction::toggled, canvas, &CurveCanvas::SetDragZooms);
  connect(ui_->actionFit, &QAction::triggered, canvas, &CurveCanvas::Fit);
  connect(ui_->actionBack, &QAction::triggered, canvas, &CurveCanvas::Back);
  for (QAction* look : {ui_->actionPoints, ui_->actionLines}) {
    connect(look, &QAction::toggled, this, [this] {
      ui_->canvas->SetPoints(ui_->actionPoints->isChecked(), ui_->actionLines->isChecked());
    });
  }
  connect(ui_->actionSecondAxis, &QAction::toggled, this, &PlotWindow::ShowCurves);
  connect(canvas, &CurveCanvas::MarkClicked, this,
          [this](std::uint64_t exchange) { plot_.ShowExchange(exchange); });
  connect(canvas, &CurveCanvas::PointClicked, this, [this](int, double time) { plot_.ShowAnswerAt(time); });
  connect(ui_->actionCopy, &QAction::triggered, this, &PlotWindow::CopyPicture);
  connect(ui_->actionExport, &QAction::triggered, this, &PlotWindow::Export);
}

void PlotWindow::WirePanes() {
  ui_->panes->addTab(Scrolled(statistics_), tr("&Statistics"));
  ui_->panes->addTab(Scrolled(filter_), tr("&Filter"));
  statistics_->OnWanted = [this](int curve, bool betweenCursors) { return Stretch(curve, betweenCursors); };
  connect(statistics_, &StatisticsPane::told, this,
          [this](const QString& words) { plot_.Tell(BytesOf(words)); });
  connect(ui_->canvas, &CurveCanvas::CursorsShown, statistics_, &StatisticsPane::SetCursors);
  connect(ui_->canvas, &CurveCanvas::CursorsMoved, statistics_, &StatisticsPane::Refresh);
  connect(filter_, &FilterPane::writeRequested, this, [this] { plot_.WriteDataFiles(); });
  const auto showFilter = [this] {
    const FilterChoice choice = plot_.Filter();
    filter_->ShowFilter(choice.settings, choice.bothWays, choice.objection);
  };
  plot_.OnFilter = showFilter;
  showFilter();
}

StatisticsPane::Stretch PlotWindow::Stretch(int curve, bool betweenCursors) const {
  const auto& looks = ui_->canvas->Curves();
  if (curve < 0 || curve >= static_cast<int>(looks.size())) return {};
  const Series& series = *looks[static_cast<std::size_t>(curve)].series;
  std::size_t begin = 0, end = series.Size();
  if (betweenCursors) {
    const Span cursors = ui_->canvas->CursorTimes();
    begin = series.IndexAt(cursors.from);
    end = series.IndexAt(std::nextafter(cursors.to, std::numeric_limits<double>::infinity()));
  }
  return {series.Points(begin, end), TextOfFile(series.unit), plot_.ShownByTime()};
}

void PlotWindow::ShowCurves() {
  ui_->actionLive->setChecked(plot_.ShowsLive());
  std::vector<CurveLook> looks;
  const auto& curves = plot_.Shown().Curves();
  for (std::size_t i = 0; i < curves.size(); ++i) {
    const auto& [raw, filtered, filter] = *curves[i];
    const bool secondAxis = i > 0 && ui_->actionSecondAxis->isChecked();
    looks.push_back({&raw, TitleOf(raw, i), secondAxis, filter != nullptr, true});
    if (!filter) continue;
    looks.push_back({&filtered, tr("%1, filtered").arg(TitleOf(raw, i)), secondAxis, false, true});
  }
  QStringList names;
  for (const CurveLook& look : looks) names += look.title;
  statistics_->SetCurves(names);
  ui_->canvas->SetCurves(std::move(looks));
  ui_->canvas->SetMarks({plot_.Marks().begin(), plot_.Marks().end()});
  marksTaken_ = plot_.MarksEver();
  axisTitle_.clear();
  ShowTitles();
}

// The unit is known as soon as the first number has come.
void PlotWindow::ShowTitles() {
  const auto& curves = plot_.Shown().Curves();
  if (curves.empty()) return;
  const QString title = AxisTitleOf(curves.front()->raw, 0);
  if (title == axisTitle_) return;
  axisTitle_ = title;
  ui_->canvas->SetTimes(plot_.ShownByTime() ? PlotTimes::Seconds : PlotTimes::Rows);
  ui_->canvas->SetAxisTitles(plot_.ShownByTime() ? tr("Time") : tr("Row"), title,
                             curves.size() > 1 ? AxisTitleOf(curves[1]->raw, 1) : QString());
}

void PlotWindow::TakePoints() {
  TakeMarks();
  ShowTitles();
  ui_->canvas->Refresh();
  statistics_->Refresh();
}

void PlotWindow::TakeMarks() {
  const auto& marks = plot_.Marks();
  const std::uint64_t fresh = std::min<std::uint64_t>(plot_.MarksEver() - marksTaken_, marks.size());
  for (std::size_t i = marks.size() - fresh; i < marks.size(); ++i) ui_->canvas->AddMark(marks[i]);
  marksTaken_ = plot_.MarksEver();
}

void PlotWindow::CopyPicture() {
  QApplication::clipboard()->setImage(ui_->canvas->Picture());
  plot_.Tell("the picture of the plot is in the clipboard");
}

void PlotWindow::Export() {
  const QString file =
      QFileDialog::getSaveFileName(this, tr("Export the plot"), tr("plot.png"),
                                   tr("Pictures (*.png *.svg *.pdf);;Numbers (*.csv);;All files (*)"));
  if (!file.isEmpty()) ExportTo(file);
}

void PlotWindow::ExportTo(const QString& file) {
  const auto trouble = Written(file);
  plot_.Tell(trouble ? BytesOf(*trouble) : "the plot was written: " + BytesOf(file));
}

// Numbers as a table, anything else as a picture. A sentence where it failed.
std::optional<QString> PlotWindow::Written(const QString& file) {
  if (QFileInfo(file).suffix().toLower() != "csv") return ui_->canvas->ExportPicture(file);
  std::vector<CsvCurve> curves;
  for (const CurveLook& look : ui_->canvas->Curves()) {
    curves.push_back({look.series, look.title.toStdString()});
  }
  const auto error =
      WriteCsv(QFile::encodeName(file).toStdString(), curves, plot_.ShownByTime() ? "Time (s)" : "Row");
  if (!error) return std::nullopt;
  return tr("%1 was not written: %2").arg(file, QString::fromStdString(error.message()));
}

}  // namespace quarlin
