// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/about_box.h"

#define PCRE2_CODE_UNIT_WIDTH 8
#include <Qsci/qsciglobal.h>
#include <ares.h>
#include <fmt/core.h>
#include <pcre2.h>
#include <qcustomplot.h>
#include <xlsxwriter.h>

#include <QFile>
#include <QMessageBox>
#include <QUrl>
#include <nlohmann/json.hpp>
#include <pugixml.hpp>

#include "base/licence.h"
#include "ui/qt/widget_text.h"
#include "ui/qt/window_icon.h"

namespace quarlin {
namespace {

constexpr int iconSize = 64;
constexpr auto licenceOfTheSystem = "/usr/share/common-licenses/GPL-3";

// "9.1.0" of 90100.
QString Dotted(int number) {
  return QString("%1.%2.%3").arg(number / 10000).arg(number / 100 % 100).arg(number % 100);
}

// "10.42": the date behind it is cut.
QString RegexLibrary() {
  char text[64] = "";
  pcre2_config(PCRE2_CONFIG_VERSION, text);
  return QString(text).section(' ', 0, 0);
}

// Those that are loaded say what they are; the others are what was compiled in.
QString Libraries() {
  const QStringList names{
      QString("Qt %1").arg(qVersion()),
      QString("QCustomPlot %1").arg(QCUSTOMPLOT_VERSION_STR),
      QString("QScintilla %1").arg(QSCINTILLA_VERSION_STR),
      "fmt " + Dotted(FMT_VERSION),
      QString("c-ares %1").arg(ares_version(nullptr)),
      "PCRE2 " + RegexLibrary(),
      QString("libxlsxwriter %1").arg(lxw_version()),
      QString("pugixml %1.%2").arg(PUGIXML_VERSION / 1000).arg(PUGIXML_VERSION / 10 % 100),
      QString("nlohmann-json %1.%2.%3")
          .arg(NLOHMANN_JSON_VERSION_MAJOR)
          .arg(NLOHMANN_JSON_VERSION_MINOR)
          .arg(NLOHMANN_JSON_VERSION_PATCH)};
  // No line ends within a name.
  return names.join(";").replace(' ', QChar::Nbsp).replace('-', QChar(0x2011)).replace(";", ", ");
}

// To the system's own copy, which needs no network, or to the one on the web.
QString LicenceLink() {
  const bool here = QFile::exists(licenceOfTheSystem);
  const QString place = here ? QString(licenceOfTheSystem) : ShownText(licenceAddress);
  return QString("<a href=\"%1\">%2</a>").arg(here ? QUrl::fromLocalFile(place).toString() : place, place);
}

}  // namespace

QMessageBox* MakeAboutBox(QWidget& window) {
  auto* box =
      new QMessageBox(QMessageBox::NoIcon, QMessageBox::tr("About Quarlin"), {}, QMessageBox::Ok, &window);
  box->setAttribute(Qt::WA_DeleteOnClose);
  box->setIconPixmap(WindowIcon().pixmap(iconSize));
  box->setTextFormat(Qt::RichText);
  box->setText(QString("<b>Quarlin %1</b>").arg(ShownText(VersionNumber())));
  box->setInformativeText(
      QMessageBox::tr(
          "<p>Sends commands to instruments with a line-oriented ASCII protocol, shows and checks "
          "their answers, and counts what goes wrong.</p>"
          "<p>%1. Free software: you may use, study, change and pass it on under the GNU General "
          "Public License, version 3 or later. There is no warranty, as far as the law allows that. "
          "The licence: %2</p>"
          "<p>With %3; each has a licence of its own, those of QCustomPlot and QScintilla are the GPL, "
          "too.</p>")
          .arg(ShownText(copyrightText), LicenceLink(), Libraries()));
  return box;
}

}  // namespace quarlin
