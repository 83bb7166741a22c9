// SPDX-License-Identifier: GPL-3.0-or-later
#include "curves/frm_plot.h"

#include <fmt/format.h>

#include <array>
#include <stdexcept>

#include "data/data_files.h"

namespace quarlin {

namespace {

std::vector<double> ValuesOf(const Series& series) {
  std::vector<double> values;
  values.reserve(series.Size());
  for (std::size_t i = 0; i < series.Size(); ++i) values.push_back(series.At(i).value);
  return values;
}

// The boxes of the filter, by FilterField.
std::array<TextBox*, 8> FilterBoxes(CurveControls& settings) {
  return {&settings.txtFilterWidth,  &settings.txtFilterAlpha,  &settings.txtFilterOrder,
          &settings.txtFilterCutoff, &settings.txtFilterRipple, &settings.txtFilterFrequency,
          &settings.txtFilterQ,      &settings.txtFilterRate};
}

}  // namespace

FrmPlot::FrmPlot(EventLoop& loop, CurveControls& settings, RunRecord& record, const ProgramFolder& folder)
    : Form("FrmPlot", "Plot"),
      controls(loop),
      loop_(loop),
      settings_(settings),
      record_(record),
      folder_(folder),
      live_(record) {
  Collection().Add(controls);
  for (ComboBox* box : {&settings.cboCurveSource, &settings.cboCurveRule}) {
    box->Change = [this] { TakeRules(); };
  }
  settings.txtCurveRule.Change = [this] { TakeRules(); };
  settings.cboFilter.Change = [this] { TakeFilter(); };
  for (TextBox* box : FilterBoxes(settings)) box->Change = [this] { TakeFilter(); };
  settings.chkZeroPhase.Click = [this] { TakeFilter(); };
  live_.OnBegan = [this] {
    ShowNote();
    ShowFiltered();
    if (showsLive_) OnCurves();
  };
  live_.OnPoints = [this] { LivePoints(); };
  live_.OnTold = [this](std::string_view words) { Tell(words); };
  OnClose = [this] {
    SetVisible(false);
    FollowIfWanted();
  };
  TakeRules();
  TakeFilter();
}

FrmPlot::~FrmPlot() = default;

void FrmPlot::Open() {
  SetVisible(true);
  FollowIfWanted();
  ShowNote();
}

void FrmPlot::OpenNumbers() {
  Open();
  OnOpenNumbers();
}

void FrmPlot::ShowLive() {
  showsLive_ = true;
  ShowNote();
  OnCurves();
}

void FrmPlot::ShowLoaded(std::vector<Series> curves, std::string_view source, bool byTime) {
  loadedByTime_ = byTime;
  loaded_.Set(std::move(curves));
  source_ = source;
  showsLive_ = false;
  ShowNote();
  OnCurves();
}

void FrmPlot::ShowLoaded(LoadedNumbers numbers) {
  const std::string words = fmt::format("{}: {}", numbers.source, numbers.summary);
  ShowLoaded(std::move(numbers.curves), numbers.source, numbers.byTime);
  Tell(words);
}

const std::deque<Mark>& FrmPlot::Marks() const {
  static const std::deque<Mark> none;
  return showsLive_ ? live_.Marks() : none;
}

void FrmPlot::ShowExchange(std::uint64_t number) {
  if (!showsLive_) return;
  const ExchangeRecord* exchange = record_.Find(number);
  if (exchange != nullptr && exchange->displayLine) {
    OnLineWanted(*exchange->displayLine);
  } else {
    Tell("the record of the run no longer holds that exchange");
  }
}

void FrmPlot::ShowAnswerAt(double time) {
  if (!showsLive_) return;
  if (const ExchangeRecord* exchange = live_.ExchangeAt(time)) ShowExchange(exchange->number);
}

void FrmPlot::WriteDataFiles() {
  if (Shown().Empty()) return Tell("there are no numbers to write");
  const auto& [raw, filtered, filter] = *Shown().Curves().front();
  if (!filter) return Tell("choose a filter first: filter.dat holds what comes out of it");
  const DataFilesOutcome outcome = quarlin::WriteDataFiles(folder_.Path(), ValuesOf(raw), ValuesOf(filtered));
  Tell(outcome.error
           ? fmt::format("{} was not written: {}", outcome.file.filename().string(), outcome.error.message())
           : fmt::format("orig.dat and filter.dat were written to {}", folder_.Path().string()));
}

void FrmPlot::Tell(std::string_view words) {
  controls.lblPlotTold.SetCaption(words);
  OnTold(words);
}

std::optional<double> FrmPlot::Filtered() const {
  return live_.On() && live_.Set().Filtering() ? live_.LastValue() : std::nullopt;
}

void FrmPlot::TakeRules() {
  try {
    live_.SetRules(LiveRules(settings_), settings_.cboCurveSource.ListIndex() == 1);
    controls.lblCurveTrouble.SetCaption("");
  } catch (const std::invalid_argument& error) {
    controls.lblCurveTrouble.SetCaption(error.what());
  }
}

// The curves before stay where the filter cannot be.
void FrmPlot::TakeFilter() {
  FilterChoice choice = ChosenFilter(settings_);
  controls.lblFilterTrouble.SetCaption(choice.objection ? choice.objection->sentence : "");
  controls.lblFilterTrouble.SetVisible(choice.objection.has_value());
  ShowFilterBoxes(choice.settings.kind);
  OnFilter();
  if (choice.objection) return;
  loaded_.SetFilter(choice);
  choice.bothWays = false;  // what comes next is not known yet
  live_.SetFilter(choice);
  FollowIfWanted();
  ShowFiltered();
  OnCurves();
}

// Only what the kind reads.
void FrmPlot::ShowFilterBoxes(FilterKind kind) {
  const auto boxes = FilterBoxes(settings_);
  for (std::size_t i = 0; i < boxes.size(); ++i) {
    boxes[i]->SetVisible(Reads(kind, static_cast<FilterField>(i)));
  }
  settings_.chkZeroPhase.SetVisible(kind != FilterKind::None);
}

void FrmPlot::FollowIfWanted() {
  live_.SetOn(Visible() || live_.Set().Filtering());
}

void FrmPlot::LivePoints() {
  ShowFiltered();
  if (!Visible() || !showsLive_) return;
  ShowNote();
  OnPoints();
}

void FrmPlot::ShowNote() {
  if (!showsLive_) {
    controls.lblPlotNote.SetCaption(source_);
    return;
  }
  const auto& curves = live_.Set().Curves();
  const std::size_t points = curves.empty() ? 0 : curves.front()->raw.Size();
  std::string note = fmt::format("Live: {} points", points);
  if (live_.WithoutNumber() > 0) note += fmt::format(", {} answers without a number", live_.WithoutNumber());
  if (!live_.Marks().empty()) note += fmt::format(", {} errors", live_.Marks().size());
  controls.lblPlotNote.SetCaption(note);
}

void FrmPlot::ShowFiltered() {
  const auto value = Filtered();
  settings_.lblFiltered.SetVisible(value.has_value());
  settings_.lblFiltered.SetCaption(value ? fmt::format("filtered {:.8g}", *value) : "");
}

}  // namespace quarlin
