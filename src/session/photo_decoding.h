#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>

#include "base/image.h"
#include "base/job_control.h"
#include "base/result.h"
#include "session/loaded_photo.h"

namespace velmara {

/// A photo's pixels being read on a thread of its own, for work that can begin with the first rows.
class PhotoDecoding {
 public:
  /// Starts to read. The control, which must outlive it, ends it if it is cancelled.
  PhotoDecoding(LoadedPhoto photo, const JobControl& control);
  PhotoDecoding(const PhotoDecoding&) = delete;
  PhotoDecoding& operator=(const PhotoDecoding&) = delete;

  /// The first picture of the file, waited for until its first rows are there; not valid if none
  /// came. Its rows may be read once awaitRows has said so.
  Image picture();
  /// Waits until so many rows of the picture, from the first, are there; false if they will not
  /// come into it: reading failed, was cancelled, or began anew. Any thread.
  bool awaitRows(int rows);
  /// What loadPixels gives, waited for. To be called once.
  Result<LoadedPhoto> finish();

 private:
  void told(const Image& unfinished, int rows);

  const JobControl& control_;
  std::mutex mutex_;
  std::condition_variable changed_;
  Image picture_;
  int rows_ = 0;
  bool isOver_ = false;  // No more rows will come into the picture.
  Result<LoadedPhoto> result_;
  std::jthread thread_;
};

}  // namespace velmara
