#include "app/batch/batch_texts.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QLocale>

#include <cmath>

namespace velmara {
namespace {

using State = BatchEntry::State;

struct BatchText {
  Q_DECLARE_TR_FUNCTIONS(Batch)
};

QString fileName(const BatchEntry& entry) {
  return QFileInfo(QFile::decodeName(entry.photo.path.c_str())).fileName();
}

}  // namespace

const std::vector<Treatment>& treatments() {
  static const std::vector<Treatment> all = [] {
    std::vector<Treatment> made{{DenoiseMode::automatic(), false}};
    for (int level = 1; level <= 10; ++level) made.push_back({DenoiseMode::manual(level), false});
    made.push_back({DenoiseMode::automatic(), true});
    return made;
  }();
  return all;
}

QString treatmentLabel(const Treatment& treatment) {
  if (treatment.isDeep) return BatchText::tr("Deep");
  if (treatment.mode.isAutoMode) return BatchText::tr("Auto");
  return BatchText::tr("Level %1").arg(treatment.mode.denoiseLevelValue);
}

QString sizeLabel(const BatchEntry& entry) {
  if (!entry.facts) return {};
  return QStringLiteral("%1 × %2").arg(entry.facts->width).arg(entry.facts->height);
}

QString noiseLabel(const BatchEntry& entry) {
  if (!entry.facts || entry.facts->psnr == 0.0) return {};
  if (std::isinf(entry.facts->psnr)) return BatchText::tr("none found");
  const QString level = QLocale().toString(entry.facts->psnr, 'f', 1);
  return entry.facts->isBeyondLevels ? BatchText::tr("%1 dB, try Deep").arg(level)
                                     : BatchText::tr("%1 dB").arg(level);
}

QString stateLabel(const BatchEntry& entry) {
  const QString reason = QString::fromStdString(entry.reason);
  switch (entry.state) {
    case State::waiting:
      return {};
    case State::working:
      return BatchText::tr("%1 %").arg(std::lround(entry.progress * 100.0));
    case State::written:
      return BatchText::tr("Done");
    case State::skipped:
      return BatchText::tr("Passed over: %1").arg(reason);
    case State::cancelled:
      return BatchText::tr("Stopped");
    case State::failed:
      break;
  }
  return BatchText::tr("Failed: %1").arg(reason);
}

QString timeLeftLabel(Seconds left) {
  constexpr double kMinute = 60.0;
  const auto minutes = static_cast<int>(std::lround(left.count() / kMinute));
  if (left.count() < kMinute) return BatchText::tr("Less than a minute left");
  if (minutes < 60) return BatchText::tr("About %n minute(s) left", "", minutes);
  return BatchText::tr("About %n hour(s) left", "", (minutes + 30) / 60);
}

QString summaryLabel(const BatchCounts& counts) {
  QStringList parts{
      BatchText::tr("%1 of %n photo(s) denoised", "", counts.all).arg(counts.written)};
  if (counts.skipped > 0) parts << BatchText::tr("%1 passed over").arg(counts.skipped);
  if (counts.failed > 0) parts << BatchText::tr("%1 failed").arg(counts.failed);
  if (counts.cancelled > 0) parts << BatchText::tr("%1 stopped").arg(counts.cancelled);
  return parts.join(QStringLiteral(", "));
}

QStringList failureLines(const std::vector<BatchEntry>& entries) {
  QStringList lines;
  for (const BatchEntry& entry : entries) {
    if (entry.state != State::failed) continue;
    lines << QStringLiteral("%1: %2").arg(fileName(entry), QString::fromStdString(entry.reason));
  }
  return lines;
}

}  // namespace velmara
