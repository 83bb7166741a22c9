// SPDX-License-Identifier: GPL-3.0-or-later
// What is said of a curve: its figures as a table, its histogram and its spectrum.
#pragma once

#include <QString>
#include <QStringList>
#include <QThreadPool>
#include <QWidget>
#include <memory>
#include <vector>

#include "base/hook.h"
#include "data/figures.h"
#include "data/statistics.h"
#include "ui/qt/frame_pacer.h"

namespace quarlin {

namespace Ui {
class StatisticsPane;
}

class StatisticsPane : public QWidget {
  Q_OBJECT

 public:
  explicit StatisticsPane(QWidget* parent = nullptr);
  ~StatisticsPane() override;

  // A part of a curve.
  struct Stretch {
    std::vector<Point> points;
    QString unit;
    bool timed = false;  // the points' times are seconds, not numbers of rows
  };

  // Hands over the points of the curve of that number: all of them, or those between the cursors. Asked only
  // while the pane is seen, at most twice a second, and less often where there are many points. Never asked
  // within a call of this class.
  Hook<Stretch(int curve, bool betweenCursors)> OnWanted;

  // The curves to choose from, in the order of their numbers. The choice stays where its name stays.
  void SetCurves(const QStringList& names);

  // Without cursors only the whole curve can be chosen.
  void SetCursors(bool shown);

  // The points or the cursors have changed: what is shown follows soon.
  void Refresh();

 signals:
  void told(const QString& message);  // an answer to what the user did
  void found();                       // its own: what was to be found out has been

 protected:
  bool eventFilter(QObject* table, QEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  struct Said;

  void RefreshAtOnce();
  void Begin();
  Stretch Wanted();
  void Show();
  void ShowFigures(const Statistics& statistics, const Stretch& stretch);
  void ShowHistogram(const Histogram& histogram, const Stretch& stretch);
  void ShowSpectrum(const Spectrum& spectrum, const Stretch& stretch);
  void ShowRow(int row, const QString& caption, const QString& value, const QString& unit);
  void Copy();

  std::unique_ptr<Ui::StatisticsPane> ui_;
  QString copy_;  // the table with all digits, tabs between the columns
  FramePacer pacer_;
  bool isWorking_ = false;
  enum class Again { No, Soon, AtOnce } again_ = Again::No;  // asked for while it worked

  Stretch stretch_;  // both are the worker's while it works
  std::unique_ptr<Said> said_;

  // Of four million points the figures take half a second, in which the answers of a running test must not
  // wait. Ends first: what works there knows this object.
  QThreadPool worker_;
};

}  // namespace quarlin
