#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "imaging/file_format.h"

namespace velmara {

/// What the save panel offers: format strings (which are file name extensions as well) and the
/// titles of the format popup, index for index in step.
struct ExportFormats {
  /// The photo's own format comes first.
  std::vector<std::string> arrformatsSupportedByIM;
  std::vector<std::string> titles;

  friend bool operator==(const ExportFormats&, const ExportFormats&) = default;
};

/// The formats for a photo, its own one first. The extension is compared as it is written: "Jpg" is
/// none of those known, and leaves the starting order.
ExportFormats exportFormatsFor(const std::string& fileExtension);

/// Whether the quality control belongs to a popup title, or to a format string.
bool titleHasQuality(const std::string& title);
bool formatHasQuality(const std::string& format);

/// The one file type that a choice in the popup allows; none for an index that is not there.
std::vector<std::string> allowedTypesAt(const ExportFormats& formats, std::size_t popupIndex);

/// The writer that a format string stands for: the lower-case or the upper-case word, nothing else.
std::optional<FileFormat> writerFor(const std::string& format);

/// What is written to a chosen path.
struct ExportChoice {
  /// As exportFormatsFor has it.
  std::string format;
  /// Of the format in the list; nothing when the list does not have it: then nothing is written.
  std::optional<std::size_t> index;

  friend bool operator==(const ExportChoice&, const ExportChoice&) = default;
};

/// The choice for the extension of the chosen path, or, with none, of the photo in lower case. What
/// the list does not hold is taken for "jpg", which the list holds for photos named so only.
ExportChoice exportChoice(const ExportFormats& formats, const std::string& fileTypeToExportImage,
                          const std::string& photoExtension);

/// The writer of a choice; nothing when the list does not have it.
std::optional<FileFormat> writerFor(const ExportFormats& formats, const ExportChoice& choice);

}  // namespace velmara
