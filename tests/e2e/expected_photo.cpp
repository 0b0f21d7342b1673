#include "e2e/expected_photo.h"

#include <QJsonDocument>
#include <QJsonObject>

#include "session/denoise_parameters.h"
#include "support/run_program.h"

namespace velmara::e2e {
namespace {

using testing_support::runProgram;

Bitmap bitmapOf(const QImage& image) {
  const QImage rgb = image.convertToFormat(QImage::Format_RGBX8888);  // Rows without a gap.
  return Bitmap::copyOf({rgb.constBits(), static_cast<std::size_t>(rgb.sizeInBytes())}, rgb.width(),
                        rgb.height(), 4);
}

QImage imageOf(const Bitmap& bitmap) {
  const QImage shared(bitmap.bytes().data(), bitmap.width(), bitmap.height(),
                      static_cast<qsizetype>(bitmap.rowBytes()), QImage::Format_RGBX8888);
  return shared.convertToFormat(QImage::Format_RGB32);
}

double measuredNoise(const std::string& path) {
  const std::string line = runProgram({VELMARA_PROGRAM, "info", "--json", path}).output;
  return QJsonDocument::fromJson(QByteArray::fromStdString(line)).object()["psnr"].toDouble();
}

}  // namespace

ExpectedPhoto::ExpectedPhoto(const std::string& path) : psnr_(measuredNoise(path)) {
  const std::string decoded = folder_.file("upright.png");
  runProgram({"convert", path, "-auto-orient", decoded});
  upright_ = QImage(QString::fromStdString(decoded)).convertToFormat(QImage::Format_RGB32);
  if (!upright_.isNull()) picture_ = PicturePyramid(bitmapOf(upright_));
}

QImage ExpectedPhoto::original(const QSize& size, const QRect& part) const {
  const ScaledPicture picture(
      picture_, {static_cast<double>(size.width()), static_cast<double>(size.height())});
  return imageOf(picture.render({part.x(), part.y(), part.width(), part.height()}));
}

QImage ExpectedPhoto::denoised(const QImage& region, float zoomFactor, int level) const {
  const DenoiseMode mode = level == 0 ? DenoiseMode::automatic() : DenoiseMode::manual(level);
  const double psnr = effectivePsnr(static_cast<float>(psnr_), false, zoomFactor);
  const FilterParameters p =
      filterParameters(mapNoiseToParameters(psnr, mode, false, {}).parameters, mode);
  const std::string in = folder_.file("region.png");
  const std::string out = folder_.file("region-denoised.png");
  region.save(QString::fromStdString(in));
  runProgram({VELMARA_PROGRAM, "denoise", "--force", "--quiet", "--template",
              std::to_string(p.templateWinSize), "--search", std::to_string(p.searchWinSize),
              "--sigma", std::to_string(p.sigmaVal), "-o", out, in});
  return QImage(QString::fromStdString(out)).convertToFormat(QImage::Format_RGB32);
}

}  // namespace velmara::e2e
