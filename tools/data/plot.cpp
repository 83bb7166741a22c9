// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/plot.h"

#include <QtGlobal>

#include "ui/plot/plot_to_file.h"

namespace quarlin::data_tool {

std::string DrawPlot(const std::vector<Series>& curves, bool timed, const std::string& file) {
  // What the toolkit misses of a desktop is of no use here.
  qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
  return PlotToFile(curves, timed ? PlotTimes::Seconds : PlotTimes::Rows, file).value_or("");
}

}  // namespace quarlin::data_tool
