#pragma once

#include <QRectF>
#include <QWidget>

class QPainter;

namespace velmara {

/// Draws the noise gauge into a frame: ten bars, as many filled as the chosen strength, and a mark
/// under the one that the noise asks for. Both 0 to 10; 0 fills or marks none.
void drawNoiseGauge(QPainter& painter, const QRectF& frame, int asked, int chosen);

/// The noise gauge of the bottom bar, which screen readers know by its name and description.
class NoiseGaugeView : public QWidget {
  Q_OBJECT

 public:
  /// Without noise.
  explicit NoiseGaugeView(QWidget* parent = nullptr);

  /// What is shown, and in words, as its tooltip too.
  void setValues(int asked, int chosen, const QString& text);

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  int asked_ = 0;
  int chosen_ = 0;
};

}  // namespace velmara
