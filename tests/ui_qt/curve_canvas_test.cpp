// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/plot/curve_canvas.h"

#include <qcustomplot.h>

#include <QFile>
#include <QLabel>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QXmlStreamReader>
#include <cmath>

#include "ui/plot/plot_to_file.h"

namespace quarlin {

// A canvas on the (virtual) screen with a sine of 1000 points over 100 s.
struct Rig {
  Rig() {
    for (int i = 0; i <= 1000; ++i) series.Append({i * 0.1, 10 * std::sin(i * 0.01)});
    canvas.resize(800, 400);
    canvas.SetCurves({{&series, "Weight"}});
    canvas.SetAxisTitles("Time", "Weight (kg)");
    canvas.show();
    canvas.DrawNow();
  }

  QCustomPlot& Plot() { return *canvas.findChild<QCustomPlot*>(); }
  QPoint At(double time, double value) {
    return {qRound(Plot().xAxis->coordToPixel(time)), qRound(Plot().yAxis->coordToPixel(value))};
  }
  QPoint Middle() { return Plot().axisRect()->center(); }

  void Wheel(QPoint at, int notches, Qt::KeyboardModifiers modifiers = {}) {
    QWheelEvent event(at, canvas.mapToGlobal(at), {}, {0, 120 * notches}, {}, modifiers, {}, false);
    QCoreApplication::sendEvent(&canvas, &event);
    canvas.DrawNow();
  }
  void Drag(QPoint from, QPoint to, Qt::KeyboardModifiers modifiers = {}) {
    QTest::mousePress(&canvas, Qt::LeftButton, modifiers, from);
    QTest::mouseMove(&canvas, (from + to) / 2);
    QTest::mouseMove(&canvas, to);
    QTest::mouseRelease(&canvas, Qt::LeftButton, modifiers, to);
    canvas.DrawNow();
  }
  void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(&canvas, key, modifiers);
    canvas.DrawNow();
  }
  void Come(double time, double value) {
    series.Append({time, value});
    canvas.Refresh();
    canvas.DrawNow();
  }

  Series series{"Weight"};
  CurveCanvas canvas;
};

bool Near(double a, double b, double tolerance) {
  return std::abs(a - b) <= tolerance;
}

QString Text(const QString& file) {
  QFile opened(file);
  return opened.open(QIODevice::ReadOnly) ? QString::fromUtf8(opened.readAll()) : QString();
}

// The share of the picture's height at which the topmost pixel of a colour stands in some columns; 1: none.
double TopOf(const QImage& image, QRgb color, int from, int to) {
  for (int y = 0; y < image.height(); ++y)
    for (int x = from; x < to; ++x)
      if (image.pixel(x, y) == color) return double(y) / image.height();
  return 1;
}

class CurveCanvasTest : public QObject {
  Q_OBJECT

 private slots:
  void theWheelZoomsAtThePointer_data() {
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<bool>("overNumbers");  // of the values
    QTest::addColumn<bool>("time");
    QTest::addColumn<bool>("values");
    QTest::newRow("both") << Qt::KeyboardModifiers() << false << true << true;
    QTest::newRow("Ctrl: time") << Qt::KeyboardModifiers(Qt::ControlModifier) << false << true << false;
    QTest::newRow("Shift: values") << Qt::KeyboardModifiers(Qt::ShiftModifier) << false << false << true;
    QTest::newRow("over an axis") << Qt::KeyboardModifiers() << true << false << true;
  }
  void theWheelZoomsAtThePointer() {
    QFETCH(Qt::KeyboardModifiers, modifiers);
    QFETCH(bool, overNumbers);
    QFETCH(bool, time);
    QFETCH(bool, values);
    Rig rig;
    const PlotView before = rig.canvas.View();
    const QPoint at = overNumbers ? QPoint(5, rig.Middle().y()) : rig.At(25, 5);
    const double valueThere = rig.Plot().yAxis->pixelToCoord(at.y());
    rig.Wheel(at, 2, modifiers);
    const PlotView after = rig.canvas.View();
    QCOMPARE(after.time.Size() < before.time.Size() * 0.7, time);
    QCOMPARE(after.values.Size() < before.values.Size() * 0.7, values);
    if (!overNumbers) QVERIFY(Near(rig.Plot().xAxis->pixelToCoord(at.x()), 25, 0.5));
    QVERIFY(Near(rig.Plot().yAxis->pixelToCoord(at.y()), valueThere, 0.1));
    rig.canvas.Back();
    QCOMPARE(rig.canvas.View(), before);
  }

