#pragma once

#include <QAbstractTableModel>
#include <QHash>
#include <QImage>
#include <QStyledItemDelegate>

#include "session/batch/batch_list.h"

namespace velmara {

/// The photos of a batch as the rows of a table. Main thread.
class BatchTable : public QAbstractTableModel {
  Q_OBJECT

 public:
  /// What the columns show, from the left.
  enum Column { kPhoto, kSize, kNoise, kStrength, kState, kColumns };
  /// 0.0 to 1.0 while the photo is worked on, else nothing.
  static constexpr int kProgressRole = Qt::UserRole;

  /// The list must outlive it.
  explicit BatchTable(BatchList& list, QObject* parent = nullptr);

  /// What a view asks of a table; any other role of a cell has nothing.
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  /// The strength, as an index of treatments() from 1; 0 is that of all.
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;

  /// Texts as long as a column's can be; none for those that may be of any length.
  static QStringList longestTexts(Column column);

 private:
  QVariant textOf(const BatchEntry& entry, int column) const;
  QVariant thumbnailOf(const BatchEntry& entry) const;

  BatchList& list_;
  int rows_ = 0;
};

/// Draws the state of a photo: words, and a bar under them while it is worked on.
class BatchStateDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;
  /// The words, and the bar where the cell has progress.
  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
};

/// Lets the strength of a photo be chosen from a list.
class BatchStrengthDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;
  /// The list, which opens at once; a choice counts at once.
  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const override;
  void setEditorData(QWidget* editor, const QModelIndex& index) const override;
  void setModelData(QWidget* editor, QAbstractItemModel* model,
                    const QModelIndex& index) const override;
};

}  // namespace velmara
