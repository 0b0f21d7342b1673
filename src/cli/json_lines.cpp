#include "cli/json_lines.h"

#include <QJsonDocument>

#include <cmath>
#include <cstddef>

namespace velmara::cli {

std::string jsonLine(const QJsonObject& object) {
  return QJsonDocument(object).toJson(QJsonDocument::Compact).toStdString();
}

QJsonObject jsonOf(const FilterParameters& parameters) {
  return {{"sigma", parameters.sigmaVal},
          {"template", parameters.templateWinSize},
          {"search", parameters.searchWinSize}};
}

QJsonObject jsonOf(const DeepNoise& noise) {
  QJsonObject object;
  const char* const names[] = {"red", "green", "blue"};
  for (std::size_t c = 0; c < 3; ++c) {
    const auto at = [&](std::size_t level) { return double{noise.deviation[c][level]}; };
    object[names[c]] = QJsonObject{{"dark", at(64)}, {"middle", at(128)}, {"bright", at(192)}};
  }
  return object;
}

QJsonValue jsonOfPsnr(double psnr) {
  return std::isinf(psnr) ? QJsonValue("inf") : QJsonValue(psnr);
}

}  // namespace velmara::cli
