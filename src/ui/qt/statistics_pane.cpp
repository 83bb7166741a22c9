// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/statistics_pane.h"

#include <QClipboard>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QKeyEvent>
#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>

#include "base/numbers.h"
#include "ui_statistics_pane.h"

namespace quarlin {
namespace {

constexpr std::chrono::milliseconds betweenLooks(500);

// Figures that say how far values are apart: four digits say it.
bool IsSpread(const Figure& figure) {
  return figure.key == "standard_deviation" || figure.key == "repeatability" || figure.perHour;
}

// Without the digits that the subtraction has made up: the values' own have sixteen.
QString DifferenceText(double difference, const Statistics& statistics) {
  const double largest = std::max(std::abs(*statistics.minimum), std::abs(*statistics.maximum));
  const double grid = largest > 0 ? std::pow(10, 14 - std::floor(std::log10(largest))) : 1;
  const double rounded = std::round(difference * grid) / grid;
  return QString::fromStdString(DecimalText(std::isfinite(rounded) ? rounded : difference));
}

// As many decimals as the deviation leaves a meaning to: two of its own digits.
QString ShownValue(const Figure& figure, const Statistics& statistics) {
  if (IsSpread(figure)) return QString::number(*figure.value, 'g', 4);
  const double deviation = statistics.standardDeviation.value_or(0);
  if (figure.key == "peak_to_peak") return DifferenceText(*figure.value, statistics);
  const bool measured = figure.key == "minimum" || figure.key == "maximum" || figure.key == "median";
  if (measured || !(deviation > 0)) return QString::fromStdString(DecimalText(*figure.value));
  const int decimals = static_cast<int>(std::clamp(2 - std::ceil(std::log10(deviation)), 0.0, 12.0));
  return QString::number(*figure.value, 'f', decimals);
}

QString UnitOf(const Figure& figure, const QString& unit) {
  if (!figure.perHour) return unit;
  return unit.isEmpty() ? "1/h" : unit + "/h";
}

QString AxisTitle(const QString& name, const QString& unit) {
  return unit.isEmpty() ? name : name + " (" + unit + ")";
}

// Of points that came evenly; those of a test come nearly so.
double RateOf(const StatisticsPane::Stretch& stretch) {
  if (!stretch.timed || stretch.points.size() < 2) return 1;
  const double duration = stretch.points.back().time - stretch.points.front().time;
  return duration > 0 ? static_cast<double>(stretch.points.size() - 1) / duration : 1;
}

QTableWidgetItem* ItemOf(const QString& text, Qt::Alignment alignment) {
  auto* item = new QTableWidgetItem(text);
  item->setTextAlignment(alignment | Qt::AlignVCenter);
  return item;
}

}  // namespace

struct StatisticsPane::Said {
  Statistics statistics;
  Histogram histogram;
  Spectrum spectrum;
  std::chrono::microseconds cost;
};

StatisticsPane::StatisticsPane(QWidget* parent)
    : QWidget(parent),
      ui_(std::make_unique<Ui::StatisticsPane>()),
      pacer_([this] { Begin(); }, betweenLooks),
      said_(std::make_unique<Said>()) {
  ui_->setupUi(this);
  ui_->statisticsTable->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
  ui_->statisticsTable->horizontalHeader()->setSectionResizeMode(1, QHeaderView::Stretch);
  ui_->statisticsTable->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 4);
  connect(ui_->statisticsCopyButton, &QPushButton::clicked, this, &StatisticsPane::Copy);
  ui_->statisticsTable->installEventFilter(this);
  for (const QComboBox* box : {ui_->statisticsCurveBox, ui_->statisticsRangeBox}) {
    connect(box, &QComboBox::currentIndexChanged, this, &StatisticsPane::RefreshAtOnce);
  }
  connect(this, &StatisticsPane::found, this, &StatisticsPane::Show, Qt::QueuedConnection);
  SetCurves({});
  SetCursors(false);
}

StatisticsPane::~StatisticsPane() = default;

void StatisticsPane::SetCurves(const QStringList& names) {
  QComboBox& box = *ui_->statisticsCurveBox;
  const QString chosen = box.currentText();
  const QSignalBlocker quiet(box);
  box.clear();
  box.addItems(names);
  box.setCurrentIndex(names.isEmpty() ? -1 : std::max(box.findText(chosen), 0));
  box.setVisible(names.size() > 1);
  RefreshAtOnce();
}

void StatisticsPane::SetCursors(bool shown) {
  if (!shown) ui_->statisticsRangeBox->setCurrentIndex(0);
  ui_->statisticsRangeBox->setEnabled(shown);
}

void StatisticsPane::Refresh() {
  if (isWorking_) {
    again_ = std::max(again_, Again::Soon);
  } else if (isVisible()) {
    pacer_.Request();
  }
}

void StatisticsPane::RefreshAtOnce() {
  if (isWorking_) {
    again_ = Again::AtOnce;
  } else if (isVisible()) {
    pacer_.RequestAtOnce();
  }
}

