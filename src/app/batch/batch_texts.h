#pragma once

#include <QString>
#include <QStringList>

#include <vector>

#include "session/batch/batch_list.h"

namespace velmara {

/// The strengths there are to choose from: automatic, the ten levels, and deep.
const std::vector<Treatment>& treatments();
/// "Auto", "Level 3", "Deep".
QString treatmentLabel(const Treatment& treatment);

/// "4000 × 3000"; empty while it is not known.
QString sizeLabel(const BatchEntry& entry);
/// "31.4 dB", with a word where only Deep helps; empty while it is not known.
QString noiseLabel(const BatchEntry& entry);
/// What is done with a photo, or became of it.
QString stateLabel(const BatchEntry& entry);

/// "About 3 minutes left".
QString timeLeftLabel(Seconds left);
/// "48 of 50 photos are denoised, 1 was passed over, 1 failed."
QString summaryLabel(const BatchCounts& counts);
/// A line for each photo that failed: its name and why.
QStringList failureLines(const std::vector<BatchEntry>& entries);

}  // namespace velmara
