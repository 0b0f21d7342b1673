#include "cli/noise_plot.h"

#include <QString>
#include <QXmlStreamWriter>

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "base/fixed_text.h"
#include "cli/commands.h"
#include "session/denoise_parameters.h"
#include "session/labels.h"

namespace velmara::cli {
namespace {

using Attributes = std::vector<std::pair<QString, QString>>;

constexpr double kLeastPsnr = 20.0, kMostPsnr = 50.0;
constexpr double kStrengths = 10.0;
const char* const kInk = "#3f444a";
const char* const kFaint = "#c9ccd0";

// One of the two diagrams: where its values lie on the picture.
struct Diagram {
  double left, top, width, height;
  double firstX, lastX, lastY;

  double x(double value) const {
    const double part = (std::clamp(value, firstX, lastX) - firstX) / (lastX - firstX);
    return left + width * part;
  }
  double y(double value) const {
    return top + height * (1.0 - std::clamp(value / lastY, 0.0, 1.0));
  }
};

QString number(double value) {
  return QString::fromStdString(fixedText(value, 1));
}

// A name's bytes as XML can hold them.
QString xmlText(const std::string& text) {
  QString plain = QString::fromStdString(text);
  for (QChar& c : plain) {
    if (c < QChar(' ') || c > QChar(0xfffd) || c.isSurrogate()) c = QChar(0xfffd);
  }
  return plain;
}

// The strength of ten that automatic mode exports with.
int strengthAt(double psnr) {
  return strengthOfTen(exportParameters(psnr, DenoiseMode::automatic()).sigmaVal);
}

class Drawing {
 public:
  Drawing() : xml_(&text_) {
    xml_.writeStartElement("svg");
    xml_.writeAttribute("xmlns", "http://www.w3.org/2000/svg");
    put({{"width", "640"}, {"height", "430"}, {"viewBox", "0 0 640 430"}});
    put({{"font-family", "sans-serif"}, {"font-size", "12"}});
    rectangle(0, 0, 640, 430, "#ffffff");
  }

  void rectangle(double x, double y, double width, double height, const char* colour) {
    element("rect", {{"x", number(x)},
                     {"y", number(y)},
                     {"width", number(width)},
                     {"height", number(height)},
                     {"fill", colour}});
  }
  void line(double x1, double y1, double x2, double y2, const char* colour,
            const char* dashes = "none") {
    element("line", {{"x1", number(x1)},
                     {"y1", number(y1)},
                     {"x2", number(x2)},
                     {"y2", number(y2)},
                     {"stroke", colour},
                     {"stroke-dasharray", dashes}});
  }
  void curve(const QString& points, const char* colour) {
    element("polyline",
            {{"points", points}, {"fill", "none"}, {"stroke", colour}, {"stroke-width", "2"}});
  }
  void words(double x, double y, const QString& text, const char* anchor = "start",
             const char* weight = "normal") {
    xml_.writeStartElement("text");
    put({{"x", number(x)},
         {"y", number(y)},
         {"text-anchor", anchor},
         {"font-weight", weight},
         {"fill", kInk}});
    xml_.writeCharacters(text);
    xml_.writeEndElement();
  }
  void axes(const Diagram& d, int stepX, int stepY) {
    for (int value = 0; value <= static_cast<int>(d.lastY); value += stepY) {
      line(d.left, d.y(value), d.left + d.width, d.y(value), kFaint);
      words(d.left - 6, d.y(value) + 4, QString::number(value), "end");
    }
    for (int value = static_cast<int>(d.firstX); value <= static_cast<int>(d.lastX);
         value += stepX) {
      words(d.x(value), d.top + d.height + 16, QString::number(value), "middle");
    }
  }

  std::string finish() {
    xml_.writeEndElement();
    return text_.toStdString() + "\n";
  }

 private:
  void element(const char* name, const Attributes& attributes) {
    xml_.writeEmptyElement(QLatin1String(name));
    put(attributes);
  }
  void put(const Attributes& attributes) {
    for (const auto& [name, value] : attributes) xml_.writeAttribute(name, value);
  }

  QString text_;
  QXmlStreamWriter xml_;
};

void drawStrength(Drawing& drawing, double psnr) {
  const Diagram d{60, 70, 560, 110, kLeastPsnr, kMostPsnr, kStrengths};
  drawing.words(d.left, d.top - 14, "Strength of ten by noise level in dB; more noise to the left");
  constexpr int kStepsPerDecibel = 20;
  const int steps = static_cast<int>((kMostPsnr - kLeastPsnr) * kStepsPerDecibel);
  const auto at = [](int step) { return kLeastPsnr + double(step) / kStepsPerDecibel; };
  for (int begin = 0, end = 0; begin < steps; begin = end) {
    const int strength = strengthAt(at(begin));
    for (end = begin; end < steps && strengthAt(at(end)) == strength;) ++end;
    const double left = d.x(at(begin)), top = d.y(strength);
    drawing.rectangle(left, top, d.x(at(end)) - left - 0.5, d.top + d.height - top, "#9dc3e6");
  }
  drawing.axes(d, 5, 5);
  if (psnr <= 0.0) return;
  const double x = d.x(psnr);
  drawing.line(x, d.top - 4, x, d.top + d.height, "#c00000");
  const bool isRight = x > d.left + d.width / 2;
  drawing.words(x + (isRight ? -6 : 6), d.top + 8, QString::fromStdString(noiseText(psnr)),
                isRight ? "end" : "start", "bold");
}

void drawDeviation(Drawing& drawing, const DeepNoise& noise) {
  float most = DeepNoise::kReachOfLevels + 3.0F;
  for (const auto& channel : noise.deviation) {
    most = std::max(most, *std::max_element(channel.begin(), channel.end()));
  }
  const int step = most > 50.0F ? 20 : 5;
  const Diagram d{60, 240, 560, 150, 0, 256, step * std::ceil(double{most} / step)};
  drawing.words(d.left, d.top - 14,
                "Deviation of the noise by brightness; beyond the dashed line use Deep");
  drawing.axes(d, 64, step);
  const double reach = d.y(double{DeepNoise::kReachOfLevels});
  drawing.line(d.left, reach, d.left + d.width, reach, kInk, "5 4");
  const std::array<const char*, 3> colours{"#d03030", "#2c9a3c", "#3060d0"};
  for (std::size_t c = 0; c < colours.size(); ++c) {
    QString points;
    for (int level = 0; level < 256; level += 5) {
      const float deviation = noise.deviation[c][static_cast<std::size_t>(level)];
      points += number(d.x(level)) + "," + number(d.y(double{deviation})) + " ";
    }
    drawing.curve(points.trimmed(), colours[c]);
  }
}

}  // namespace

std::string noisePlotSvg(const NoisePlot& plot) {
  Drawing drawing;
  const bool isMeasured = plot.psnr > 0.0;
  drawing.words(20, 26, xmlText(plot.name), "start", "bold");
  drawing.words(
      620, 26,
      isMeasured ? "Auto: " + QString::fromStdString(strengthLabel(
                                  exportParameters(plot.psnr, DenoiseMode::automatic()).sigmaVal))
                 : QString("Too small to filter"),
      "end", "bold");
  drawStrength(drawing, plot.psnr);
  drawDeviation(drawing, plot.noise);
  return drawing.finish();
}

}  // namespace velmara::cli