  void aBoxIsZoomedToAndLeftAgain() {
    Rig rig;
    const PlotView before = rig.canvas.View();
    rig.Drag(rig.At(20, 8), rig.At(40, -2), Qt::ShiftModifier);
    const PlotView box = rig.canvas.View();
    QVERIFY(Near(box.time.from, 20, 0.3) && Near(box.time.to, 40, 0.3));
    QVERIFY(Near(box.values.from, -2, 0.2) && Near(box.values.to, 8, 0.2));
    rig.Key(Qt::Key_Right);
    QVERIFY(Near(rig.canvas.View().time.from, 22, 0.3));
    rig.Key(Qt::Key_Backspace);
    QCOMPARE(rig.canvas.View(), box);
    rig.Key(Qt::Key_Backspace);
    QCOMPARE(rig.canvas.View(), before);
  }

  // What goes too far must not leave an axis without a size, or never come back.
  void zoomingEndsWhereNumbersDo() {
    Rig rig;
    for (int i = 0; i < 500; ++i) rig.canvas.ZoomBy(4);
    QVERIFY(rig.canvas.View().time.Size() > 0);
    for (int i = 0; i < 1000; ++i) rig.canvas.ZoomBy(0.25);
    rig.canvas.DrawNow();
    QVERIFY(std::isfinite(rig.canvas.View().time.to));
    rig.Key(Qt::Key_Home);
    QVERIFY(Near(rig.canvas.View().time.to, 100, 2));
  }

  void followsWhatComesUntilItIsMovedBack() {
    Rig rig;
    QSignalSpy changes(&rig.canvas, &CurveCanvas::FollowChanged);
    rig.Come(120, 50);
    QVERIFY(rig.canvas.View().time.Holds(120) && rig.canvas.View().values.Holds(50));
    rig.Wheel(QPoint(rig.At(119, 0).x(), 5000), 5);  // below the numbers of time, near the right end
    const double size = rig.canvas.View().time.Size();
    QVERIFY(size < 60 && rig.canvas.Following());
    rig.Come(200, 0);
    QVERIFY(rig.canvas.View().time.Holds(200));
    QVERIFY(Near(rig.canvas.View().time.Size(), size, 1e-6));

    rig.Drag(rig.Middle(), rig.Middle() + QPoint(150, 0));
    QCOMPARE(changes.count(), 1);
    QVERIFY(!rig.canvas.Following());
    const PlotView back = rig.canvas.View();
    rig.Come(300, 0);
    QCOMPARE(rig.canvas.View(), back);
    rig.Key(Qt::Key_F);
    QVERIFY(rig.canvas.View().time.Holds(300));
    QCOMPARE(changes.count(), 2);
  }

  void aPausedPictureStandsStillAndLosesNothing() {
    Rig rig;
    rig.Key(Qt::Key_Space);
    QVERIFY(rig.canvas.Paused());
    const QImage before = rig.canvas.Picture();
    rig.Come(101, 500);
    QCOMPARE(rig.canvas.Picture(), before);
    rig.Key(Qt::Key_Home);
    QVERIFY(!rig.canvas.View().values.Holds(500));
    rig.Key(Qt::Key_Space);
    QVERIFY(rig.canvas.View().values.Holds(500));
  }

  // Else a file that is opened after a look at a detail of something else would not be in sight.
  void otherCurvesAreShownWhole() {
    Rig rig;
    rig.canvas.ZoomBy(10);
    rig.Drag(rig.Middle(), rig.Middle() + QPoint(300, 0));
    rig.Key(Qt::Key_Space);
    Series other;
    for (int i = 0; i < 50; ++i) other.Append({1000.0 + i, 7});
    rig.canvas.SetCurves({{&rig.series, "Weight"}, {&other, "Other"}});
    QVERIFY(rig.canvas.Paused() && !rig.canvas.Following());
    rig.canvas.SetCurves({});
    rig.canvas.SetCurves({{&other, "Other"}});
    QVERIFY(!rig.canvas.Paused() && rig.canvas.Following());
    QVERIFY(rig.canvas.View().time.Holds(1000) && rig.canvas.View().time.Holds(1049));
    rig.canvas.SetCurves({{&rig.series, "Weight"}});
  }

