// SPDX-License-Identifier: GPL-3.0-or-later
#include "config/window_place.h"

#include <algorithm>
#include <cstdint>

namespace quarlin {
namespace {

constexpr int titleBar = 32;  // what the desktop may put above a window

std::int64_t SharedArea(const Place& left, const Place& right) {
  const int width = std::min(left.x + left.width, right.x + right.width) - std::max(left.x, right.x);
  const int height = std::min(left.y + left.height, right.y + right.height) - std::max(left.y, right.y);
  return std::int64_t{std::max(width, 0)} * std::max(height, 0);
}

bool IsInSight(const Place& place, const std::vector<Place>& screens) {
  std::int64_t area = 0;
  for (const Place& screen : screens) area += SharedArea(place, screen);
  return area >= std::int64_t{place.width} * place.height;
}

int Between(int value, int least, int most) {
  return std::max(least, std::min(value, most));
}

// The title bar, of which the window knows nothing, stays on the screen as well.
Place MovedOnto(const Place& screen, const Place& wanted) {
  Place place = wanted;
  place.width = std::min(wanted.width, screen.width);
  place.height = std::min(wanted.height, screen.height - titleBar);
  place.x = Between(wanted.x, screen.x, screen.x + screen.width - place.width);
  place.y = Between(wanted.y, screen.y + titleBar, screen.y + screen.height - place.height);
  return place;
}

}  // namespace

Place BroughtBack(const Place& wanted, const std::vector<Place>& screens) {
  if (screens.empty() || IsInSight(wanted, screens)) return wanted;
  const auto best =
      std::max_element(screens.begin(), screens.end(), [&](const Place& one, const Place& other) {
        return SharedArea(wanted, one) < SharedArea(wanted, other);
      });
  return MovedOnto(*best, wanted);
}

FirstPlace FirstPlaceOn(const Place& screen) {
  constexpr int leastWidth = 1360;
  constexpr int leastHeight = 820;
  constexpr int mostWidth = 1760;
  constexpr int mostHeight = 1120;
  if (screen.width < leastWidth + 100 || screen.height < leastHeight + titleBar) return {screen, true};
  Place place;
  place.width = Between(screen.width * 3 / 4, leastWidth, mostWidth);
  place.height = Between(screen.height * 3 / 4, leastHeight, mostHeight);
  place.x = screen.x + (screen.width - place.width) / 2;
  place.y = screen.y + (screen.height - place.height + titleBar) / 2;
  return {place, false};
}

}  // namespace quarlin
