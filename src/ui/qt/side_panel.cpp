// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/side_panel.h"

#include <QLabel>
#include <QLineEdit>
#include <QScrollArea>
#include <QStyleOptionTab>
#include <QStylePainter>
#include <QTabBar>
#include <QVBoxLayout>
#include <algorithm>

#include "ui_config_row.h"
#include "ui_log_page.h"
#include "ui_macro_page.h"
#include "ui_quick_page.h"
#include "ui_receive_page.h"
#include "ui_script_page.h"
#include "ui_test_page.h"
#include "ui_transmit_page.h"

namespace quarlin {
namespace {

constexpr int narrowest = 230;  // pixels; a page that wants more can be scrolled

// Puts the widgets of a form into an empty widget. The binder finds them by name.
template <typename Form>
void Fill(QWidget& page) {
  Form().setupUi(&page);
}

struct SidePage {
  const char* title;
  void (*fill)(QWidget& page);
};

// One line a page.
constexpr SidePage sidePages[] = {
    {QT_TRANSLATE_NOOP("quarlin::SidePanel", "Transmit"), &Fill<Ui::TransmitPage>},
    {QT_TRANSLATE_NOOP("quarlin::SidePanel", "Receive"), &Fill<Ui::ReceivePage>},
    {QT_TRANSLATE_NOOP("quarlin::SidePanel", "Macro"), &Fill<Ui::MacroPage>},
    {QT_TRANSLATE_NOOP("quarlin::SidePanel", "Test"), &Fill<Ui::TestPage>},
    {QT_TRANSLATE_NOOP("quarlin::SidePanel", "Quick"), &Fill<Ui::QuickPageForm>},
    {QT_TRANSLATE_NOOP("quarlin::SidePanel", "Script"), &Fill<Ui::ScriptPage>},
    {QT_TRANSLATE_NOOP("quarlin::SidePanel", "Logs"), &Fill<Ui::LogPage>},
};

// A column of names at the right edge, written as one reads.
class NameColumn : public QTabBar {
 public:
  using QTabBar::QTabBar;

 protected:
  QSize tabSizeHint(int index) const override {
    const QSize text = fontMetrics().size(Qt::TextShowMnemonic, tabText(index));
    return {text.width() + 14, text.height() + 16};
  }

  QSize minimumTabSizeHint(int index) const override { return tabSizeHint(index); }

  void paintEvent(QPaintEvent*) override {
    QStylePainter painter(this);
    for (int i = 0; i < count(); ++i) PaintName(painter, i);
  }

 private:
  void PaintName(QStylePainter& painter, int index) {
    QStyleOptionTab option;
    initStyleOption(&option, index);
    painter.drawControl(QStyle::CE_TabBarTabShape, option);
    QRect room = option.rect.adjusted(8, 0, -2, 0);
    painter.drawItemText(room, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextShowMnemonic, palette(),
                         isEnabled(), option.text, QPalette::WindowText);
    if (!option.state.testFlag(QStyle::State_HasFocus) || index != currentIndex()) return;
    QStyleOptionFocusRect focus;
    focus.initFrom(this);
    focus.rect = option.rect.adjusted(4, 4, -4, -4);
    painter.drawPrimitive(QStyle::PE_FrameFocusRect, focus);
  }
};

QScrollArea* MakePage(const SidePage& page) {
  auto* contents = new QWidget;
  page.fill(*contents);
  contents->resize(0, 0);  // laid out when it is shown, not now
  auto* scroll = new QScrollArea;
  scroll->setFrameShape(QFrame::NoFrame);
  scroll->setWidgetResizable(true);
  scroll->setFocusPolicy(Qt::NoFocus);
  scroll->setWidget(contents);
  return scroll;
}

// A waiting time of 0 ends never, which the number does not say.
void TellForEver(QWidget& panel) {
  auto* time = panel.findChild<QLineEdit*>("txtAnswerTime");
  auto* unit = panel.findChild<QLabel*>("answerTimeUnit");
  const QString forEver = SidePanel::tr("ms: for ever");
  unit->setMinimumWidth(unit->fontMetrics().horizontalAdvance(forEver));
  const auto show = [unit, forEver](const QString& text) {
    unit->setText(text.toDouble() > 0 ? SidePanel::tr("ms") : forEver);
  };
  QObject::connect(time, &QLineEdit::textChanged, unit, show);
  show(time->text());
}

}  // namespace

SideTabs::SideTabs(QWidget* parent) : QTabWidget(parent) {
  setTabBar(new NameColumn);
  setTabPosition(East);
  setUsesScrollButtons(false);
}

SidePanel::SidePanel(QWidget* parent) : QWidget(parent), tabs_(new SideTabs) {
  setObjectName("sidePanel");
  setMinimumWidth(narrowest);
  tabs_->setObjectName("tabs");
  for (const SidePage& page : sidePages) tabs_->addTab(MakePage(page), tr(page.title));
  TellForEver(*tabs_);
  auto* config = new QWidget;
  Ui::ConfigRow().setupUi(config);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(4);
  column->addWidget(tabs_, 1);
  column->addWidget(config);
}

QSize SidePanel::sizeHint() const {
  int widest = 0;
  for (int i = 0; i < tabs_->count(); ++i) {
    const auto* page = qobject_cast<const QScrollArea*>(tabs_->widget(i));
    widest = std::max(widest, page->widget()->minimumSizeHint().width());
  }
  const int frame = 8;  // around the pages
  const int scrollBar = style()->pixelMetric(QStyle::PM_ScrollBarExtent);
  return {widest + frame + scrollBar + tabs_->tabBar()->sizeHint().width(), QWidget::sizeHint().height()};
}

void SidePanel::ShowPage(int number) {
  tabs_->setCurrentIndex(number);
  tabs_->setFocus(Qt::ShortcutFocusReason);
}

}  // namespace quarlin
