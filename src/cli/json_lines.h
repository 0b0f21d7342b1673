#pragma once

#include <QJsonObject>
#include <QString>

#include <string>

#include "engine/deep/deep_noise.h"
#include "session/denoise_parameters.h"

namespace velmara::cli {

/// A path or another text in the file system's own bytes.
inline QString jsonText(const std::string& bytes) {
  return QString::fromStdString(bytes);
}

/// The object on one line, without the line end.
std::string jsonLine(const QJsonObject& object);

/// {"sigma", "template", "search"}.
QJsonObject jsonOf(const FilterParameters& parameters);
/// {"red", "green", "blue"}, each {"dark", "middle", "bright"}.
QJsonObject jsonOf(const DeepNoise& noise);
/// A noise level in dB, or "inf".
QJsonValue jsonOfPsnr(double psnr);

}  // namespace velmara::cli
