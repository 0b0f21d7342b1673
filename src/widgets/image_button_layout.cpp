#include "widgets/image_button_layout.h"

#include <algorithm>
#include <optional>

namespace velmara {
namespace {

constexpr int kSmallestSize = 5;
constexpr int kLargestSize = 50;

/// The first size of the search whose text does not fit, and the text's size at it.
struct Misfit {
  int size;
  QSizeF measured;
};

std::optional<Misfit> firstMisfit(const QString& text, TitleFont::Face face, const QSizeF& box,
                                  const TextMeasurer& measure) {
  for (int size = kSmallestSize; size <= kLargestSize; ++size) {
    const QSizeF measured = measure(text, {face, size, false});
    if (measured.width() > box.width() || measured.height() > box.height()) {
      return Misfit{size, measured};
    }
  }
  return std::nullopt;
}

}  // namespace

ThreePartRects threePartRects(const QRectF& bounds, double startWidth, double endWidth) {
  const double start = std::clamp(startWidth, 0.0, bounds.width());
  const double end = std::clamp(endWidth, 0.0, bounds.width() - start);
  return {.start = {bounds.x(), bounds.y(), start, bounds.height()},
          .middle = {bounds.x() + start, bounds.y(), bounds.width() - start - end, bounds.height()},
          .end = {bounds.right() - end, bounds.y(), end, bounds.height()}};
}

ImageButtonPattern patternFor(const ImageButtonFields& f, bool enabled, bool on, bool isMouseDown) {
  if (enabled && on) {
    if (isMouseDown) return {f.imgOnStateDwn_St, f.imgOnStateDwn_Md, f.imgOnStateDwn_En};
    return {f.imgOnState_St, f.imgOnState_Md, f.imgOnState_En};
  }
  if (enabled) {
    if (isMouseDown) return {f.imgOffStateDwn_St, f.imgOffStateDwn_Md, f.imgOffStateDwn_En};
    return {f.imgOffState_St, f.imgOffState_Md, f.imgOffState_En};
  }
  if (on) return {f.imgOnStateDis_St, f.imgOnStateDis_Md, f.imgOnStateDis_En};
  return {f.imgOffStateDis_St, f.imgOffStateDis_Md, f.imgOffStateDis_En};
}

QColor titleColorFor(const ImageButtonFields& fields, bool enabled, bool on) {
  if (enabled) return on ? fields.colorOnState : fields.colorOffState;
  return on ? fields.colorOnStateDis : fields.colorOffStateDis;
}

QString splitIntoTwoLines(const QString& title, const QString& separator) {
  if (separator.isEmpty()) return title;
  const qsizetype at = title.indexOf(separator);
  if (at < 0) return title;
  return title.left(at) + QLatin1Char('\n') + title.mid(at + separator.size());
}

QRectF titleBox(const ImageButtonFields& fields, const QRectF& rect, bool multi) {
  const int top = multi ? fields.marginTopML : fields.marginTop;
  const int bottom = multi ? fields.marginBottomML : fields.marginBottom;
  return {rect.x() + fields.marginLeft, rect.y() + top,
          rect.width() - (fields.marginLeft + fields.marginRight), rect.height() - (top + bottom)};
}

void layoutTitle(ImageButtonFields& fields, const QRectF& rect, bool multi,
                 const TextMeasurer& measure) {
  if (multi) fields.mTitle = splitIntoTwoLines(fields.mTitle, fields.multiLineStr);
  const QRectF box = titleBox(fields, rect, multi);
  const auto misfit =
      firstMisfit(fields.mTitle, TitleFont::Face::kLucidaGrande, box.size(), measure);
  if (!misfit) return;

  // The size is searched in one font and drawn in another, which is meant so.
  TitleFont font{TitleFont::Face::kSystem, misfit->size - 1, false};
  constexpr double kBoldAbove = 200.0;
  constexpr double kBoldBelow = 245.0;
  constexpr int kBoldSize = 20;
  if (fields.makeBoldFont && misfit->measured.width() > kBoldAbove &&
      misfit->measured.width() < kBoldBelow) {
    font = {TitleFont::Face::kLucidaGrande, kBoldSize, true};
  }
  const TextAttributes attributes{
      .font = font, .color = fields.colorText, .wordWraps = multi, .centred = true};
  const QSizeF size = measure(fields.mTitle, font);
  const QRectF place = box.translated(0, (box.height() - size.height()) / 2);
  (multi ? fields.dictM : fields.dictNoM) = attributes;
  (multi ? fields.sizeM : fields.sizeNoM) = size;
  (multi ? fields.rectTextM : fields.rectTextNoM) = place;
}

TextAttributes layoutTitleOlder(ImageButtonFields& fields, const QString& title, const QSizeF& size,
                                const TextMeasurer& measure) {
  const auto misfit = firstMisfit(title, TitleFont::Face::kSystem, size, measure);
  if (!misfit) return {};
  const TextAttributes attributes{.font = {TitleFont::Face::kSystem, misfit->size - 1, false},
                                  .color = fields.colorText,
                                  .wordWraps = fields.isMultiLine,
                                  .centred = true};
  const double height = measure(title, attributes.font).height();
  if (size.height() > height) {
    const QRectF before = fields.rectText;
    fields.rectText =
        QRectF(before.x(), before.y() + (size.height() - height) / 2, before.width(), height);
  }
  return attributes;
}

bool canBreakTitle(const ImageButtonFields& fields) {
  const bool hasSeparator =
      !fields.multiLineStr.isEmpty() && fields.oTitle.contains(fields.multiLineStr);
  return hasSeparator || fields.oTitle.contains(QLatin1Char('\n'));
}

ChosenTitle chooseTitle(const ImageButtonFields& fields, bool isMouseDown) {
  if (!canBreakTitle(fields)) return {fields.oTitle, fields.rectTextNoM, fields.dictNoM};
  const double areaM = fields.sizeM.width() * fields.sizeM.height();
  const double areaNoM = fields.sizeNoM.width() * fields.sizeNoM.height();
  ChosenTitle chosen = areaM > areaNoM
                           ? ChosenTitle{fields.mTitle, fields.rectTextM, fields.dictM}
                           : ChosenTitle{fields.oTitle, fields.rectTextNoM, fields.dictNoM};
  if (isMouseDown) chosen.rect.translate(1, 1);
  return chosen;
}

}  // namespace velmara
