#pragma once

#include <QRect>
#include <QSize>
#include <QString>

#include <memory>

namespace velmara::e2e {

/// Where the parts of the main window stand, by their names: the window's own interface file, laid
/// out without a display at the size the window has. Tells where to click and where to look, not
/// whether the program shows it.
class WindowPlan {
 public:
  explicit WindowPlan(const QSize& windowSize);
  ~WindowPlan();

  /// A part's rectangle from the window's top-left corner; empty for a name that is not there.
  QRect rectOf(const QString& name) const;
  /// The whole preview area, which the pictures stand in.
  QRect previewArea() const;
  /// The left half of the preview area in dual style, and the right one.
  QRect leftHalf() const;
  QRect rightHalf() const;
  /// The captions below the picture.
  QRect captions() const;

 private:
  struct Views;
  std::unique_ptr<Views> views_;
};

}  // namespace velmara::e2e