  void cursorsTellValuesDifferenceAndMean() {
    Rig rig;
    for (int i = 0; i < 100; ++i) rig.series.Append({100.1 + i * 0.1, i < 50 ? 20.0 : 30.0});
    rig.canvas.Fit();
    rig.canvas.DrawNow();
    rig.Key(Qt::Key_C);
    rig.canvas.SetCursorTimes(50, 109.05);
    QSignalSpy moves(&rig.canvas, &CurveCanvas::CursorsMoved);
    rig.Drag(rig.At(50, 0), rig.At(100, 5));
    QVERIFY(moves.count() > 0);
    QVERIFY(Near(rig.canvas.CursorTimes().from, 100, 0.2));
    rig.canvas.SetCursorTimes(100.08, 109.05);
    const auto* table = rig.canvas.findChild<QLabel*>();
    QVERIFY(table->isVisible());
    QTRY_VERIFY(table->text().contains("24.444"));  // 50 points of 20 and 40 of 30
    QVERIFY(table->text().contains(">20.00") && table->text().contains(">30.00") &&
            table->text().contains(">10.00"));

    rig.Key(Qt::Key_2);
    rig.Key(Qt::Key_Right, Qt::ControlModifier);
    QVERIFY(rig.canvas.CursorTimes().to > 109.05 && rig.canvas.CursorTimes().to < 109.5);
    rig.Key(Qt::Key_C);
    QVERIFY(!rig.canvas.Cursors() && !table->isVisible());
  }

  void aClickTellsThePointOrTheMark() {
    Rig rig;
    rig.canvas.SetMarks(
        {{10, MarkKind::TimeOut, 7}, {30, MarkKind::WrongAnswer, 8}, {31, MarkKind::TimeOut, 9}});
    rig.Drag(rig.At(28, 9), rig.At(34, -9), Qt::ShiftModifier);  // points stand some pixels apart
    QSignalSpy points(&rig.canvas, &CurveCanvas::PointClicked);
    QSignalSpy marks(&rig.canvas, &CurveCanvas::MarkClicked);
    QTest::mouseClick(&rig.canvas, Qt::LeftButton, {}, rig.At(31, 10 * std::sin(3.1)) + QPoint(2, 2));
    QCOMPARE(points.count(), 1);
    QVERIFY(Near(points[0][1].toDouble(), 31, 1e-9));
    QTest::mouseClick(&rig.canvas, Qt::LeftButton, {}, rig.At(31, 8));  // nothing is there
    QTest::mouseClick(&rig.canvas, Qt::LeftButton, {},
                      QPoint(rig.At(30, 0).x() + 2, rig.Plot().axisRect()->bottom() - 6));
    QCOMPARE(points.count(), 1);
    QCOMPARE(marks.count(), 1);
    QCOMPARE(marks[0][0].value<std::uint64_t>(), 8U);
  }

  void oneHighPointAmongFourMillionIsSeen() {
    Rig rig;
    Series many;
    for (int i = 0; i < 4'000'000; ++i) many.Append({i * 1e-3, i == 2'000'123 ? 100.0 : i % 2 * 1.0});
    rig.canvas.SetCurves({{&many, QString()}});
    rig.canvas.Fit();
    const QImage picture = rig.canvas.Picture();
    constexpr QRgb blue = 0xFF0072B2;
    const int middle = picture.width() / 2;
    QVERIFY(TopOf(picture, blue, middle - 60, middle + 60) < 0.2);
    QVERIFY(TopOf(picture, blue, 0, middle - 60) > 0.7);
    QVERIFY(TopOf(picture, blue, middle + 60, picture.width()) > 0.7);
  }

