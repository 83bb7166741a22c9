// SPDX-License-Identifier: GPL-3.0-or-later
// Filters against other ways to compute them, what is objected to, and what is said of them.

#include "data/filter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

#include "data/filter_response.h"
#include "data/series.h"

namespace quarlin {
namespace {

using enum FilterKind;

FilterSettings MovingAverageOf(int width) {
  return {.kind = MovingAverage, .width = width};
}
FilterSettings MedianOf(int width) {
  return {.kind = Median, .width = width};
}
FilterSettings ExponentialOf(double alpha) {
  return {.kind = Exponential, .alpha = alpha};
}
FilterSettings ButterworthOf(int order, double cutoff, double rate) {
  return {.kind = Butterworth, .order = order, .cutoff = cutoff, .rate = rate};
}
FilterSettings ChebyshevOf(int order, double cutoff, double rate, double ripple) {
  return {.kind = Chebyshev, .order = order, .cutoff = cutoff, .ripple = ripple, .rate = rate};
}
FilterSettings NotchOf(double frequency, double q, double rate) {
  return {.kind = Notch, .frequency = frequency, .q = q, .rate = rate};
}

// A step with something on it, as in filter_reference.py.
std::vector<double> StepWithNoise(std::int64_t count) {
  std::vector<double> values;
  for (std::int64_t i = 0; i < count; ++i) {
    const std::int64_t noise = (i * 7919 + (i * i) % 613 * 31) % 1009;
    values.push_back((i >= 100 ? 1000 : 0) + static_cast<double>(noise) / 16);
  }
  return values;
}

constexpr std::size_t places[] = {0, 1, 99, 100, 101, 150, 1000, 5000, 20000};

struct Reference {
  FilterSettings settings;
  double answers[std::size(places)];
};

TEST(Filter, AgreesWithTheDifferenceEquationIn80Digits) {
  // Printed by filter_reference.py.
  const Reference reference[] = {
      {ButterworthOf(8, 0.01, 100),
       {0, 5.2517419301026669e-27, 1.7141026838572597e-13, 1.8559483344509358e-13, 2.0079754162378586e-13,
        4.6689345848849437e-12, 0.00020170371552741265, 30.333507475908679, 971.73132520243130}},
      {ButterworthOf(3, 20, 100),
       {0, 5.4623212337202064, 41.305780792499195, 148.14598376978957, 497.61512779824707, 1024.8503022939417,
        1039.9555043846633, 1044.6881116561740, 1029.4593928856356}},
      {ChebyshevOf(8, 0.01, 100, 0.5),
       {0, 1.2457289279267556e-28, 4.1750283275756153e-15, 4.5217555118944196e-15, 4.8934839490499716e-15,
        1.1529440459350429e-13, 0.0000061356790297812973, 2.6606996986826279, 1092.7849820517714}},
      {ChebyshevOf(5, 49, 100, 3),
       {0, 45.664732328650424, 31.626704919020232, 872.98587198967400, 1173.8708048971641, 1029.8062816795651,
        1019.9038070405666, 1017.4496775225068, 1025.8767712355560}},
      {ChebyshevOf(1, 1, 100, 0.1),
       {0, 9.4660418568936209, 37.174155056212500, 209.68051687843971, 495.67048865037507, 1029.3760014940033,
        1032.0429905382403, 1036.7872434517567, 1027.0825371060093}},
      {NotchOf(0.05, 30, 100),
       {0, 55.434597456039122, 37.895569795536022, 1045.9639869435204, 1047.3545530862142, 1027.4968257655199,
        1016.5603296463058, 1021.5653504573852, 1042.5801077119281}},
      {ExponentialOf(0.0001),
       {0, 0.0055437500000000003, 0.34553062652225257, 0.45013357345960035, 0.55487606010225439,
        5.5854969594324402, 89.251897827089978, 399.97323307258433, 890.59080552431216}},
  };
  constexpr double range = 1063;
  const std::vector<double> values = StepWithNoise(20001);
  std::vector<double> high = values;
  for (double& value : high) value += 1e9;
  for (const Reference& row : reference) {
    const std::vector<double> answers = Filtered(row.settings, values, false);
    const std::vector<double> highAnswers = Filtered(row.settings, high, false);
    for (std::size_t i = 0; i < std::size(places); ++i) {
      EXPECT_NEAR(answers[places[i]], row.answers[i], 1e-10 * range) << &row - reference << ":" << places[i];
      EXPECT_NEAR(highAnswers[places[i]] - 1e9, row.answers[i], 2e-7) << &row - reference << ":" << places[i];
    }
  }
}

// What stands in the window of `width` values at `end`, the first one standing before itself.
std::vector<double> Window(const std::vector<double>& values, std::size_t end, std::size_t width) {
  std::vector<double> window(width - std::min(width, end + 1), values.front());
  const auto last = values.begin() + static_cast<std::ptrdiff_t>(end + 1);
  window.insert(window.end(), last - static_cast<std::ptrdiff_t>(width - window.size()), last);
  return window;
}

TEST(Filter, WindowsAgreeWithSortingAndAddingUp) {
  std::vector<double> values = StepWithNoise(120'000);
  for (double& value : values) value = 1e9 + std::round(value / 4);  // with duplicates
  for (const int width : {1, 3, 5, 101, 1001, 100'001}) {
    const std::vector<double> medians = Filtered(MedianOf(width), values, false);
    const std::vector<double> means = Filtered(MovingAverageOf(width), values, false);
    const std::size_t stride = width < 1000 ? 97 : 7919;
    for (std::size_t i = 0; i < values.size(); i += stride) {
      std::vector<double> window = Window(values, i, static_cast<std::size_t>(width));
      const long double sum = std::accumulate(window.begin(), window.end(), 0.0L);
      ASSERT_EQ(means[i], static_cast<double>(sum / width)) << width << ":" << i;
      std::nth_element(window.begin(), window.begin() + width / 2, window.end());
      ASSERT_EQ(medians[i], window[static_cast<std::size_t>(width / 2)]) << width << ":" << i;
    }
  }
}

TEST(Filter, AGapPassesAndLeavesTheStateAlone) {
  const std::vector<double> values = StepWithNoise(400);
  std::vector<double> withGaps;
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (i % 3 == 0) withGaps.push_back(i % 2 == 0 ? gapValue : std::numeric_limits<double>::infinity());
    withGaps.push_back(values[i]);
  }
  for (const FilterSettings& settings :
       {MovingAverageOf(7), MedianOf(7), ExponentialOf(0.2), ButterworthOf(5, 3, 100), NotchOf(20, 2, 100)}) {
    for (const bool zeroPhase : {false, true}) {
      std::vector<double> answers = Filtered(settings, withGaps, zeroPhase);
      EXPECT_TRUE(std::isnan(answers[0]));
      std::erase_if(answers, [](double value) { return !std::isfinite(value); });
      EXPECT_EQ(answers, Filtered(settings, values, zeroPhase));
    }
  }
}

// Devices write such numbers while they cannot measure.
TEST(Filter, RecoversFromAHugeValue) {
  for (const FilterSettings& settings : {MovingAverageOf(5), MedianOf(7), ExponentialOf(0.1),
                                         ButterworthOf(4, 10, 100), NotchOf(20, 1, 100)}) {
    for (const std::size_t before : {0U, 50U}) {
      std::vector<double> values(3000, 1000.1);
      std::fill_n(values.begin() + static_cast<std::ptrdiff_t>(before), 3, 9.9e37);
      values[before + 1] = 9.91e37;
      EXPECT_NEAR(Filtered(settings, values, false).back(), 1000.1, 1e-9) << static_cast<int>(settings.kind);
    }
  }
}

struct ObjectionCase {
  FilterSettings settings;
  FilterField field;
  std::string sentence;
};

TEST(Filter, ObjectsToWhatMakesNone) {
  const double nan = gapValue;
  const ObjectionCase cases[] = {
      {MovingAverageOf(0), FilterField::Width, "The width must be from 1 to 100001 values; it is 0."},
      {MovingAverageOf(100'002), FilterField::Width,
       "The width must be from 1 to 100001 values; it is 100002."},
      {MedianOf(4), FilterField::Width,
       "The width of a median must be odd, so that one value is in the middle; it is 4."},
      {ExponentialOf(0), FilterField::Alpha, "Alpha must be above 0 and at most 1; it is 0."},
      {ExponentialOf(nan), FilterField::Alpha, "Alpha must be above 0 and at most 1; it is no number."},
      {ButterworthOf(9, 1, 100), FilterField::Order, "The order must be from 1 to 8; it is 9."},
      {ButterworthOf(0, 1, 100), FilterField::Order, "The order must be from 1 to 8; it is 0."},
      {ButterworthOf(2, 0, 100), FilterField::Cutoff, "The cut-off must be above 0 Hz; it is 0."},
      {ButterworthOf(2, -1, 100), FilterField::Cutoff, "The cut-off must be above 0 Hz; it is -1."},
      {ButterworthOf(2, nan, 100), FilterField::Cutoff, "The cut-off must be above 0 Hz; it is no number."},
      {ButterworthOf(2, 50, 100), FilterField::Cutoff,
       "The cut-off must be below half the rate, 50 Hz; it is 50."},
      {ButterworthOf(2, 1, 0), FilterField::Rate, "The rate must be above 0 Hz; it is 0."},
      {ChebyshevOf(2, 1, 100, 0), FilterField::Ripple,
       "The ripple must be above 0 and at most 20 dB; it is 0."},
      {NotchOf(60, 10, 100), FilterField::Frequency,
       "The frequency must be below half the rate, 50 Hz; it is 60."},
      {NotchOf(20, 0, 100), FilterField::Q, "Q must be above 0; it is 0."},
  };
  for (const ObjectionCase& row : cases) {
    const auto objection = ObjectionTo(row.settings);
    ASSERT_TRUE(objection) << row.sentence;
    EXPECT_EQ(objection->sentence, row.sentence);
    EXPECT_EQ(objection->field, row.field) << row.sentence;
  }
  for (const FilterSettings& settings :
       {MovingAverageOf(4), MedianOf(100'001), ExponentialOf(1), FilterSettings{},
        ChebyshevOf(8, 49.999, 100, 20), NotchOf(1e-3, 1e6, 100)}) {
    EXPECT_FALSE(ObjectionTo(settings));
  }
}

struct ResponseCase {
  FilterSettings settings;
  bool zeroPhase;
  double delay;
  double settlingTime;
  double noiseReduction;
  double tolerance;  // of the noise reduction
};

TEST(FilterResponse, SaysWhatTheTextbookSays) {
  const ResponseCase cases[] = {
      {{}, false, 0, 0, 1, 1e-12},
      {MovingAverageOf(10), false, 4.5, 0.09, std::sqrt(10.0), 1e-9},
      {MovingAverageOf(10), true, 0, 0.09, std::sqrt(3000 / 201.0), 1e-9},
      {MedianOf(9), false, 4, 0.04, 2.45, 0.1},  // variance 0.1661 by the tables of order statistics
      {ExponentialOf(0.1), false, 9, 0.65, std::sqrt(19.0), 1e-6},
      // At a quarter of the rate: the mean of two values, and of the last and the last but one.
      {ButterworthOf(1, 25, 100), false, 0.5, 0.01, std::sqrt(2.0), 1e-9},
      {NotchOf(25, 0.5, 100), false, 1, 0.02, std::sqrt(2.0), 1e-9},
  };
  for (const ResponseCase& row : cases) {
    const FilterResponse response = ResponseOf(row.settings, row.zeroPhase);
    const auto which = &row - cases;
    EXPECT_NEAR(response.delay, row.delay, 1e-9) << which;
    EXPECT_NEAR(response.settlingTime.value_or(-1), row.settlingTime, 1e-9) << which;
    EXPECT_NEAR(response.noiseReduction.value_or(-1), row.noiseReduction, row.tolerance) << which;
    EXPECT_LT(response.step[response.stepAt - 1], response.step.back()) << which;
  }
  EXPECT_TRUE(ResponseOf(MedianOf(9), false).gains.empty());
  EXPECT_FALSE(ResponseOf(ButterworthOf(8, 1e-6, 100), false).settlingTime);
}

// The gain in dB at the cut-off of each order: Butterworth -3.01, Chebyshev as much below its highest gain as
// its ripple is; highest is 1 for odd orders, for even ones the ripple lies above 1.
TEST(FilterResponse, TheCutOffIsWhereItIsSaidToBe) {
  for (int order = 1; order <= 8; ++order) {
    const auto gainAtCutoff = [&](FilterSettings settings, bool zeroPhase) {
      settings.cutoff = 20;
      const FilterResponse response = ResponseOf(settings, zeroPhase);
      const auto above = std::lower_bound(response.frequencies.begin(), response.frequencies.end(), 20);
      const auto i = static_cast<std::size_t>(above - response.frequencies.begin());
      const double part = (20 - response.frequencies[i - 1]) / (*above - response.frequencies[i - 1]);
      return 20 * std::log10(std::lerp(response.gains[i - 1], response.gains[i], part));
    };
    EXPECT_NEAR(gainAtCutoff(ButterworthOf(order, 20, 100), false), -3.01, 0.02) << order;
    EXPECT_NEAR(gainAtCutoff(ButterworthOf(order, 20, 100), true), -6.02, 0.04) << order;
    EXPECT_NEAR(gainAtCutoff(ChebyshevOf(order, 20, 100, 2), false), order % 2 == 1 ? -2 : 0, 0.1) << order;
  }
}

}  // namespace
}  // namespace quarlin
