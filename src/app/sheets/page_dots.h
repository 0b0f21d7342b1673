#pragma once

#include <QWidget>

namespace velmara {

/// A row of dots, one a page, that of the page shown filled. A click on a dot asks for its page.
class PageDots : public QWidget {
  Q_OBJECT

 public:
  /// No pages.
  explicit PageDots(QWidget* parent = nullptr);

  /// How many dots, and which is filled, from 0.
  void setPages(int count, int selected);

  QSize sizeHint() const override;

 Q_SIGNALS:
  /// The dot of a page, from 0, was clicked.
  void pageChosen(int index);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;

 private:
  QRectF dot(int index) const;

  int count_ = 0;
  int selected_ = 0;
};

}  // namespace velmara
