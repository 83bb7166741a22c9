// SPDX-License-Identifier: GPL-3.0-or-later
// A page of the documentation on the screen.
#pragma once

#include <QTextBrowser>

namespace quarlin {

class HelpBrowser : public QTextBrowser {
  Q_OBJECT

 public:
  explicit HelpBrowser(QWidget* parent = nullptr);

  // Shows a place of a page, found by HelpIndex, and marks the words wherever all of them stand together.
  void ShowPlace(const QUrl& page, int position, const QStringList& words);

  // Marks the words, and nothing where there are none.
  void Mark(const QStringList& words);

  // By steps of a point; 0 is the desktop's own size.
  void Zoom(int steps);
  int Zoomed() const { return zoomed_; }

 signals:
  // The link leads to something that is neither a page nor an address outside.
  void notThere(const QUrl& url);

 protected:
  QVariant loadResource(int type, const QUrl& url) override;
  void changeEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  void Follow(const QUrl& url);
  void SourceChanged(const QUrl& url);
  void ShowPage(const QUrl& page);
  void PutOnTop(int position);
  void MarkIn(const QTextBlock& block, QList<ExtraSelection>& marks) const;
  void FitPictures();
  QImage Fitted(const QUrl& url) const;

  QUrl page_;                       // that the document holds, without a fragment
  QTextDocument* shown_ = nullptr;  // ours, once there was a page
  QList<QUrl> pictures_;
  QStringList marked_;
  int zoomed_ = 0;
};

}  // namespace quarlin