  void aFewPointsThatJumpAreLinesNotBars() {
    Rig rig;
    Series jumping;
    for (int i = 0; i <= 100; ++i) jumping.Append({i * 1.0, i % 2 * 1.0});
    rig.canvas.SetCurves({{&jumping, QString()}});
    rig.canvas.Fit();
    rig.canvas.DrawNow();
    const QImage seen = rig.Plot().grab().toImage().convertToFormat(QImage::Format_ARGB32);
    qint64 blue = 0;
    for (int y = 0; y < seen.height(); ++y)
      for (int x = 0; x < seen.width(); ++x) blue += seen.pixel(x, y) == 0xFF0072B2;
    QVERIFY(blue > 0);
    QVERIFY(blue < seen.width() * seen.height() / 3);
  }

  void aGapStaysAGapAndALonePointIsSeen() {
    Rig rig;
    Series gapped;
    for (int i = 0; i <= 100; ++i) gapped.Append({i * 1.0, i > 40 && i < 60 && i != 50 ? gapValue : 5.0});
    rig.canvas.SetCurves({{&gapped, QString()}});
    rig.canvas.Fit();
    rig.canvas.DrawNow();
    const QImage picture = rig.canvas.Picture();
    constexpr QRgb blue = 0xFF0072B2;
    const auto shows = [&](double time) {
      const int x = rig.At(time, 5).x() * 2;
      return TopOf(picture, blue, x - 4, x + 4) < 1;
    };
    QVERIFY(shows(30) && !shows(45) && shows(50) && !shows(55) && shows(70));
  }

  void picturesAreFilesOfTheirKind() {
    Rig rig;
    QPalette dark(Qt::black);
    dark.setColor(QPalette::Base, Qt::black);
    dark.setColor(QPalette::Text, Qt::white);
    rig.canvas.setPalette(dark);
    const QTemporaryDir folder;
    const auto name = [&](const char* file) { return folder.filePath(file); };
    for (const char* file : {"a.png", "b.SVG", "c.pdf"}) QVERIFY(!rig.canvas.ExportPicture(name(file)));
    const QImage png(name("a.png"));
    QCOMPARE(png.size(), rig.Plot().size() * 2);
    QCOMPARE(png.pixelColor(2, 2), QColor(Qt::white));  // paper
    QVERIFY(Text(name("c.pdf")).startsWith("%PDF-"));

    QXmlStreamReader svg(Text(name("b.SVG")));
    QStringList names;
    while (!svg.atEnd())
      if (svg.readNext() == QXmlStreamReader::StartElement) names << svg.name().toString();
    QVERIFY2(!svg.hasError(), qPrintable(svg.errorString()));
    QCOMPARE(names.value(0), QString("svg"));
    QVERIFY(names.count("polyline") + names.count("path") > 1);
    QVERIFY(Text(name("b.SVG")).contains("Weight (kg)"));

    QVERIFY(rig.canvas.ExportPicture(name("d.gif"))->contains(".png, .svg"));
    QVERIFY(rig.canvas.ExportPicture(name("none/e.png")).has_value());
    QVERIFY(!QFile::exists(name("d.gif")));
  }

  void followsTheDesktopsColors() {
    Rig rig;
    QPalette dark(Qt::black);
    dark.setColor(QPalette::Base, QColor(20, 20, 20));
    rig.canvas.setPalette(dark);
    rig.canvas.DrawNow();
    QCOMPARE(rig.canvas.grab().toImage().pixelColor(2, 2), QColor(20, 20, 20));
  }

  void curvesAreDrawnWithoutAWindow() {
    const QTemporaryDir folder;
    std::vector<Series> curves(2, Series("Weight"));
    for (Series& curve : curves)
      for (int i = 0; i < 400; ++i) curve.Append({i * 1.0, i % 7 * 1.0});
    const std::string file = folder.filePath("run.svg").toStdString();
    QVERIFY(!PlotToFile(curves, PlotTimes::Seconds, file, {"A run"}));
    QVERIFY(Text(QString::fromStdString(file)).contains("A run"));
    QVERIFY(Text(QString::fromStdString(file)).contains("Time (min:s)"));
    QVERIFY(PlotToFile(curves, PlotTimes::Rows, folder.filePath("run.txt").toStdString())->find("run.txt") !=
            std::string::npos);
  }
};

}  // namespace quarlin

QTEST_MAIN(quarlin::CurveCanvasTest)
#include "curve_canvas_test.moc"
