#include <QJsonObject>

#include <cmath>
#include <cstdio>
#include <string>
#include <utility>

#include "base/fixed_text.h"
#include "cli/commands.h"
#include "cli/json_lines.h"
#include "cli/noise_plot.h"
#include "cli/terminal.h"
#include "engine/deep/deep_denoise.h"
#include "engine/denoise_algo_implementation.h"
#include "imaging/file_format.h"
#include "imaging/image_reader.h"
#include "imaging/rotate_with_exif.h"
#include "platform/bundle.h"
#include "platform/whole_file.h"
#include "session/denoise_parameters.h"
#include "session/labels.h"
#include "session/loaded_photo.h"

namespace velmara::cli {
namespace {

struct PhotoInfo {
  PhotoFile photo;
  /// As shown, upright.
  std::int64_t width = 0, height = 0;
  double psnr = 0.0;
  DeepNoise noise;
  FilterParameters parameters;
  bool isFiltered = true;
};

Result<PhotoInfo> measure(const std::string& input) {
  auto opened = openPhoto(input);
  if (!opened) return Error{opened.error()};
  const auto photo = loadPixels(std::move(opened).value());
  if (!photo) return Error{photo.error()};
  PhotoInfo info;
  info.photo = photo->record;
  info.width = info.photo.width;
  info.height = info.photo.height;
  if (exchangesSides(info.photo.orientation().value_or(1))) std::swap(info.width, info.height);
  const Image picture = atOwnSize(photo->image);
  info.psnr = DenoiseAlgoImplementation(commandLineEngine()).getPSNRofImage(picture);
  info.noise = measureNoise(picture.bitmap());
  info.isFiltered = isLargeEnoughToFilter(info.photo);
  info.parameters = exportParameters(info.psnr, DenoiseMode::automatic());
  return info;
}

void printJson(const PhotoInfo& info) {
  const PhotoFile& photo = info.photo;
  QJsonObject object{{"path", jsonText(photo.filePath)},
                     {"name", jsonText(photo.fileName)},
                     {"folder", jsonText(photo.fileContainerFolderName)},
                     {"bytes", jsonText(photo.fileSize).toLongLong()},
                     {"width", static_cast<qint64>(info.width)},
                     {"height", static_cast<qint64>(info.height)},
                     {"orientation", photo.orientation().value_or(1)},
                     {"filtered", info.isFiltered},
                     {"auto", jsonOf(info.parameters)},
                     {"noise", jsonOf(info.noise)},
                     {"beyondLevels", info.noise.isBeyondLevels()}};
  object["psnr"] = jsonOfPsnr(info.psnr);
  if (photo.fileCreationDate) object["created"] = jsonText(*photo.fileCreationDate);
  std::puts(jsonLine(object).c_str());
}

void printText(const PhotoInfo& info) {
  const PhotoFile& photo = info.photo;
  const FilterParameters& p = info.parameters;
  std::printf("%s: %s, %s, orientation %d, created %s, noise %s, ", photo.filePath.c_str(),
              dimensionsLabel(info.photo).c_str(), sizeLabel(photo.fileSize).c_str(),
              info.photo.orientation().value_or(1),
              photo.fileCreationDate.value_or("at an unknown time").c_str(),
              noiseText(info.psnr).c_str());
  if (info.isFiltered) {
    std::printf("auto: sigma %d, template %d, search %d, deep: %s%s\n", p.sigmaVal,
                p.templateWinSize, p.searchWinSize, noiseText(info.noise).c_str(),
                info.noise.isBeyondLevels() ? ", beyond the levels, use --deep" : "");
  } else {
    std::puts("too small to filter");
  }
}

Status writePlot(const PhotoInfo& info, const std::string& path) {
  const std::string svg = noisePlotSvg({info.photo.fileName, info.psnr, info.noise});
  return createFile(path, {reinterpret_cast<const std::uint8_t*>(svg.data()), svg.size()});
}

}  // namespace

std::string noiseText(const DeepNoise& noise) {
  if (noise.isNone()) return "not found";
  std::string text = "sigma";
  for (const auto& channel : noise.deviation) text += " " + fixedText(double{channel[128]}, 1);
  return text;
}

std::string noiseText(double psnr) {
  return std::isinf(psnr) ? "no noise found" : fixedText(psnr, 2) + " dB";
}

int run(const InfoOptions& options) {
  return onEachPhoto(options.inputs, [&](const std::string& input) -> Status {
    const auto info = measure(input);
    if (!info) return Error{info.error()};
    if (options.plot) {
      if (Status written = writePlot(*info, *options.plot); !written) return written;
    }
    options.json ? printJson(*info) : printText(*info);
    std::fflush(stdout);
    return Done{};
  });
}

int run(const FormatsOptions& /*options*/) {
  for (const FormatFacts& facts : fileFormats()) {
    std::string extensions;
    for (const std::string_view extension : facts.extensions) {
      if (!extension.empty()) extensions += " ." + std::string(extension);
    }
    const bool isWritten = !facts.word.empty();
    std::printf("%-10s%-14s%-26s%s\n", std::string(facts.name).c_str(),
                isDecoderInstalled(facts) ? "read" : "not installed",
                isWritten ? ("written, --format " + std::string(facts.word)).c_str() : "",
                extensions.c_str());
  }
  return 0;
}

int run(const CalibrateOptions& options) {
  const std::string path = mainBundle().pathForResource("noisy.png");
  const auto picture = readImage(path);
  if (!picture) {
    std::fprintf(stderr, "velmara: %s: %s\n", path.c_str(), picture.error().c_str());
    return 1;
  }
  const FilterParameters& p = kFirstCalibration;
  const auto rate = DenoiseAlgoImplementation(commandLineEngine())
                        .calculateProcessingSpeedForTestImage(*picture, p.templateWinSize,
                                                              p.searchWinSize, p.sigmaVal);
  if (options.json) {
    QJsonObject object = jsonOf(p);
    object["pixelsPerSecond"] = static_cast<qint64>(rate);
    object["width"] = picture->bitmap().width();
    object["height"] = picture->bitmap().height();
    std::puts(jsonLine(object).c_str());
  } else {
    std::printf("%lld pixels per second on one thread (template %d, search %d, sigma %d)\n",
                static_cast<long long>(rate), p.templateWinSize, p.searchWinSize, p.sigmaVal);
  }
  return 0;
}

}  // namespace velmara::cli
