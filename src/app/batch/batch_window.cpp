#include "app/batch/batch_window.h"

#include <QDir>
#include <QDragEnterEvent>
#include <QFile>
#include <QFileInfo>
#include <QHeaderView>
#include <QKeyEvent>
#include <QUrl>

#include <algorithm>
#include <set>
#include <utility>

#include "app/batch/batch_table.h"
#include "app/batch/batch_texts.h"
#include "imaging/file_format.h"
#include "preview/drop/dropped_files.h"
#include "ui_BatchWindow.h"

namespace velmara {
namespace {

constexpr QSize kFirstSize(920, 640);
constexpr QSize kLeastSize(780, 480);
constexpr int kRowHeight = 66;
constexpr QSize kThumbnail(64, 56);

// Beside the words of a cell, in pixels: its padding, and the arrow of the list they are chosen
// from.
constexpr int kCellMargin = 36;

int widestOf(const QStringList& texts, const QFontMetrics& metrics) {
  int widest = 0;
  for (const QString& text : texts) widest = std::max(widest, metrics.horizontalAdvance(text));
  return widest;
}

constexpr BatchNaming::Existing kExisting[] = {
    BatchNaming::Existing::rename, BatchNaming::Existing::skip, BatchNaming::Existing::replace};

// Where the results go: the entries of the folder's list.
enum FolderChoice { kBesidePhotos, kChosenFolder, kAnotherFolder };

const FileFormat kFormats[] = {FileFormat::jpeg, FileFormat::tiff, FileFormat::png, FileFormat::bmp,
                               FileFormat::gif};

}  // namespace

BatchWindow::BatchWindow(BatchList& list, AlertPresenter& alerts, Panels& panels,
                         Workspace& workspace)
    : QDialog(nullptr, Qt::Window),
      ui_(std::make_unique<Ui::BatchWindow>()),
      list_(list),
      alerts_(alerts),
      panels_(panels),
      workspace_(workspace) {
  ui_->setupUi(this);
  setMinimumSize(kLeastSize);
  resize(kFirstSize);
  fillChoices();
  setupTable();
  setupActions();
  ui_->btnShowFolder->hide();
  ui_->txtFailures->hide();
  showState();
  showExample();
}

BatchWindow::~BatchWindow() = default;

void BatchWindow::fillChoices() {
  for (const Treatment& treatment : treatments())
    ui_->popStrength->addItem(treatmentLabel(treatment));
  ui_->popFormat->addItem(tr("As the photo"));
  for (const FileFormat format : kFormats) {
    const std::string_view title = factsOf(format).title;
    ui_->popFormat->addItem(QString::fromUtf8(title.data(), static_cast<qsizetype>(title.size())));
  }
  ui_->popFolder->addItem(tr("The photos' folders"));
  ui_->popFolder->addItem(tr("Choose a Folder…"));
  ui_->popExisting->addItem(tr("Keep both, with a number"));
  ui_->popExisting->addItem(tr("Pass the photo over"));
  ui_->popExisting->addItem(tr("Replace it"));
  ui_->txtPattern->setText(QString::fromStdString(NamePattern().text()));
  ui_->txtPattern->setToolTip(
      tr("{name} is the photo's name, {number} its place in the list, {folder} its folder"));
}

void BatchWindow::setupTable() {
  table_ = new BatchTable(list_, this);
  QTableView& view = *ui_->tablePhotos;
  view.setModel(table_);
  view.setIconSize(kThumbnail);
  view.setEditTriggers(QAbstractItemView::AllEditTriggers);
  view.setItemDelegateForColumn(BatchTable::kStrength, new BatchStrengthDelegate(&view));
  view.setItemDelegateForColumn(BatchTable::kState, new BatchStateDelegate(&view));
  view.verticalHeader()->hide();
  view.verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  view.verticalHeader()->setDefaultSectionSize(kRowHeight);
  QHeaderView& header = *view.horizontalHeader();
  header.setHighlightSections(false);
  header.setSectionResizeMode(BatchTable::kPhoto, QHeaderView::Stretch);
  for (const auto column : {BatchTable::kSize, BatchTable::kNoise, BatchTable::kStrength}) {
    header.resizeSection(column,
                         widestOf(BatchTable::longestTexts(column), fontMetrics()) + kCellMargin);
  }
  header.setSectionResizeMode(BatchTable::kState, QHeaderView::Stretch);
  view.installEventFilter(this);
}

void BatchWindow::setupActions() {
  connect(ui_->btnAddPhotos, &QPushButton::clicked, this, &BatchWindow::addPhotosTapped);
  connect(ui_->btnAddFolder, &QPushButton::clicked, this, &BatchWindow::addFolderTapped);
  connect(ui_->btnRemove, &QPushButton::clicked, this, &BatchWindow::removeTapped);
  connect(ui_->btnStart, &QPushButton::clicked, this, &BatchWindow::startTapped);
  connect(ui_->btnStop, &QPushButton::clicked, &list_, &BatchList::cancel);
  connect(ui_->btnPause, &QPushButton::clicked, this,
          [this] { list_.setPaused(!list_.isPaused()); });
  connect(ui_->btnShowFolder, &QPushButton::clicked, this, &BatchWindow::showFolder);
  connect(ui_->popFolder, &QComboBox::activated, this, &BatchWindow::folderChosen);
  connect(ui_->txtPattern, &QLineEdit::textChanged, this, &BatchWindow::showExample);
  connect(ui_->popFormat, &QComboBox::currentIndexChanged, this, &BatchWindow::showExample);
  connect(ui_->chkKeepFolders, &QCheckBox::toggled, this, &BatchWindow::showExample);
  connect(&list_, &BatchList::entriesChanged, this, &BatchWindow::showState);
  connect(&list_, &BatchList::entriesChanged, this, &BatchWindow::showExample);
  connect(&list_, &BatchList::stateChanged, this, &BatchWindow::showState);
  connect(&list_, &BatchList::progressed, this, &BatchWindow::showProgress);
  connect(ui_->tablePhotos->selectionModel(), &QItemSelectionModel::selectionChanged, this,
          &BatchWindow::showState);
}

void BatchWindow::showWindow() {
  closesAtTheEnd_ = false;
  show();
  raise();
  activateWindow();
}

void BatchWindow::addPhotosTapped() {
  OpenPanelOptions options;
  options.title = tr("Add Photos").toStdString();
  options.allowsMultipleSelection = true;
  options.allowedTypesTitle = tr("Images").toStdString();
  options.allowedFileTypes = readableFileTypes();
  panels_.beginOpenPanel(options,
                         [this](const std::vector<std::string>& paths) { list_.add(paths); });
}

void BatchWindow::addFolderTapped() {
  OpenPanelOptions options;
  options.title = tr("Add Folder").toStdString();
  options.canChooseFiles = false;
  options.canChooseDirectories = true;
  panels_.beginOpenPanel(options,
                         [this](const std::vector<std::string>& paths) { list_.add(paths); });
}

std::vector<std::size_t> BatchWindow::selectedPhotos() const {
  std::vector<std::size_t> rows;
  for (const QModelIndex& index : ui_->tablePhotos->selectionModel()->selectedRows()) {
    rows.push_back(static_cast<std::size_t>(index.row()));
  }
  return rows;
}

void BatchWindow::removeTapped() {
  list_.remove(selectedPhotos());
}

void BatchWindow::folderChosen(int index) {
  const bool hasChosen = ui_->popFolder->count() > kAnotherFolder;
  if (index == kBesidePhotos) folder_.clear();
  if (index == kChosenFolder && hasChosen) {
    folder_ = QFile::encodeName(ui_->popFolder->itemData(kChosenFolder).toString()).toStdString();
  }
  showState();
  showExample();
  if (index != ui_->popFolder->count() - 1) return;
  OpenPanelOptions options;
  options.title = tr("Save the Results in").toStdString();
  options.canChooseFiles = false;
  options.canChooseDirectories = true;
  panels_.beginOpenPanel(options, [this](const std::vector<std::string>& paths) {
    if (!paths.empty()) {
      folder_ = paths.front();
      const QString path = QFile::decodeName(folder_.c_str());
      if (ui_->popFolder->count() > kAnotherFolder) ui_->popFolder->removeItem(kChosenFolder);
      ui_->popFolder->insertItem(kChosenFolder, QDir::toNativeSeparators(path), path);
      ui_->popFolder->setItemData(kChosenFolder, path, Qt::ToolTipRole);
    }
    ui_->popFolder->setCurrentIndex(folder_.empty() ? kBesidePhotos : kChosenFolder);
    showState();
    showExample();
  });
}

BatchNaming BatchWindow::naming() const {
  BatchNaming naming;
  if (!folder_.empty()) naming.folder = folder_;
  naming.keepsFolders = !folder_.empty() && ui_->chkKeepFolders->isChecked();
  if (const auto pattern = NamePattern::parse(ui_->txtPattern->text().toStdString())) {
    naming.pattern = *pattern;
  }
  const int format = ui_->popFormat->currentIndex();
  if (format > 0) naming.format = kFormats[format - 1];
  naming.existing = kExisting[ui_->popExisting->currentIndex()];
  return naming;
}

void BatchWindow::startTapped() {
  ui_->txtFailures->hide();
  ui_->btnShowFolder->hide();
  list_.start(treatments()[static_cast<std::size_t>(ui_->popStrength->currentIndex())], naming());
  ui_->btnPause->setFocus();
}

// What the first photo's result will be called, or what is wrong with the pattern.
void BatchWindow::showExample() {
  const auto pattern = NamePattern::parse(ui_->txtPattern->text().toStdString());
  QString text;
  if (!pattern) {
    text = QString::fromStdString(pattern.error());
  } else if (!list_.entries().empty()) {
    const BatchPhoto& photo = list_.entries().front().photo;
    const PhotoOutput output =
        namedOutput(photo, 0, list_.entries().size(), formatForPath(photo.path), naming());
    text =
        tr("For example %1").arg(QDir::toNativeSeparators(QFile::decodeName(output.path.c_str())));
  }
  ui_->lblExample->setText(
      fontMetrics().elidedText(text, Qt::ElideMiddle, ui_->vwSettings->width() * 3 / 4));
  ui_->lblExample->setProperty("role", pattern ? "dim" : "error");
  ui_->lblExample->setStyleSheet(ui_->lblExample->styleSheet());
  ui_->btnStart->setEnabled(pattern && !list_.entries().empty());
}

void BatchWindow::showState() {
  const bool isRunning = list_.isRunning();
  const bool hadFocus = ui_->btnPause->hasFocus() || ui_->btnStop->hasFocus();
  const int count = static_cast<int>(list_.entries().size());
  ui_->vwList->setCurrentWidget(count == 0 ? ui_->vwEmpty : ui_->vwPhotos);
  ui_->lblCount->setText(list_.isSearching() ? tr("Looking for photos…")
                         : count == 0        ? QString()
                                             : tr("%n photo(s)", "", count));
  ui_->btnRemove->setEnabled(!isRunning && !selectedPhotos().empty());
  ui_->vwSettings->setEnabled(!isRunning);
  ui_->chkKeepFolders->setEnabled(!folder_.empty());
  const int toRun = static_cast<int>(list_.photosToRun().size());
  ui_->btnStart->setVisible(!isRunning);
  ui_->btnStart->setText(toRun == 0 ? tr("Denoise") : tr("Denoise %n Photo(s)", "", toRun));
  ui_->btnPause->setVisible(isRunning);
  ui_->btnPause->setText(list_.isPaused() ? tr("Go On") : tr("Pause"));
  ui_->btnStop->setVisible(isRunning);
  ui_->progressAll->setVisible(isRunning);
  if (isRunning) {
    showProgress();
    return;
  }
  const BatchCounts counts = list_.counts();
  ui_->lblProgress->setText(counts.all == 0 ? QString() : summaryLabel(counts));
  const QStringList failures = failureLines(list_.entries());
  ui_->txtFailures->setPlainText(failures.join(QLatin1Char('\n')));
  ui_->txtFailures->setVisible(!failures.isEmpty());
  ui_->btnShowFolder->setVisible(counts.written > 0);
  if (hadFocus) ui_->btnStart->setFocus();
  if (closesAtTheEnd_) hide();
}

void BatchWindow::showProgress() {
  constexpr double kSteps = 1000.0;
  ui_->progressAll->setValue(static_cast<int>(list_.progress() * kSteps));
  const BatchCounts counts = list_.counts();
  const int done = counts.written + counts.skipped + counts.failed;
  QString text = tr("%1 of %n photo(s)", "", counts.all).arg(done);
  if (list_.isPaused()) {
    text += tr(", paused");
  } else if (const auto left = list_.timeLeft()) {
    text += QStringLiteral(". ") + timeLeftLabel(*left);
  }
  ui_->lblProgress->setText(text);
}

// The folder of the last result.
void BatchWindow::showFolder() {
  const auto& entries = list_.entries();
  const auto last = std::find_if(entries.rbegin(), entries.rend(),
                                 [](const BatchEntry& entry) { return !entry.output.empty(); });
  if (last == entries.rend()) return;
  const QFileInfo file(QFile::decodeName(last->output.c_str()));
  workspace_.openURL(
      QUrl::fromLocalFile(file.absolutePath()).toString(QUrl::FullyEncoded).toStdString(), true);
}

void BatchWindow::reject() {
  if (!list_.isRunning()) {
    hide();
    return;
  }
  const BatchCounts counts = list_.counts();
  const int left = counts.all - counts.written - counts.skipped - counts.failed;
  alerts_.beginSheet(
      {tr("The batch is not done yet.").toStdString(),
       tr("%n photo(s) would be left as they are. Results that are written stay.", "", left)
           .toStdString(),
       {tr("Stop").toStdString(), tr("Go On").toStdString()}},
      [this](int button) {
        if (button != 0) return;
        closesAtTheEnd_ = true;
        list_.cancel();
        if (!list_.isRunning()) hide();
      });
}

void BatchWindow::dragEnterEvent(QDragEnterEvent* event) {
  const auto files = draggedFiles(*event->mimeData());
  if (files && std::ranges::any_of(*files, [](const auto& path) { return !path.empty(); })) {
    event->acceptProposedAction();
  }
}

void BatchWindow::dropEvent(QDropEvent* event) {
  auto files = draggedFiles(*event->mimeData()).value_or(std::vector<std::string>());
  std::erase(files, std::string());
  event->acceptProposedAction();
  list_.add(std::move(files));
}

bool BatchWindow::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress &&
      static_cast<QKeyEvent*>(event)->matches(QKeySequence::Delete)) {
    removeTapped();
    return true;
  }
  return QDialog::eventFilter(watched, event);
}

}  // namespace velmara
