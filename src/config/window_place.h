// SPDX-License-Identifier: GPL-3.0-or-later
// Where a window stands, and where it is to stand so that it can be seen and used. In the desktop's own
// units, which a scale factor makes larger than pixels.
#pragma once

#include <vector>

namespace quarlin {

struct Place {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;

  bool operator==(const Place&) const = default;
};

// `wanted` where all of it is in sight; else moved onto the screen that shows most of it, the first one where
// none does, and made as small as that screen. `screens` are the parts that windows may use; without one the
// place stays.
Place BroughtBack(const Place& wanted, const std::vector<Place>& screens);

struct FirstPlace {
  Place place;
  bool maximised = false;
};

// Where a window stands at its first start: in the middle, and larger on a larger screen; on a screen that
// has little more room than the window needs, all over it.
FirstPlace FirstPlaceOn(const Place& screen);

}  // namespace quarlin
