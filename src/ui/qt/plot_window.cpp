#include "ui/qt/plot_window.h"

#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QFileInfo>
#include <QToolButton>
#include <vector>

#include "ui/qt/widget_text.h"
#include "ui_plot_window.h"

namespace quarlin {
namespace {

QString TitleOf(const Series& series, std::size_t place) {
  const QString name = QString::fromStdString(series.name);
  return name.isEmpty() ? PlotWindow::tr("Number %1").arg(place + 1) : name;
}

QString AxisTitleOf(const Series& series, std::size_t place) {
  const QString title = TitleOf(series, place);
  return series.unit.empty() ? title : title + " (" + ShownText(series.unit) + ")";
}

}  // namespace

PlotWindow::PlotWindow(Form& form)
    : FormWindow(form),
      plot_(static_cast<FrmPlot&>(form)),
      load_(
          plot_.Loop(), [this](LoadedNumbers numbers) { plot_.ShowLoaded(std::move(numbers)); }, this),
      ui_(std::make_unique<Ui::PlotWindow>()) {
  ui_->setupUi(this);
  resize(1000, 620);
  FillTools();
  WireSource();
  WireCanvas();
  Bind();
  plot_.OnCurves = [this] { ShowCurves(); };
  plot_.OnPoints = [this] { TakePoints(); };
  ShowCurves();
  ui_->canvas->setFocus();
}

PlotWindow::~PlotWindow() {
  plot_.OnCurves = nullptr;
  plot_.OnPoints = nullptr;
}

void PlotWindow::FillTools() {
  ui_->tools->addActions({ui_->actionLive, ui_->actionOpen, ui_->actionPaste});
  ui_->tools->addSeparator();
  ui_->tools->addActions({ui_->actionPause, ui_->actionFollow, ui_->actionFit, ui_->actionBack});
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
  connect(ui_->actionOpen, &QAction::triggered, &load_, &LoadDialog::ChooseFile);
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

void PlotWindow::ShowCurves() {
  ui_->actionLive->setChecked(plot_.ShowsLive());
  std::vector<CurveLook> looks;
  const auto& curves = plot_.Shown().Curves();
  for (std::size_t i = 0; i < curves.size(); ++i) {
    const auto& [raw, filtered, filter] = *curves[i];
    const bool secondAxis = i > 0 && ui_->actionSecondAxis->isChecked();
    looks.push_back({&raw, TitleOf(raw, i), secondAxis, filter != nullptr, true});
    if (filter)
      looks.push_back({&filtered, tr("%1, filtered").arg(TitleOf(raw, i)), secondAxis, false, true});
  }
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
}

void PlotWindow::TakeMarks() {
  const auto& marks = plot_.Marks();
  const std::uint64_t fresh = std::min<std::uint64_t>(plot_.MarksEver() - marksTaken_, marks.size());
  for (std::size_t i = marks.size() - fresh; i < marks.size(); ++i) ui_->canvas->AddMark(marks[i]);
  marksTaken_ = plot_.MarksEver();
}

void PlotWindow::CopyPicture() {
  QApplication::clipboard()->setImage(ui_->canvas->Picture());
  plot_.OnTold("the picture of the plot is in the clipboard");
}

void PlotWindow::Export() {
  const QString file =
      QFileDialog::getSaveFileName(this, tr("Export the plot"), tr("plot.png"),
                                   tr("Pictures (*.png *.svg *.pdf);;Numbers (*.csv);;All files (*)"));
  if (!file.isEmpty()) ExportTo(file);
}

void PlotWindow::ExportTo(const QString& file) {
  const auto trouble = ui_->canvas->ExportPicture(file);
  plot_.OnTold(trouble ? BytesOf(*trouble) : "the plot was written: " + BytesOf(file));
}

}  // namespace quarlin
