#pragma once

#include <string>

#include "platform/panels.h"
#include "session/photo_file.h"

namespace velmara {

/// What the user is asked and told about a photo, in words.

/// "Do you want to save the changes made to the document "%@" ?".
std::string saveChangesHeader(const std::string& fileName);

/// A file that cannot be opened; without details where the text orders none.
Alert formatNotSupportedAlert(const std::string& details = {});

/// The question before the photo's own file is replaced: button 0 replaces it.
Alert replaceOriginalQuestion(const PhotoFile& photo);

/// What the user is told of an export, or of a preview, that failed. The reason is in words.
Alert exportFailedAlert(const std::string& pathToExportImage, const std::string& reason);
Alert previewFailedAlert(const std::string& reason);

/// Where the photo was saved: its name.
std::string savedLabel(const std::string& pathToExportImage);

}  // namespace velmara
