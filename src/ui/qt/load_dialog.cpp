// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/load_dialog.h"

#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QHeaderView>
#include <QLocale>
#include <QMimeData>
#include <array>
#include <cmath>
#include <filesystem>
#include <utility>

#include "base/numbers.h"
#include "ui/qt/dropped_files.h"
#include "ui/qt/trouble_labels.h"
#include "ui/qt/widget_text.h"
#include "ui_load_dialog.h"

namespace quarlin {
namespace {

constexpr qsizetype mostClipboard = qsizetype{64} * 1024 * 1024;
constexpr std::array<char, 5> separators{0, ';', '\t', ',', ' '};  // in the order of the box

bool HasAllCurves(const TablePreview& preview) {
  const auto has = [&](std::size_t curve) {
    return std::ranges::any_of(preview.rows,
                               [&](const auto& row) { return !std::isnan(row.values.at(curve)); });
  };
  for (std::size_t curve = 0; curve < preview.curves.size(); ++curve)
    if (!has(curve)) return false;
  return true;
}

// With a capital letter, unless it begins with the name of a file.
QString Sentence(const std::string& words) {
  QString text = TextOfFile(words);
  if (text.startsWith("the ") || text.startsWith("no ")) text[0] = text[0].toUpper();
  return text.isEmpty() || text.endsWith('.') ? text : text + '.';
}

QString HeadOf(const TablePreview::Curve& curve) {
  const QString name = TextOfFile(curve.name);
  return curve.unit.empty() ? name : QString("%1 (%2)").arg(name, TextOfFile(curve.unit));
}

QTableWidgetItem* NumberItem(double value, const std::string& reason) {
  auto* item = new QTableWidgetItem;
  item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
  if (!std::isnan(value)) {
    item->setText(QString::fromStdString(DecimalText(value)));
  } else {
    item->setText("–");
    item->setToolTip(TextOfFile(reason));
  }
  return item;
}

}  // namespace

LoadDialog::LoadDialog(EventLoop& loop, TakeNumbers take, QWidget* parent)
    : QDialog(parent), loop_(loop), take_(std::move(take)), ui_(std::make_unique<Ui::LoadDialog>()) {
  ui_->setupUi(this);
  resize(760, 480);
  ShowAsTrouble(*this, {ui_->loadRuleTrouble, ui_->loadTimeTrouble});
  ui_->loadPreview->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
  Wire();
  ShowChoice({});
  ShowLoading(false);
}

LoadDialog::~LoadDialog() = default;

void LoadDialog::Wire() {
  TakeDroppedFiles(*this, [this](const QString& file) { TakeFile(file); });
  connect(ui_->loadFileButton, &QPushButton::clicked, this, &LoadDialog::ChooseFile);
  connect(ui_->loadClipboardButton, &QPushButton::clicked, this, &LoadDialog::TakeClipboard);
  connect(ui_->loadOpenButton, &QPushButton::clicked, this, &LoadDialog::Start);
  connect(ui_->loadCancelButton, &QPushButton::clicked, this, &LoadDialog::reject);
  connect(ui_->loadTimeBox, &QComboBox::activated, this, &LoadDialog::TimeKindChosen);
  for (QComboBox* box : {ui_->loadRuleBox, ui_->loadSeparatorBox, ui_->loadDecimalBox}) {
    connect(box, &QComboBox::activated, this, &LoadDialog::Changed);
  }
  for (QLineEdit* field : {ui_->loadRule, ui_->loadTime}) {
    connect(field, &QLineEdit::textEdited, this, &LoadDialog::Changed);
  }
}

void LoadDialog::ChooseFile() {
  open();
  if (isLoading_ || findChild<QFileDialog*>() != nullptr) return;  // asked for again from another window
  auto* dialog = new QFileDialog(this, tr("Open numbers"));
  dialog->setObjectName("loadFileDialog");
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setFileMode(QFileDialog::ExistingFile);
  connect(dialog, &QFileDialog::fileSelected, this, &LoadDialog::TakeFile);
  connect(dialog, &QFileDialog::rejected, this, [this] {
    if (!open_) reject();  // there is nothing to be set
  });
  dialog->open();
}

void LoadDialog::TakeFile(const QString& file) {
  if (isLoading_) return;
  open();
  const std::filesystem::path path(QFile::encodeName(file).toStdString());
  const QFileInfo info(file);
  const QString size = QLocale().formattedDataSize(info.size());
  TakeSource(QString("%1, %2").arg(info.fileName(), size), path.filename().string(),
             [path] { return OpenFileSource(path); });
  ui_->loadSource->setToolTip(info.absoluteFilePath());
}

void LoadDialog::TakeClipboard() {
  open();
  TakeText(*QApplication::clipboard()->mimeData());
}

void LoadDialog::TakeText(const QMimeData& clipboard) {
  const QString text = clipboard.text();
  if (!text.isEmpty() && text.size() <= mostClipboard) {
    const std::string name = "the clipboard";
    const std::string bytes = text.toStdString();
    return TakeSource(tr("The clipboard, %1").arg(QLocale().formattedDataSize(text.size())), name,
                      [name, bytes] {
                        return OpenedSource{MakeTextSource(name, bytes), {}};
                      });
  }
  ui_->loadSource->setText(tr("The clipboard"));
  Refuse(!text.isEmpty()                 ? "the clipboard holds more than 64 MiB; save it as a file"
         : clipboard.hasImage()          ? "the clipboard holds a picture and no text"
         : clipboard.formats().isEmpty() ? "the clipboard is empty"
                                         : "the clipboard holds no text");
}

void LoadDialog::TakeSource(const QString& shown, std::string name, OpenSource openSource) {
  ui_->loadSource->setText(shown);
  ui_->loadSource->setToolTip({});
  const OpenedSource opened = openSource();
  beginning_.clear();
  const auto error = opened.error ? opened.error : opened.source->ReadMore(beginning_, previewSize);
  if (error) return Refuse(CannotRead(name, error));
  if (const std::string objection = ObjectionTo(name, beginning_); !objection.empty())
    return Refuse(objection);
  open_ = std::move(openSource);
  name_ = std::move(name);
  ProposeWhereNothingFits();
  Changed();
  ui_->loadOpenButton->setFocus();
}

// Settings under which another file was read are kept for one that is like it: it has all of the curves.
void LoadDialog::ProposeWhereNothingFits() {
  const LoadSettings settings = SettingsOf(Choice());
  const bool usual = ui_->loadRuleBox->currentIndex() == 0 && ui_->loadTimeBox->currentIndex() == 0;
  if (!usual && settings.Usable() && HasAllCurves(PreviewOf(beginning_, settings.table))) return;
  ShowChoice(ChoiceOf(ProposedFor(beginning_), Choice()));
}

void LoadDialog::Refuse(const std::string& sentence) {
  open_ = nullptr;
  beginning_.clear();
  Changed();
  ui_->loadNote->setText(Sentence(sentence));
}

LoadChoice LoadDialog::Choice() const {
  LoadChoice choice = other_;
  choice.kind =
      std::array{NumberRule::Kind::Nth, NumberRule::Kind::Column,
                 NumberRule::Kind::Group}[static_cast<std::size_t>(ui_->loadRuleBox->currentIndex())];
  choice.which = ui_->loadRule->text().toStdString();
  choice.separator = separators[static_cast<std::size_t>(ui_->loadSeparatorBox->currentIndex())];
  choice.decimal = static_cast<DecimalSign>(ui_->loadDecimalBox->currentIndex());
  choice.time = static_cast<TableSettings::Time>(ui_->loadTimeBox->currentIndex());
  const std::string time = ui_->loadTime->text().toStdString();
  if (choice.time == TableSettings::Time::Rate) choice.rate = time;
  if (choice.time == TableSettings::Time::Column) choice.timeColumn = time;
  return choice;
}

// Without separator and decimal sign, which nobody proposes.
void LoadDialog::ShowChoice(const LoadChoice& choice) {
  other_ = choice;
  ui_->loadRuleBox->setCurrentIndex(choice.kind == NumberRule::Kind::Nth      ? 0
                                    : choice.kind == NumberRule::Kind::Column ? 1
                                                                              : 2);
  ui_->loadRule->setText(QString::fromStdString(choice.which));
  ui_->loadTimeBox->setCurrentIndex(static_cast<int>(choice.time));
  TimeKindChosen();
}

// The field shows what belongs to the kind, as it was there before.
void LoadDialog::TimeKindChosen() {
  const auto kind = static_cast<TableSettings::Time>(ui_->loadTimeBox->currentIndex());
  ui_->loadTime->setEnabled(kind != TableSettings::Time::Row);
  const std::string& text = kind == TableSettings::Time::Rate ? other_.rate : other_.timeColumn;
  ui_->loadTime->setText(kind == TableSettings::Time::Row ? QString() : QString::fromStdString(text));
  Changed();
}

void LoadDialog::Changed() {
  other_ = Choice();
  const LoadSettings settings = SettingsOf(other_);
  ui_->loadRuleTrouble->setText(Sentence(settings.numberTrouble));
  ui_->loadTimeTrouble->setText(Sentence(settings.timeTrouble));
  ui_->loadOpenButton->setEnabled(open_ && settings.Usable());
  if (settings.Usable()) ShowPreview(settings);  // else the one before stays
}

void LoadDialog::ShowPreview(const LoadSettings& settings) {
  const TablePreview preview = PreviewOf(beginning_, settings.table);
  FillPreview(preview, settings.table.time != TableSettings::Time::Row);
  if (!open_) return ui_->loadNote->clear();
  const auto rows = static_cast<int>(preview.rows.size());
  ui_->loadNote->setText(
      preview.numbers == 0
          ? tr("There is no number in the first %1 rows: choose another one above.").arg(rows)
          : tr("%1 numbers in the first %2 rows.").arg(preview.numbers).arg(rows));
}

void LoadDialog::FillPreview(const TablePreview& preview, bool withTimes) {
  QTableWidget& table = *ui_->loadPreview;
  QStringList heads{tr("Line"), tr("Text")};
  if (withTimes) heads << tr("Time (s)");
  for (const auto& curve : preview.curves) heads << HeadOf(curve);
  table.setColumnCount(static_cast<int>(heads.size()));
  table.setHorizontalHeaderLabels(heads);
  table.setRowCount(static_cast<int>(preview.rows.size()));
  int row = 0;
  for (const auto& read : preview.rows) {
    int column = 0;
    table.setItem(row, column++, new QTableWidgetItem(QString::number(read.line)));
    table.setItem(row, column++, new QTableWidgetItem(TextOfFile(read.text)));
    if (withTimes) table.setItem(row, column++, NumberItem(read.time, read.reason));
    for (const double value : read.values) table.setItem(row, column++, NumberItem(value, read.reason));
    ++row;
  }
  table.resizeColumnsToContents();
  table.setColumnWidth(1, std::clamp(table.columnWidth(1), 120, 360));
}

void LoadDialog::Start() {
  OpenedSource opened = open_();
  if (opened.error) {
    ui_->loadNote->setText(Sentence(CannotRead(name_, opened.error)));
    return;
  }
  loading_ = std::make_unique<Loading>(loop_, std::move(opened.source), SettingsOf(Choice()).table);
  loading_->OnProgress = [this](int thousandths) { ui_->loadProgress->setValue(thousandths); };
  loading_->OnEnd = [this](LoadedNumbers numbers) { Ended(std::move(numbers)); };
  ui_->loadProgress->setValue(0);
  ShowLoading(true);
}

void LoadDialog::Ended(LoadedNumbers numbers) {
  ShowLoading(false);
  if (numbers.curves.empty()) return ui_->loadNote->setText(Sentence(numbers.summary));
  accept();
  take_(std::move(numbers));
}

void LoadDialog::reject() {
  if (!isLoading_) return QDialog::reject();
  loading_.reset();
  ShowLoading(false);
  ui_->loadNote->setText(tr("The reading was cancelled."));
}

void LoadDialog::ShowLoading(bool loading) {
  isLoading_ = loading;
  ui_->loadProgress->setVisible(loading);
  for (QWidget* field : std::initializer_list<QWidget*>{ui_->loadFileButton, ui_->loadClipboardButton,
                                                        ui_->loadRuleBox, ui_->loadRule, ui_->loadTimeBox,
                                                        ui_->loadSeparatorBox, ui_->loadDecimalBox}) {
    field->setEnabled(!loading);
  }
  ui_->loadTime->setEnabled(!loading && ui_->loadTimeBox->currentIndex() > 0);
  ui_->loadOpenButton->setEnabled(!loading && open_);
  if (loading) ui_->loadNote->setText(tr("Reading…"));
  if (loading) ui_->loadCancelButton->setFocus();
}

}  // namespace quarlin
