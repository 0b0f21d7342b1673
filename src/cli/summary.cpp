#include "cli/summary.h"

#include <cmath>

#include "base/fixed_text.h"

namespace velmara::cli {
namespace {

std::string sizeText(const Summary& summary) {
  return std::to_string(summary.width) + " x " + std::to_string(summary.height) + " px";
}

std::string parameterText(const Summary& summary) {
  if (summary.deepNoise) return "deep, noise " + noiseText(*summary.deepNoise);
  if (!summary.parameters) return "too small to filter, kept as it is";
  const FilterParameters& p = *summary.parameters;
  return "sigma " + std::to_string(p.sigmaVal) + ", template " + std::to_string(p.templateWinSize) +
         ", search " + std::to_string(p.searchWinSize);
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

std::string describe(const Summary& summary, bool details) {
  const std::string time = fixedText(summary.seconds, 2) + " s";
  if (!details) {
    std::string line = summary.input + " -> " + summary.output + ": " + sizeText(summary);
    if (summary.psnr) line += ", " + noiseText(*summary.psnr);
    return line + ", " + parameterText(summary) + ", " + time + "\n";
  }
  const std::string noise = summary.psnr ? noiseText(*summary.psnr) : "not measured";
  return "Photo:      " + summary.input + "\n" +  //
         "Noise:      " + noise + "\n" +          //
         "Filter:     " + parameterText(summary) + ", " + time + "\n" +
         "Result:     " + summary.output + ", " + sizeText(summary) + "\n" +
         "Comparison: " + summary.comparison.value_or("none (--compare FILE.png)") + "\n";
}

}  // namespace velmara::cli
