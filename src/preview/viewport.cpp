#include "preview/viewport.h"

#include <algorithm>
#include <cmath>

#include "session/labels.h"

namespace velmara {
namespace {

constexpr float kLargestZoomFactor = 2.0F;
constexpr float kSmallestZoomFactor = 0.5F;
constexpr double kZoomStep = 0.1;

// Compared in single precision.
bool overflows(double length, double room) {
  return static_cast<float>(length / room) > 1.0F;
}

// Whether a side of the picture that starts at `origin` covers a container of `room`.
bool covers(double origin, double length, double room) {
  return origin <= 0.0 && origin + length >= room;
}

// The factor is multiplied in before the division, and the last bits follow from that.
Size fitted(Size picture, Size container, double factor) {
  const auto width = static_cast<float>(picture.width / container.width);
  const auto height = static_cast<float>(picture.height / container.height);
  if (width <= height) {
    return {picture.width * factor / double{height}, container.height * factor};
  }
  return {container.width * factor, picture.height * factor / double{width}};
}

// The rectangle of a picture at another size, the place of it under the anchor kept where it is.
// Along a side where it does not overflow it is centred.
Rect rectAround(Point anchor, Rect before, Size picture, Size container) {
  const auto origin = [](double at, double from, double length, double newLength, double room) {
    if (newLength <= room || length <= 0.0) return (room - newLength) / 2.0;
    const double place = std::clamp((at - from) / length, 0.0, 1.0);
    return std::clamp(std::round(at - place * newLength), room - newLength, 0.0);
  };
  return {origin(anchor.x, before.x, before.width, picture.width, container.width),
          origin(anchor.y, before.y, before.height, picture.height, container.height),
          picture.width, picture.height};
}

std::optional<Viewport> stepped(Viewport view, double step, bool mayStep) {
  if (!mayStep) return std::nullopt;
  view.currentZooomFactor = static_cast<float>(double{view.currentZooomFactor} + step);
  return view;
}

}  // namespace

std::string_view logLineOf(RegionCase which) {
  switch (which) {
    case RegionCase::kBothOverflow:
      return "widthFactor >1.0 && heightFactor > 1.0 !!";
    case RegionCase::kHeightOverflows:
      return "heightFactor > 1.0!!";
    case RegionCase::kWidthOverflows:
      return "widthFactor > 1.0!!";
    case RegionCase::kWholePicture:
      break;
  }
  return "Else in Cropp Visible rect> 1.0!!";
}

Size Viewport::container() const {
  return {std::round(actualPreviewSize.width * devicePixelRatio),
          std::round(actualPreviewSize.height * devicePixelRatio)};
}

Viewport Viewport::withSize(PreviewSize size) const {
  Viewport view = *this;
  view.flag_current_Preview_Size = size;
  switch (size) {
    case PreviewSize::kActualSize:
    case PreviewSize::kFitToScreen:
      view.currentZooomFactor = 1.0F;
      return view.rescaled();
    case PreviewSize::kDoubleSize:
      view.currentZooomFactor = 2.0F;
      return view.rescaled();
  }
  view.rectPreviewPhoto = centredRect(photo, container());
  return view;
}

Viewport Viewport::rescaled(std::optional<Point> anchor) const {
  Viewport view = *this;
  const Size room = container();
  const Size picture =
      wholePixels(pictureForZoomFactor(flag_current_Preview_Size, photo, room, currentZooomFactor));
  view.rectPreviewPhoto = centredRect(picture, room);
  if (anchor) {
    const double width = actualPreviewSize.width;
    const double x = anchor->x >= width ? anchor->x - width : anchor->x;
    const Point place{x * devicePixelRatio,
                      (actualPreviewSize.height - anchor->y) * devicePixelRatio};
    view.rectPreviewPhoto = rectAround(place, rectPreviewPhoto, picture, room);
  }
  return view;
}

std::optional<Viewport> Viewport::zoomedIn() const {
  return stepped(*this, kZoomStep, currentZooomFactor < kLargestZoomFactor);
}

std::optional<Viewport> Viewport::zoomedOut() const {
  return stepped(*this, -kZoomStep, currentZooomFactor > kSmallestZoomFactor);
}

std::optional<Viewport> Viewport::dragged(Point from, Point to) const {
  const Size room = container();
  Viewport view = *this;
  Rect& frame = view.rectPreviewPhoto;
  const bool movesAcross = overflows(frame.width, room.width);
  const bool movesUp = overflows(frame.height, room.height);
  if (movesAcross) {
    frame.x += double{static_cast<float>((to.x - from.x) * devicePixelRatio)};
    if (!covers(frame.x, frame.width, room.width)) return std::nullopt;
  }
  if (movesUp) {
    frame.y += double{static_cast<float>((from.y - to.y) * devicePixelRatio)};
    if (!covers(frame.y, frame.height, room.height)) return std::nullopt;
  }
  if (!movesAcross && !movesUp) return std::nullopt;
  return view;
}

Viewport Viewport::movedBy(double dx, double dy) const {
  const auto moved = [](double origin, double length, double room, double by) {
    return overflows(length, room) ? std::clamp(origin + by, room - length, 0.0) : origin;
  };
  Viewport view = *this;
  Rect& frame = view.rectPreviewPhoto;
  frame.x = moved(frame.x, frame.width, container().width, dx * devicePixelRatio);
  frame.y = moved(frame.y, frame.height, container().height, -dy * devicePixelRatio);
  return view;
}

PixelRect Viewport::painted() const {
  return paintedRect(rectPreviewPhoto, container());
}

PixelRect Viewport::seen() const {
  const PixelRect place = painted();
  const Size room = container();
  PixelRect visible =
      intersection(place, {0, 0, static_cast<int>(room.width), static_cast<int>(room.height)});
  visible.x -= place.x;
  visible.y -= place.y;
  return visible;
}

RegionCase Viewport::regionCase() const {
  const bool isWider = overflows(rectPreviewPhoto.width, container().width);
  const bool isHigher = overflows(rectPreviewPhoto.height, container().height);
  if (isWider) return isHigher ? RegionCase::kBothOverflow : RegionCase::kWidthOverflows;
  return isHigher ? RegionCase::kHeightOverflows : RegionCase::kWholePicture;
}

Size pictureForZoomFactor(PreviewSize size, Size photo, Size container, float factor) {
  if (size == PreviewSize::kFitToScreen) return fitted(photo, container, double{factor});
  return {photo.width * double{factor}, photo.height * double{factor}};
}

Size wholePixels(Size size) {
  return {std::max(1.0, std::round(size.width)), std::max(1.0, std::round(size.height))};
}

Rect centredRect(Size picture, Size container) {
  return {(container.width - picture.width) / 2.0, (container.height - picture.height) / 2.0,
          picture.width, picture.height};
}

// Rounding down keeps a picture that covers its container covering it: both its edges are compared
// with whole numbers.
PixelRect paintedRect(Rect picture, Size container) {
  const double top = container.height - picture.y - picture.height;
  return {static_cast<int>(std::floor(picture.x)), static_cast<int>(std::floor(top)),
          static_cast<int>(std::lround(picture.width)),
          static_cast<int>(std::lround(picture.height))};
}

std::string zoomLabel(float factor) {
  return percentLabel(double{factor} * 100.0);
}

}  // namespace velmara
