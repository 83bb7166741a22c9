// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/plot/plot_span.h"

#include <algorithm>
#include <cmath>

namespace quarlin {

namespace {

constexpr double finest =
    1e-13;  // of a span, in shares of its greatest number: near what a double tells apart
constexpr double widest = 1e100;

bool CanBeDrawn(const Span& span) {
  const double greatest = std::max(std::abs(span.from), std::abs(span.to));
  return std::isfinite(span.from) && std::isfinite(span.to) && greatest < widest &&
         span.Size() > std::max(greatest * finest, 1 / widest);
}

}  // namespace

Span Zoomed(Span span, double place, double factor) {
  const Span zoomed{place - (place - span.from) * factor, place + (span.to - place) * factor};
  return CanBeDrawn(zoomed) ? zoomed : span;
}

Span Moved(Span span, double shares) {
  const double way = span.Size() * shares;
  const Span moved{span.from + way, span.to + way};
  return CanBeDrawn(moved) ? moved : span;
}

Span Around(double low, double high, double share) {
  if (!(low <= high)) return {};
  const Span span{low - (high - low) * share, high + (high - low) * share};
  if (CanBeDrawn(span)) return span;
  const double room = low == 0 ? 1 : std::abs(low) * 0.01;
  return {low - room, high + room};
}

}  // namespace quarlin
