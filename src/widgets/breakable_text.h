#pragma once

#include <QString>

namespace velmara {

/// The text with places to break a line inside words that are too long for one, file names mostly.
/// The places cannot be seen.
QString breakableText(const QString& text);

}  // namespace velmara
