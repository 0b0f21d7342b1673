// level_chart: prints the manual's chart as SVG: what is made of a photo's noise and of a level
// when it is saved, by the functions that the export uses.
#include <cmath>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "session/denoise_parameters.h"

namespace {

using velmara::DenoiseMode;
using velmara::FilterParameters;

constexpr double kNoisiest = 26.0, kCleanest = 45.0, kStep = 0.05;

struct Line {
  const char* name;
  const char* colour;
  DenoiseMode mode;
};

const Line kLines[] = {{"level 10", "#a62b1f", DenoiseMode::manual(10)},
                       {"level 7", "#b5762a", DenoiseMode::manual(7)},
                       {"level 4", "#8a8f3a", DenoiseMode::manual(4)},
                       {"level 1", "#3d7a5a", DenoiseMode::manual(1)},
                       {"Auto", "#26292d", DenoiseMode::automatic()}};

struct Panel {
  const char* title;
  double top, most;
  std::function<int(const FilterParameters&)> value;

  static constexpr double kLeft = 60.0, kWidth = 560.0, kHeight = 170.0;
  double x(double psnr) const {
    return kLeft + kWidth * (psnr - kNoisiest) / (kCleanest - kNoisiest);
  }
  double y(double number) const { return top + kHeight * (1.0 - number / most); }
};

void text(double x, double y, const char* anchor, const std::string& words) {
  std::printf("<text x=\"%.0f\" y=\"%.0f\" text-anchor=\"%s\">%s</text>\n", x, y, anchor,
              words.c_str());
}

void draw(const Panel& panel) {
  std::printf("<g>\n");
  text(Panel::kLeft, panel.top - 10.0, "start", panel.title);
  for (int number = 0; number <= static_cast<int>(panel.most); number += 5) {
    std::printf("<path stroke=\"#c3c7cb\" d=\"M%.0f %.1f h%.0f\"/>\n", Panel::kLeft,
                panel.y(number), Panel::kWidth);
    text(Panel::kLeft - 8.0, panel.y(number) + 4.0, "end", std::to_string(number));
  }
  for (const int psnr : {26, 30, 35, 40, 45}) {
    text(panel.x(psnr), panel.top + Panel::kHeight + 18.0, "middle", std::to_string(psnr) + " dB");
  }
  for (const Line& line : kLines) {
    std::string path;
    int last = -1;
    const int steps = static_cast<int>(std::lround((kCleanest - kNoisiest) / kStep));
    for (int i = 0; i <= steps; ++i) {
      const double psnr = kNoisiest + i * kStep;
      const int number = panel.value(velmara::exportParameters(psnr, line.mode));
      if (number == last && i != steps) continue;
      char point[64];
      std::snprintf(point, sizeof point, last < 0 ? "M%.1f %.1f" : " H%.1f V%.1f", panel.x(psnr),
                    panel.y(number));
      path += point;
      last = number;
    }
    std::printf(
        "<path fill=\"none\" stroke-width=\"2\" stroke=\"%s\" d=\"%s\"><title>%s</title></path>\n",
        line.colour, path.c_str(), line.name);
  }
  std::printf("</g>\n");
}

}  // namespace

int main() {
  std::printf(
      "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 760 520\" "
      "font-family=\"sans-serif\" "
      "font-size=\"13\" fill=\"#26292d\">\n<title>Noise and level, and what is made of "
      "them</title>\n"
      "<rect width=\"760\" height=\"520\" fill=\"#fff\"/>\n");
  draw({"Strength of the filter (sigma)", 40.0, 20.0,
        [](const FilterParameters& parameters) { return parameters.sigmaVal; }});
  draw({"Side of the search window, in pixels", 290.0, 20.0,
        [](const FilterParameters& parameters) { return parameters.searchWinSize; }});
  double y = 60.0;
  for (const Line& line : kLines) {
    std::printf("<path stroke-width=\"2\" stroke=\"%s\" d=\"M650 %.0f h24\"/>\n", line.colour, y);
    text(682.0, y + 4.0, "start", line.name);
    y += 24.0;
  }
  text(Panel::kLeft, 508.0, "start", "Left a noisy photo, right a clean one");
  std::printf("</svg>\n");
}