// The keys that copy are the table's own while it has the keyboard, though the window has a use for them,
// too.
bool StatisticsPane::eventFilter(QObject* table, QEvent* event) {
  const bool isKey = event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress;
  if (!isKey || !static_cast<QKeyEvent*>(event)->matches(QKeySequence::Copy)) {
    return QWidget::eventFilter(table, event);
  }
  event->accept();
  if (event->type() == QEvent::KeyPress) Copy();
  return true;
}

void StatisticsPane::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  Refresh();
}

// The points are copied here; what is said of the copy is found out beside the loop.
void StatisticsPane::Begin() {
  if (!isVisible()) return;
  isWorking_ = true;
  stretch_ = Wanted();
  worker_.start([this] {
    QElapsedTimer cost;
    cost.start();
    *said_ = {Describe(stretch_.points),
              HistogramOf(stretch_.points),
              SpectrumOf(stretch_.points, RateOf(stretch_)),
              {}};
    said_->cost = std::chrono::microseconds(cost.nsecsElapsed() / 1000);
    emit found();
  });
}

StatisticsPane::Stretch StatisticsPane::Wanted() {
  const int curve = ui_->statisticsCurveBox->currentIndex();
  return curve < 0 ? Stretch() : OnWanted(curve, ui_->statisticsRangeBox->currentIndex() == 1);
}

void StatisticsPane::Show() {
  const Stretch stretch = std::exchange(stretch_, {});
  ShowFigures(said_->statistics, stretch);
  ShowHistogram(said_->histogram, stretch);
  ShowSpectrum(said_->spectrum, stretch);
  isWorking_ = false;
  pacer_.AddCost(said_->cost);
  const Again again = std::exchange(again_, Again::No);
  if (again == Again::Soon) Refresh();
  if (again == Again::AtOnce) RefreshAtOnce();
}

void StatisticsPane::ShowFigures(const Statistics& statistics, const Stretch& stretch) {
  int rows = 0;
  copy_.clear();
  const auto add = [&](const QString& caption, const QString& shown, const QString& whole,
                       const QString& unit) {
    ShowRow(rows++, caption, shown, unit);
    copy_ += caption + '\t' + whole + '\t' + unit + '\n';
  };
  const QString count = QString::number(statistics.count);
  add(tr("Count"), count, count, {});
  for (const Figure& figure : FiguresOf(statistics, stretch.timed)) {
    QString caption =
        QString::fromLatin1(figure.caption.data(), static_cast<qsizetype>(figure.caption.size()));
    caption[0] = caption[0].toUpper();
    if (figure.value) {
      add(caption, ShownValue(figure, statistics), QString::fromStdString(DecimalText(*figure.value)),
          UnitOf(figure, stretch.unit));
    } else {
      add(caption, "–", {}, {});
    }
  }
  // The room that is left belongs to the charts.
  QTableWidget& table = *ui_->statisticsTable;
  table.setFixedHeight(table.verticalHeader()->length() + 2 * table.frameWidth());
}

// The rows stay, so that what is selected stays, too.
void StatisticsPane::ShowRow(int row, const QString& caption, const QString& value, const QString& unit) {
  QTableWidget& table = *ui_->statisticsTable;
  if (row < table.rowCount()) {
    table.item(row, 0)->setText(caption);
    table.item(row, 1)->setText(value);
    table.item(row, 2)->setText(unit);
    return;
  }
  table.insertRow(row);
  table.setItem(row, 0, ItemOf(caption, Qt::AlignLeft));
  table.setItem(row, 1, ItemOf(value, Qt::AlignRight));
  table.setItem(row, 2, ItemOf(unit, Qt::AlignLeft));
}

void StatisticsPane::ShowHistogram(const Histogram& histogram, const Stretch& stretch) {
  if (histogram.counts.empty()) return ui_->histogramChart->ShowNothing(tr("no values"));
  // Equal values make one class without a width: a bar around them shows it.
  const double width = histogram.width > 0 ? histogram.width : std::max(std::abs(histogram.from), 1.0) * 1e-6;
  const double from = histogram.width > 0 ? histogram.from : histogram.from - width / 2;
  ui_->histogramChart->ShowBars(from, width, histogram.counts, AxisTitle(tr("Value"), stretch.unit));
}

void StatisticsPane::ShowSpectrum(const Spectrum& spectrum, const Stretch& stretch) {
  if (spectrum.amplitudes.empty()) return ui_->spectrumChart->ShowNothing(tr("a spectrum needs 8 values"));
  std::vector<double> frequencies(spectrum.amplitudes.size());
  for (std::size_t i = 0; i < frequencies.size(); ++i) {
    frequencies[i] = static_cast<double>(i) * spectrum.step;
  }
  ui_->spectrumChart->ShowLines(frequencies, spectrum.amplitudes,
                                stretch.timed ? tr("Frequency (Hz)") : tr("Frequency (1 / row)"),
                                stretch.unit.isEmpty() ? tr("Amplitude") : stretch.unit);
}

void StatisticsPane::Copy() {
  QGuiApplication::clipboard()->setText(copy_);
  emit told(tr("the table of figures is in the clipboard"));
}

}  // namespace quarlin
