#pragma once

#include <functional>
#include <optional>
#include <string>

#include "base/image.h"
#include "base/result.h"
#include "base/task_queue.h"
#include "imaging/image_writer.h"
#include "platform/alerts.h"
#include "session/loaded_photo.h"
#include "session/photo_file.h"

namespace velmara {

/// A whole-photo result on its way into a file: everything the work needs, so that it reads nothing
/// the main thread may write.
struct ExportJob {
  /// The photo the result was made from.
  PhotoFile photo;
  /// The result, pixels as stored in the photo's file.
  Image filteredImage;
  /// Nothing for a format that has no writer: then nothing is written.
  std::optional<FileFormat> format;
  /// In the file system's own bytes.
  std::string pathToExportImage;
};

struct ExportOutcome {
  /// An error says in words what could not be done, with the path and the reason.
  Status status = Done{};
  /// The photo and its result as they are from now on. They differ from the job's only when the
  /// photo's own file was replaced: that file is upright now and has its new size, so a second
  /// export of the result must not turn it again.
  PhotoFile photo;
  Image filteredImage;
  bool hasReplacedPhoto = false;
};

/// Brings a result to the photo's full size, turns it upright and replaces the file at the path,
/// whole or not at all, synced to the disk. Not on the main thread. Does not throw.
ExportOutcome runExportJob(const ExportJob& job);

/// The same on a worker queue; the completion is called exactly once on the main queue. Returns at
/// once. Both queues must outlive the work.
void runExportJobInBackground(ExportJob job, TaskQueue& worker, TaskQueue& mainQueue,
                              std::function<void(const ExportOutcome&)> completion);

/// The question before the photo's own file is replaced: button 0 replaces it.
Alert replaceOriginalQuestion(const PhotoFile& photo);

/// What the user is told of an export that failed.
Alert exportFailedAlert(const std::string& pathToExportImage, const std::string& reason);

}  // namespace velmara
