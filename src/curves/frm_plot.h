// SPDX-License-Identifier: GPL-3.0-or-later
// The plot window without a window: the numbers of the running test, or numbers that were loaded, with their
// filter. The same filter goes over the live value that the main window shows and scripts read.
#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/hook.h"
#include "base/program_folder.h"
#include "controls/form.h"
#include "curves/curve_controls.h"
#include "curves/curve_rules.h"
#include "curves/filtered_curves.h"
#include "curves/live_curves.h"
#include "curves/loading.h"
#include "exchange/run_record.h"

namespace quarlin {

struct PlotControls : ControlGroup {
  using ControlGroup::ControlGroup;
  Label lblCurveTrouble{*this, "lblCurveTrouble"};    // why the rule makes no curve; empty: it does
  Label lblFilterTrouble{*this, "lblFilterTrouble"};  // the same of the filter
  Label lblPlotNote{*this, "lblPlotNote"};            // what is shown
  Label lblPlotTold{*this, "lblPlotTold"};            // the answer to what the user did last
};

class FrmPlot : public Form {
 public:
  // All outlive it; the folder is where orig.dat and filter.dat go.
  FrmPlot(EventLoop& loop, CurveControls& settings, RunRecord& record, const ProgramFolder& folder);
  ~FrmPlot() override;

  PlotControls controls;
  EventLoop& Loop() { return loop_; }

  // Shows the window, with the numbers of the running test, as long as nothing was loaded.
  void Open();

  // The same, and the user chooses a file with numbers.
  void OpenNumbers();
  Hook<void()> OnOpenNumbers;  // the view's

  // What is shown: the running test, or what was loaded last; `source` says where that came from.
  bool ShowsLive() const { return showsLive_; }
  void ShowLive();
  void ShowLoaded(std::vector<Series> curves, std::string_view source, bool byTime);
  void ShowLoaded(LoadedNumbers numbers);  // and tells what of them was not read
  const FilteredCurves& Shown() const { return showsLive_ ? live_.Set() : loaded_; }
  const std::deque<Mark>& Marks() const;  // none beside loaded numbers
  std::uint64_t MarksEver() const { return showsLive_ ? live_.MarksEver() : 0; }  // of this run
  bool ShownByTime() const { return showsLive_ || loadedByTime_; }  // else the times are numbers of rows
  FilterChoice Filter() const { return ChosenFilter(settings_); }

  // The view's: other curves or another filter in place of those before; points came at the end.
  Hook<void()> OnCurves;
  Hook<void()> OnPoints;
  Hook<void()> OnFilter;  // the settings of the filter, which may not be usable

  // The user wants to see that exchange, or that of the answer at that time, in the traffic: OnLineWanted
  // gets its line. Nothing happens beside loaded numbers.
  void ShowExchange(std::uint64_t number);
  void ShowAnswerAt(double time);
  Hook<void(std::uint64_t displayLine)> OnLineWanted;

  // Writes the first curve to orig.dat and, filtered, to filter.dat.
  void WriteDataFiles();

  // Says it here and in the main window.
  void Tell(std::string_view words);
  Hook<void(std::string_view words)> OnTold;

  // The last live number behind the filter; nothing while there is no filter, or no number yet.
  std::optional<double> Filtered() const;

 private:
  void TakeRules();
  void TakeFilter();
  void ShowFilterBoxes(FilterKind kind);
  void FollowIfWanted();
  void LivePoints();
  void ShowNote();
  void ShowFiltered();

  EventLoop& loop_;
  CurveControls& settings_;
  RunRecord& record_;
  const ProgramFolder& folder_;
  LiveCurves live_;
  FilteredCurves loaded_;
  std::string source_;
  bool showsLive_ = true;
  bool loadedByTime_ = false;
};

}  // namespace quarlin
