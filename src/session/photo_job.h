#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/image.h"
#include "base/job_control.h"
#include "base/task_queue.h"
#include "engine/deep/deep_noise.h"
#include "imaging/image_writer.h"
#include "session/deep_preview.h"
#include "session/denoise_engine.h"
#include "session/denoise_parameters.h"
#include "session/loaded_photo.h"

namespace velmara {

/// Where and how a result is written.
struct PhotoOutput {
  /// Nothing where no writer goes by the name that was chosen: then the job fails.
  std::optional<FileFormat> format;
  /// In the file system's own bytes. Empty: the bytes come back in the result and no file is
  /// written.
  std::string path;
  /// Whether a file that is there may be replaced; else it is refused.
  bool mayReplace = true;
};

/// What one job is to do with a photo. The job takes a copy along, so nothing here is looked at
/// again once it has started. The steps, each left out where it is not asked for or its result is
/// handed in:
///
///   load       the file at `path`, or the pixels of `photo`
///   calibrate  only with `calibrates`
///   measure    the whole photo's noise, unless `psnrOfRealImage` or `parameters` are known
///   choose     by `mode` and the noise, or `parameters`
///   filter     the whole photo, or `region`; not with `filtered`; not without `filters`
///   turn       only with `output`
///   encode
///   write
///
/// The window opens a photo with {path, filters = false}, previews with {photo, region, zoom},
/// exports with {photo, output} or, over an earlier result, {photo, filtered, output}; the command
/// line runs {path, output}.
struct PhotoJobRequest {
  /// The photo's file.
  std::string path;
  /// The same photo read before. Without valid pixels these are read from the file where a step
  /// needs them.
  std::optional<LoadedPhoto> photo;

  /// False ends the job with the photo loaded (and the speed measured, with `calibrates`, and the
  /// noise, with `isDeep`).
  bool filters = true;
  /// What is filtered instead of the whole photo: the pixels of a preview. Without it the job is an
  /// export (isExportingPhoto).
  std::optional<Image> region;
  /// Where it lies, for the deep method.
  ShownPlace place;
  /// A preview's zoom, 1.0 for 100 %.
  float currentZooomFactor = 1.0F;
  /// A whole-photo result of an earlier job, which is only to be turned and written.
  Image filtered;

  /// Automatic, or a level.
  DenoiseMode mode;
  /// Explicit numbers instead of the mode; the noise is not measured then.
  std::optional<FilterParameters> parameters;
  /// With `parameters`: the first picture of the file goes to the filter as it is decoded and is
  /// written as it comes, not turned and without metadata.
  bool isBare = false;
  /// The noise of the whole photo in dB; 0 while it has not been measured.
  float psnrOfRealImage = 0.0F;
  /// What earlier manual choices have left behind.
  ManualMapping mapping;

  /// The deep method in place of the levels' filter: its strength is that of the measured noise, or
  /// of a level with 5 for the noise as measured. Not with `parameters`.
  bool isDeep = false;
  /// The noise of the whole photo as the deep method measures it; measured if it is not there.
  std::optional<DeepNoise> deepNoise;

  /// Measure this machine's speed before the run as the session does: with the first run's
  /// parameters while `pixelsProcessRate` is 0, with the run's own before an export.
  bool calibrates = false;
  /// Pixels per second, 0 until measured.
  std::int64_t pixelsProcessRate = 0;

  /// Where the result goes; nothing for one that is only shown.
  std::optional<PhotoOutput> output;

  /// Whether the whole photo is filtered.
  bool isExportingPhoto() const { return !region.has_value(); }
};

/// The steps of a job, in their order.
enum class PhotoStep { load, calibrate, measure, choose, filter, turn, encode, write };
inline constexpr int kPhotoSteps = 8;

/// What became of a job.
struct PhotoJobResult {
  /// How the job ended.
  enum class End { finished, cancelled, failed };

  /// How this one ended.
  End end = End::failed;
  /// Why it failed, in words for the user: lower case, no full stop. Failing to turn, encode or
  /// write names the output's path. Empty unless failed.
  std::string reason;
  /// The step that failed or was cancelled, or the last one done.
  PhotoStep step = PhotoStep::load;

  /// The photo as it was handed in or read. After its own file was replaced (`hasReplacedPhoto`)
  /// that file's record and the upright picture, as a second export must not turn it again; its
  /// pixels are not valid then (they were the photo's before).
  LoadedPhoto photo;
  /// The result, pixels as stored (upright if the photo's own file was replaced). Not valid unless
  /// finished or failed only after the filter, and not without a filter.
  Image image;
  /// Whether the result was written over the photo's own file.
  bool hasReplacedPhoto = false;

  /// The noise of the whole photo and the manual mapping as they stand after the job, whatever its
  /// end.
  float psnrOfRealImage = 0.0F;
  ManualMapping mapping;
  /// What was filtered with; nothing for a photo or region that is too small for the filter and was
  /// passed through, and where nothing was filtered.
  std::optional<FilterParameters> parameters;
  /// The noise the deep method worked with.
  std::optional<DeepNoise> deepNoise;
  /// The rate handed in or measured.
  std::int64_t pixelsProcessRate = 0;

  /// Of the picture written, in pixels.
  int writtenWidth = 0;
  int writtenHeight = 0;
  /// The file's bytes, where the output has no path.
  std::vector<std::uint8_t> encoded;

  /// Seconds by the clock of each step, 0.0 for those left out. Steps may overlap.
  double seconds[kPhotoSteps] = {};
};

/// What jobs work with; all of it must outlive them.
struct PhotoJobServices {
  /// The filter, the queue that ends are told on, the queue jobs run on, and where lines of the log
  /// go (any thread).
  const DenoiseEngine& engine;
  TaskQueue& mainQueue;
  TaskQueue& globalQueue;
  LogSink log;
  /// The application's picture "noisy.png", which the speed is measured with.
  std::function<Image()> loadTestImage;
};

/// What a job tells while it runs and when it ends, each on the main queue; both may be empty.
struct PhotoJobListener {
  /// The speed as it stands after calibrating, before anything is filtered. At most once.
  std::function<void(std::int64_t pixelsProcessRate)> calibrated;
  /// The end: exactly once for every job, whatever happens, and after everything else.
  std::function<void(const PhotoJobResult&)> finished;
};

/// A job under way. The one type of work on photos: previews, exports and the command line differ
/// in their request only. Main thread; the work itself is on the global queue.
class PhotoJob {
 public:
  /// Starts a job and returns at once. It goes on and ends by itself whether or not the handle is
  /// kept.
  static std::shared_ptr<PhotoJob> start(PhotoJobRequest request, const PhotoJobServices& services,
                                         PhotoJobListener listener);

  /// Asks the job to stop: it ends as cancelled, with no file left behind, or as finished if it was
  /// past the point of return. `finished` is called in either case.
  void cancel() { control_.cancel(); }
  /// How much is done, 0.0 to 1.0, never falling.
  double progress() const { return control_.progress(); }

 private:
  JobControl control_;
};

/// The same on the calling thread, which must not be the main one: filtering waits for that.
/// `calibrated` is the listener's, called on the main queue. Does not throw.
PhotoJobResult runPhotoJob(const PhotoJobRequest& request, const PhotoJobServices& services,
                           JobControl& control,
                           const std::function<void(std::int64_t)>& calibrated = {});

/// "psnrOfInputImage %f sigma %d templateWindow %d searchWindow %d".
std::string parametersLogLine(double psnr, const FilterParameters& parameters);

}  // namespace velmara
