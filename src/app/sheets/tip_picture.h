#pragma once

#include <QWidget>

#include "app/sheets/tips.h"

namespace velmara {

/// The picture of a tip, drawn from the program's icons and from photos it has filtered itself.
class TipPicture : public QWidget {
  Q_OBJECT

 public:
  /// Of the first tip.
  explicit TipPicture(QWidget* parent = nullptr);

  /// Which tip's picture it is.
  TipTopic topic() const { return topic_; }
  void setTopic(TipTopic topic);

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  TipTopic topic_ = TipTopic::kOpen;
};

}  // namespace velmara
