// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/plot/picture_file.h"

#include <QBuffer>
#include <QFileInfo>
#include <QFontInfo>
#include <QPdfWriter>
#include <QSaveFile>
#include <QSvgGenerator>
#include <functional>

namespace quarlin {

namespace {

constexpr int dotsPerInch = 96;

// Dresses the plot for paper, and afterwards as it was.
class OnPaper {
 public:
  OnPaper(PlotSurface& plot, const PlotView& view)
      : plot_(plot), view_(view), colors_(plot.Colors()), focused_(plot.Overlay().focused) {
    plot.Overlay().focused = false;
    plot.ShowView(view);
    plot.SetOnPaper(true);
    plot.SetColors(PlotColors::ForPaper());
  }
  ~OnPaper() {
    plot_.Overlay().focused = focused_;
    plot_.SetOnPaper(false);
    plot_.SetColors(colors_);
    plot_.Draw(view_);
  }
  OnPaper(const OnPaper&) = delete;
  OnPaper& operator=(const OnPaper&) = delete;

 private:
  PlotSurface& plot_;
  const PlotView view_;
  const PlotColors colors_;
  const bool focused_;
};

void PaintInto(PlotSurface& plot, QPaintDevice& device, QSize size) {
  QCPPainter painter(&device);
  painter.setMode(QCPPainter::pmVectorized);
  painter.setMode(QCPPainter::pmNoCaching);
  plot.toPainter(&painter, size.width(), size.height());
}

QByteArray Png(PlotSurface& plot, QSize size) {
  QBuffer file;
  plot.toPixmap(size.width(), size.height(), PlotSurface::paperDensity).toImage().save(&file, "PNG");
  return file.data();
}

// Where the picture is opened, the window's font may be unknown.
QByteArray WithFontForAll(QByteArray svg, const QFont& font) {
  const QString attribute = "font-family=\"%1\"";
  return svg.replace(attribute.arg(font.family()).toUtf8(),
                     attribute.arg("'" + QFontInfo(font).family() + "', sans-serif").toUtf8());
}

QByteArray Svg(PlotSurface& plot, QSize size) {
  QBuffer file;
  QSvgGenerator generator;
  generator.setOutputDevice(&file);
  generator.setSize(size);
  generator.setViewBox(QRect(QPoint(0, 0), size));
  generator.setResolution(dotsPerInch);
  generator.setTitle(plot.windowTitle());
  generator.setDescription({});
  PaintInto(plot, generator, size);
  return WithFontForAll(file.data(), plot.font());
}

QByteArray Pdf(PlotSurface& plot, QSize size) {
  QBuffer file;
  file.open(QIODevice::WriteOnly);
  QPdfWriter writer(&file);
  writer.setResolution(dotsPerInch);
  writer.setPageMargins({0, 0, 0, 0});
  writer.setPageSize(QPageSize(QSizeF(size) * 72 / dotsPerInch, QPageSize::Point));
  PaintInto(plot, writer, size);
  return file.data();
}

struct Kind {
  const char* ending;
  QByteArray (*make)(PlotSurface&, QSize);
};
constexpr Kind kinds[] = {{"png", Png}, {"svg", Svg}, {"pdf", Pdf}};

const Kind* KindOf(const QString& path) {
  const QString ending = QFileInfo(path).suffix().toLower();
  for (const Kind& kind : kinds)
    if (ending == kind.ending) return &kind;
  return nullptr;
}

}  // namespace

std::optional<QString> SavePicture(PlotSurface& plot, const PlotView& view, QSize size, const QString& path) {
  const Kind* kind = KindOf(path);
  if (!kind) return QObject::tr("A picture's name ends in .png, .svg or .pdf, a table's in .csv");
  QSaveFile file(path);
  file.setDirectWriteFallback(true);
  if (!file.open(QIODevice::WriteOnly)) return file.errorString();
  {
    const OnPaper paper(plot, view);
    file.write(kind->make(plot, size));
  }
  if (!file.commit()) return file.errorString();
  return {};
}

QImage PictureOf(PlotSurface& plot, const PlotView& view, QSize size) {
  const OnPaper paper(plot, view);
  return plot.toPixmap(size.width(), size.height(), PlotSurface::paperDensity).toImage();
}

}  // namespace quarlin
