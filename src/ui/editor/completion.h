// SPDX-License-Identifier: GPL-3.0-or-later
// Offers what may stand where the cursor is: behind a dot, after three letters, or when it is asked for.
#pragma once

#include <QObject>
#include <QString>
#include <functional>
#include <string_view>
#include <vector>

#include "script/edit/vocabulary.h"

namespace quarlin {

class ScriptView;

class Completion : public QObject {
  Q_OBJECT

 public:
  // The view and the vocabulary outlive it.
  Completion(ScriptView& view, const Vocabulary& words);

  void SetLanguage(std::string_view language) { language_ = language; }

  // What Ctrl+Space does: a list of all that fits.
  void Offer();

 signals:
  void helpChanged(const QString& help);  // of the suggestion that is selected; empty behind the list

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Typed(int character);
  bool OffersMoreThan(std::string_view word) const;
  std::string Selected() const;
  void Show(bool asked);
  void ShowCall();
  std::string Before() const;
  QString Word() const;

  ScriptView& view_;
  const Vocabulary& words_;
  std::string language_ = "VBScript";
  std::vector<Suggestion> offered_;
};

}  // namespace quarlin
