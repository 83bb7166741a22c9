// SPDX-License-Identifier: GPL-3.0-or-later
// A plot without a window, for the command line.
#pragma once

#include <optional>
#include <span>
#include <string>

#include "data/series.h"
#include "ui/plot/plot_span.h"

namespace quarlin {

struct PictureSettings {
  std::string title;  // above the plot; empty: none
  int width = 900;    // pixels of the usual density, 200 to 8000
  int height = 480;   // 150 to 8000
};

// Draws `curves` into a file whose name ends in .svg, .png or .pdf; all of it or nothing. Where there are
// several, the first one is the raw one: drawn pale, behind the others. Needs no display, and no application:
// one is made where there is none. Returns why it could not, as a line for the user.
std::optional<std::string> PlotToFile(std::span<const Series> curves, PlotTimes times,
                                      const std::string& file, const PictureSettings& settings = {});

}  // namespace quarlin
