#include "app/batch/batch_table.h"

#include <QComboBox>
#include <QFile>
#include <QFileInfo>
#include <QIcon>
#include <QPainter>
#include <QPixmap>

#include <algorithm>

#include "app/batch/batch_texts.h"
#include "preview/views/screen_tiles.h"
#include "widgets/style.h"

namespace velmara {
namespace {

using State = BatchEntry::State;

// Pictures are made for screens of twice the density.
constexpr qreal kThumbnailDensity = 2.0;
constexpr int kBarHeight = 4;

QString pathOf(const BatchEntry& entry) {
  return QFile::decodeName(entry.photo.path.c_str());
}

int strengthIndex(const BatchEntry& entry) {
  if (!entry.treatment) return 0;
  const auto& all = treatments();
  const auto found = std::ranges::find_if(all, [&](const Treatment& one) {
    return one.isDeep == entry.treatment->isDeep &&
           one.mode.isAutoMode == entry.treatment->mode.isAutoMode &&
           one.mode.denoiseLevelValue == entry.treatment->mode.denoiseLevelValue;
  });
  return found == all.end() ? 0 : static_cast<int>(found - all.begin()) + 1;
}

// What a photo's strength can be set to.
QStringList strengths() {
  QStringList texts{BatchTable::tr("As all")};
  for (const Treatment& treatment : treatments()) texts << treatmentLabel(treatment);
  return texts;
}

}  // namespace

BatchTable::BatchTable(BatchList& list, QObject* parent)
    : QAbstractTableModel(parent), list_(list) {
  connect(&list_, &BatchList::entriesChanged, this, [this] {
    beginResetModel();
    rows_ = static_cast<int>(list_.entries().size());
    endResetModel();
  });
  connect(&list_, &BatchList::entryChanged, this,
          [this](int row) { Q_EMIT dataChanged(index(row, 0), index(row, kColumns - 1)); });
}

int BatchTable::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : rows_;
}

int BatchTable::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kColumns;
}

QVariant BatchTable::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal) return {};
  if (role == Qt::TextAlignmentRole) return int{Qt::AlignLeft | Qt::AlignVCenter};
  if (role != Qt::DisplayRole) return {};
  const QString titles[kColumns] = {tr("Photo"), tr("Size"), tr("Noise"), tr("Strength"),
                                    tr("State")};
  return titles[section];
}

Qt::ItemFlags BatchTable::flags(const QModelIndex& index) const {
  const Qt::ItemFlags flags = QAbstractTableModel::flags(index);
  const bool isChangeable = index.column() == kStrength && !list_.isRunning();
  return isChangeable ? flags | Qt::ItemIsEditable : flags;
}

QVariant BatchTable::data(const QModelIndex& index, int role) const {
  const auto row = static_cast<std::size_t>(index.row());
  if (!index.isValid() || row >= list_.entries().size()) return {};
  const BatchEntry& entry = list_.entries()[row];
  switch (role) {
    case Qt::DisplayRole:
      return textOf(entry, index.column());
    case Qt::DecorationRole:
      return index.column() == kPhoto ? thumbnailOf(entry) : QVariant();
    case Qt::EditRole:
      return index.column() == kStrength ? QVariant(strengthIndex(entry)) : QVariant();
    case Qt::ToolTipRole:
      return index.column() == kState ? stateLabel(entry) : pathOf(entry);
    case Qt::ForegroundRole:
      return index.column() == kState && entry.state == State::failed ? QVariant(style::kError)
                                                                      : QVariant();
    case kProgressRole:
      return entry.state == State::working ? QVariant(entry.progress) : QVariant();
    default:
      return {};
  }
}

QStringList BatchTable::longestTexts(Column column) {
  BatchEntry entry;
  entry.facts.emplace();
  entry.facts->width = entry.facts->height = 88888;
  entry.facts->psnr = 88.8;
  entry.facts->isBeyondLevels = true;
  if (column == kSize) return {sizeLabel(entry)};
  if (column == kNoise) return {noiseLabel(entry)};
  return column == kStrength ? strengths() : QStringList();
}

QVariant BatchTable::textOf(const BatchEntry& entry, int column) const {
  switch (column) {
    case kPhoto:
      return QFileInfo(pathOf(entry)).fileName();
    case kSize:
      return sizeLabel(entry);
    case kNoise:
      return noiseLabel(entry);
    case kStrength:
      return entry.treatment ? treatmentLabel(*entry.treatment) : tr("As all");
    default:
      return stateLabel(entry);
  }
}

QVariant BatchTable::thumbnailOf(const BatchEntry& entry) const {
  if (!entry.facts) return {};
  const Image& picture = entry.facts->thumbnail;
  QPixmap pixmap = QPixmap::fromImage(ScreenColors(picture.profile()).imageFor(picture.bitmap()));
  pixmap.setDevicePixelRatio(kThumbnailDensity);
  QIcon icon(pixmap);
  icon.addPixmap(pixmap, QIcon::Selected);  // A selected photo keeps its colours.
  return icon;
}

bool BatchTable::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (role != Qt::EditRole || !flags(index).testFlag(Qt::ItemIsEditable)) return false;
  const int chosen = value.toInt();
  if (chosen < 0 || chosen > static_cast<int>(treatments().size())) return false;
  list_.setTreatment(static_cast<std::size_t>(index.row()),
                     chosen == 0
                         ? std::nullopt
                         : std::optional(treatments()[static_cast<std::size_t>(chosen - 1)]));
  return true;
}

void BatchStateDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                               const QModelIndex& index) const {
  QStyledItemDelegate::paint(painter, option, index);
  const QVariant progress = index.data(BatchTable::kProgressRole);
  if (!progress.isValid()) return;
  constexpr int kMargin = 6;
  const QRect bar(option.rect.left() + kMargin, option.rect.bottom() - kBarHeight - kMargin,
                  option.rect.width() - 2 * kMargin, kBarHeight);
  QRectF done(bar);
  done.setWidth(bar.width() * progress.toDouble());
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  painter->setPen(Qt::NoPen);
  painter->setBrush(style::kPressed);
  painter->drawRoundedRect(bar, kBarHeight / 2.0, kBarHeight / 2.0);
  painter->setBrush(style::kAccentDark);
  painter->drawRoundedRect(done, kBarHeight / 2.0, kBarHeight / 2.0);
  painter->restore();
}

QWidget* BatchStrengthDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&,
                                             const QModelIndex&) const {
  auto* box = new QComboBox(parent);
  box->addItems(strengths());
  auto* delegate = const_cast<BatchStrengthDelegate*>(this);
  // The choice counts at once, not only when the focus goes elsewhere.
  connect(box, &QComboBox::activated, delegate, [delegate, box] {
    Q_EMIT delegate->commitData(box);
    Q_EMIT delegate->closeEditor(box);
  });
  return box;
}

void BatchStrengthDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const {
  auto* box = static_cast<QComboBox*>(editor);
  box->setCurrentIndex(index.data(Qt::EditRole).toInt());
  // Once it stands in its place.
  QMetaObject::invokeMethod(box, &QComboBox::showPopup, Qt::QueuedConnection);
}

void BatchStrengthDelegate::setModelData(QWidget* editor, QAbstractItemModel* model,
                                         const QModelIndex& index) const {
  model->setData(index, static_cast<QComboBox*>(editor)->currentIndex(), Qt::EditRole);
}

}  // namespace velmara
