// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/plot/plot_to_file.h"

#include <QApplication>
#include <memory>
#include <vector>

#include "ui/plot/picture_file.h"
#include "ui/plot/viewport.h"

namespace quarlin {

namespace {

// One for a program that has none, without a display.
class ApplicationForPictures {
 public:
  ApplicationForPictures() {
    if (QCoreApplication::instance()) return;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    application_ = std::make_unique<QApplication>(count_, words_);
  }

 private:
  char name_[8] = "quarlin";
  char* words_[2] = {name_, nullptr};
  int count_ = 1;
  std::unique_ptr<QApplication> application_;
};

QString ValueTitle(const Series& series) {
  const QString unit = QString::fromStdString(series.unit);
  const QString name = QObject::tr("Value");
  return unit.isEmpty() ? name : name + " (" + unit + ")";
}

// Unnamed curves are told apart by what they are.
std::vector<CurveLook> LooksOf(std::span<const Series> curves) {
  std::vector<CurveLook> looks;
  const bool several = curves.size() > 1;
  for (const Series& series : curves) {
    const bool raw = several && looks.empty();
    QString title = QString::fromStdString(series.name);
    if (title.isEmpty() && several) title = raw ? QObject::tr("raw") : QObject::tr("filtered");
    looks.push_back({&series, title, false, raw, true});
  }
  return looks;
}

bool IsWithin(int size, int least) {
  return least <= size && size <= 8000;
}

}  // namespace

std::optional<std::string> PlotToFile(std::span<const Series> curves, PlotTimes times,
                                      const std::string& file, const PictureSettings& settings) {
  if (!IsWithin(settings.width, 200) || !IsWithin(settings.height, 150))
    return "a picture is 200 to 8000 pixels wide and 150 to 8000 high";
  const ApplicationForPictures application;
  CurveSet set;
  set.Set(LooksOf(curves));
  const MarkList noMarks;
  Viewport viewport(set);
  viewport.Fit();
  PlotSurface surface(set, noMarks, nullptr);
  surface.SetTitle(QString::fromStdString(settings.title));
  surface.SetTimes(times);
  surface.SetAxisTitles(times == PlotTimes::Rows ? QObject::tr("Row") : QObject::tr("Time"),
                        curves.empty() ? QString() : ValueTitle(curves.front()), {});
  surface.ReplaceCurves();
  surface.Draw(viewport.View());
  const QSize size(settings.width, settings.height);
  const auto wrong = SavePicture(surface, viewport.View(), size, QString::fromStdString(file));
  if (!wrong) return {};
  return file + ": " + wrong->toStdString();
}

}  // namespace quarlin
