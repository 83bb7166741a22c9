// The plot window on the screen: which numbers, the curves, and beside them what is said of them.
#pragma once

#include <QString>
#include <cstdint>
#include <memory>

#include "curves/frm_plot.h"
#include "ui/qt/form_window.h"
#include "ui/qt/load_dialog.h"

namespace quarlin {

namespace Ui {
class PlotWindow;
}

class PlotWindow : public FormWindow {
  Q_OBJECT

 public:
  explicit PlotWindow(Form& form);
  ~PlotWindow() override;

 private:
  void FillTools();
  void WireSource();
  void WireCanvas();
  void ShowCurves();
  void ShowTitles();
  void TakePoints();
  void TakeMarks();
  void CopyPicture();
  void Export();
  void ExportTo(const QString& file);

  FrmPlot& plot_;
  LoadDialog load_;
  std::unique_ptr<Ui::PlotWindow> ui_;
  std::uint64_t marksTaken_ = 0;
  QString axisTitle_;
};

}  // namespace quarlin
