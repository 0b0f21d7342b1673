#include "session/photo_decoding.h"

#include <chrono>
#include <exception>
#include <utility>

namespace velmara {

PhotoDecoding::PhotoDecoding(LoadedPhoto photo, const JobControl& control)
    : control_(control), result_(Error{}) {
  thread_ = std::jthread([this, photo = std::move(photo)]() mutable {
    try {
      result_ = loadPixels(std::move(photo), &control_,
                           [this](const Image& unfinished, int rows) { told(unfinished, rows); });
    } catch (const std::exception& fault) {
      result_ = Error{fault.what()};
    }
    const std::scoped_lock lock(mutex_);
    isOver_ = true;
    changed_.notify_all();
  });
}

void PhotoDecoding::told(const Image& unfinished, int rows) {
  const std::scoped_lock lock(mutex_);
  if (!picture_.isValid()) picture_ = unfinished;
  if (unfinished.bitmap().storage() != picture_.bitmap().storage()) isOver_ = true;
  if (!isOver_) rows_ = rows;
  changed_.notify_all();
}

Image PhotoDecoding::picture() {
  awaitRows(1);
  const std::scoped_lock lock(mutex_);
  return picture_;
}

bool PhotoDecoding::awaitRows(int rows) {
  constexpr std::chrono::milliseconds kLookAgain(20);  // Nobody wakes whoever waits on a cancel.
  std::unique_lock lock(mutex_);
  while (rows_ < rows && !isOver_ && !control_.isCancelled()) changed_.wait_for(lock, kLookAgain);
  return rows_ >= rows && !control_.isCancelled();
}

Result<LoadedPhoto> PhotoDecoding::finish() {
  if (thread_.joinable()) thread_.join();
  return std::move(result_);
}

}  // namespace velmara
