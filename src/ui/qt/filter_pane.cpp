// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/filter_pane.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "ui/qt/trouble_labels.h"
#include "ui_filter_pane.h"

namespace quarlin {
namespace {

constexpr double leastGain = 1e-6;  // -120 dB: what lies below is drawn there

QString Number(double value) {
  return QString::number(value, 'g', 4);
}

QString Seconds(double seconds) {
  return seconds < 1 ? FilterPane::tr("%1 ms").arg(Number(seconds * 1000))
                     : FilterPane::tr("%1 s").arg(Number(seconds));
}

// The part of the step's answer that is worth a look: as long again behind the settling.
std::size_t LastToDraw(const FilterResponse& response, double rate) {
  if (!response.settlingTime) return response.step.size();
  const double behind = std::max(2 * *response.settlingTime * rate, 10.0);
  return std::min(response.step.size(), response.stepAt + static_cast<std::size_t>(behind) + 1);
}

}  // namespace

struct FilterPane::Field {
  FilterField field;
  QLabel* label;
  QWidget* edit;
};

FilterPane::FilterPane(QWidget* parent) : QWidget(parent), ui_(std::make_unique<Ui::FilterPane>()) {
  ui_->setupUi(this);
  ShowAsTrouble(*this, {ui_->lblFilterTrouble});
  connect(ui_->filterWriteButton, &QPushButton::clicked, this, &FilterPane::writeRequested);
  ShowFields(FilterKind::None);
}

FilterPane::~FilterPane() = default;

void FilterPane::ShowFilter(const FilterSettings& settings, bool bothWays,
                            const std::optional<FilterObjection>& objection) {
  ShowFields(settings.kind);
  PlaceTrouble(objection);
  if (objection) return;
  stale_ = stale_ || settings != settings_ || bothWays != bothWays_;
  settings_ = settings;
  bothWays_ = bothWays;
  if (isVisible()) ShowResponse();
}

void FilterPane::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  ShowResponse();
}

void FilterPane::ShowFields(FilterKind kind) {
  const Field fields[] = {
      {FilterField::Width, ui_->filterWidthLabel, ui_->txtFilterWidth},
      {FilterField::Alpha, ui_->filterAlphaLabel, ui_->txtFilterAlpha},
      {FilterField::Order, ui_->filterOrderLabel, ui_->txtFilterOrder},
      {FilterField::Cutoff, ui_->filterCutoffLabel, ui_->txtFilterCutoff},
      {FilterField::Ripple, ui_->filterRippleLabel, ui_->txtFilterRipple},
      {FilterField::Frequency, ui_->filterFrequencyLabel, ui_->txtFilterFrequency},
      {FilterField::Q, ui_->filterQLabel, ui_->txtFilterQ},
      {FilterField::Rate, ui_->filterRateLabel, ui_->txtFilterRate},
  };
  for (const Field& each : fields) {
    each.label->setVisible(Reads(kind, each.field));
    each.edit->setVisible(Reads(kind, each.field));
  }
  ui_->chkZeroPhase->setVisible(kind != FilterKind::None);
}

// Each field has a row of the grid, and the row below it is free for this.
void FilterPane::PlaceTrouble(const std::optional<FilterObjection>& objection) {
  ui_->lblFilterTrouble->setVisible(objection.has_value());
  if (!objection) return;
  const std::array<QWidget*, 8> edits{ui_->txtFilterWidth,  ui_->txtFilterAlpha,  ui_->txtFilterOrder,
                                      ui_->txtFilterCutoff, ui_->txtFilterRipple, ui_->txtFilterFrequency,
                                      ui_->txtFilterQ,      ui_->txtFilterRate};
  QWidget* edit = edits[static_cast<std::size_t>(objection->field)];
  int row = 0;
  int column = 0;
  int rows = 0;
  int columns = 0;
  ui_->filterFields->getItemPosition(ui_->filterFields->indexOf(edit), &row, &column, &rows, &columns);
  ui_->filterFields->addWidget(ui_->lblFilterTrouble, row + 1, 0, 1, 2);
  KeepTroubleWhole();
}

// In a low window the pane is as high as it must be at least, and a text in several lines asks for one only.
void FilterPane::KeepTroubleWhole() {
  QLabel& trouble = *ui_->lblFilterTrouble;
  trouble.setMinimumHeight(
      trouble.heightForWidth(contentsRect().width() - 2 * layout()->contentsMargins().left()));
}

void FilterPane::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  KeepTroubleWhole();
}

void FilterPane::ShowResponse() {
  if (!stale_) return;
  stale_ = false;
  if (settings_.kind == FilterKind::None) {
    for (QLabel* label : {ui_->filterDelay, ui_->filterSettling, ui_->filterNoise}) label->setText("–");
    ui_->stepChart->ShowNothing(tr("no filter"));
    return ui_->gainChart->ShowNothing(tr("no filter"));
  }
  const FilterResponse response = ResponseOf(settings_, bothWays_);
  ShowFigures(response);
  ShowStep(response);
  ShowGains(response);
}

void FilterPane::ShowFigures(const FilterResponse& response) {
  ui_->filterDelay->setText(
      bothWays_ ? tr("none")
                : tr("%1 (%2 values)").arg(Seconds(response.delay / settings_.rate), Number(response.delay)));
  const double longest = static_cast<double>(response.step.size() - response.stepAt) / settings_.rate;
  ui_->filterSettling->setText(
      response.settlingTime
          ? tr("%1 (%2 values)")
                .arg(Seconds(*response.settlingTime), Number(*response.settlingTime * settings_.rate))
          : tr("more than %1").arg(Seconds(longest)));
  const bool known = response.noiseReduction.has_value();
  ui_->filterNoise->setText(known ? tr("to 1/%1").arg(Number(*response.noiseReduction)) : tr("not known"));
}

void FilterPane::ShowStep(const FilterResponse& response) {
  const std::size_t last = LastToDraw(response, settings_.rate);
  const std::size_t before = std::min(response.stepAt, last - response.stepAt);
  const std::size_t first = bothWays_ ? response.stepAt - before : response.stepAt - 1;
  std::vector<double> times;
  for (std::size_t i = first; i < last; ++i) {
    times.push_back((static_cast<double>(i) - static_cast<double>(response.stepAt)) / settings_.rate);
  }
  ui_->stepChart->ShowLines(times, std::span(response.step).subspan(first, last - first), tr("Time (s)"),
                            tr("Step"));
}

void FilterPane::ShowGains(const FilterResponse& response) {
  if (response.gains.empty()) {
    return ui_->gainChart->ShowNothing(tr("a median has no frequency response"));
  }
  std::vector<double> decibels;
  for (const double gain : response.gains) decibels.push_back(20 * std::log10(std::max(gain, leastGain)));
  ui_->gainChart->ShowLines(response.frequencies, decibels, tr("Frequency (Hz)"), tr("Gain (dB)"),
                            SmallChart::Scale::LogX);
}

}  // namespace quarlin
