// SPDX-License-Identifier: GPL-3.0-or-later
// The plot window on the screen: which numbers, the curves, and beside them what is said of them.
#pragma once

#include <QString>
#include <cstdint>
#include <memory>

#include "curves/frm_plot.h"
#include "ui/qt/form_window.h"
#include "ui/qt/load_dialog.h"
#include "ui/qt/statistics_pane.h"

namespace quarlin {

namespace Ui {
class PlotWindow;
}

class FilterPane;

class PlotWindow : public FormWindow {
  Q_OBJECT

 public:
  explicit PlotWindow(Form& form);
  ~PlotWindow() override;

 private:
  void FillTools();
  void WireSource();
  void WireCanvas();
  void WirePanes();
  StatisticsPane::Stretch Stretch(int curve, bool betweenCursors) const;
  void ShowCurves();
  void ShowTitles();
  void TakePoints();
  void TakeMarks();
  void CopyPicture();
  void Export();
  void ExportTo(const QString& file);
  std::optional<QString> Written(const QString& file);

  FrmPlot& plot_;
  LoadDialog load_;
  std::unique_ptr<Ui::PlotWindow> ui_;
  StatisticsPane* statistics_;
  FilterPane* filter_;
  std::uint64_t marksTaken_ = 0;
  QString axisTitle_;
};

}  // namespace quarlin
