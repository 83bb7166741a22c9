// SPDX-License-Identifier: GPL-3.0-or-later
// The filter of the curves: its kind and fields, and what somebody who tunes an instrument wants to know of
// it. The fields are named like the controls of the plot's form, which read and check them.
#pragma once

#include <QLabel>
#include <QString>
#include <QWidget>
#include <memory>
#include <optional>

#include "data/filter.h"
#include "data/filter_response.h"

namespace quarlin {

namespace Ui {
class FilterPane;
}

class FilterPane : public QWidget {
  Q_OBJECT

 public:
  explicit FilterPane(QWidget* parent = nullptr);
  ~FilterPane() override;

  // Shows the fields that the kind reads, and of the filter its figures, its step and its frequency response.
  // With an objection the label `lblFilterTrouble` stands below the field that is meant, and the rest stays
  // as it was before.
  void ShowFilter(const FilterSettings& settings, bool bothWays,
                  const std::optional<FilterObjection>& objection);

 signals:
  void writeRequested();  // of orig.dat and filter.dat

 protected:
  void showEvent(QShowEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  struct Field;

  void ShowFields(FilterKind kind);
  void PlaceTrouble(const std::optional<FilterObjection>& objection);
  void KeepTroubleWhole();
  void ShowResponse();
  void ShowFigures(const FilterResponse& response);
  void ShowStep(const FilterResponse& response);
  void ShowGains(const FilterResponse& response);

  std::unique_ptr<Ui::FilterPane> ui_;
  FilterSettings settings_;  // the last ones without an objection
  bool bothWays_ = false;
  bool stale_ = true;  // they are not what is drawn
};

}  // namespace quarlin
