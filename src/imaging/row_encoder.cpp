#include "imaging/row_encoder.h"

#include <chrono>
#include <condition_variable>
#include <cstring>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

#include "base/bitmap.h"
#include "imaging/encode_image.h"
#include "imaging/initialise.h"

namespace velmara {

// libvips' own threads ask for regions and wait here until their rows have come.
class RowEncoder::Work {
 public:
  Work(BitmapBuilder rows, ColorProfile profile, FileFormat format, const EncodeOptions& options,
       const JobControl* control)
      : rows_(std::move(rows)), control_(control), result_(Error{}) {
    thread_ = std::jthread([this, profile = std::move(profile), format, options] {
      result_ = encode(profile, format, options);
    });
  }

  void add(const std::uint8_t* rows, int firstRow, int rowCount) {
    std::memcpy(rows_.row(firstRow), rows, rows_.rowBytes() * static_cast<std::size_t>(rowCount));
    const std::scoped_lock lock(mutex_);
    ready_ = firstRow + rowCount;
    changed_.notify_all();
  }

  Result<std::vector<std::uint8_t>> finish() {
    {
      const std::scoped_lock lock(mutex_);
      isComplete_ = true;
      changed_.notify_all();
    }
    if (thread_.joinable()) thread_.join();
    return std::move(result_);
  }

 private:
  Result<std::vector<std::uint8_t>> encode(const ColorProfile& profile, FileFormat format,
                                           const EncodeOptions& options) try {
    const VipsImagePtr image(vips().image_new());
    vips().image_init_fields(image.get(), rows_.width(), rows_.height(), rows_.samplesPerPixel(),
                             VIPS_FORMAT_UCHAR, VIPS_CODING_NONE, VIPS_INTERPRETATION_sRGB, 1.0,
                             1.0);
    if (vips().image_pipelinev(image.get(), VIPS_DEMAND_STYLE_THINSTRIP, nullptr) != 0 ||
        vips().image_generate(image.get(), nullptr, fillRegion, nullptr, this, nullptr) != 0) {
      return Error{"the picture cannot be encoded (" + takeVipsError() + ")"};
    }
    return encodeVipsImage(image.get(), profile, format, options);
  } catch (const std::bad_alloc&) {
    return Error{"not enough memory for the picture"};
  }

  static int fillRegion(VipsRegion* region, void* /*sequence*/, void* work, void* /*unused*/,
                        gboolean* /*stop*/) {
    return static_cast<Work*>(work)->fill(*region) ? 0 : -1;
  }

  bool fill(const VipsRegion& region) {
    const VipsRect& wanted = region.valid;
    const int bottom = wanted.top + wanted.height;
    if (!waitForRows(bottom)) return false;
    const auto samples = static_cast<std::size_t>(rows_.samplesPerPixel());
    for (int y = wanted.top; y < bottom; ++y) {
      std::memcpy(region.data + static_cast<std::ptrdiff_t>(y - wanted.top) * region.bpl,
                  rows_.row(y) + static_cast<std::size_t>(wanted.left) * samples,
                  static_cast<std::size_t>(wanted.width) * samples);
    }
    return true;
  }

  // False if they will not come. Nobody wakes whoever waits when a control is cancelled.
  bool waitForRows(int count) {
    constexpr std::chrono::milliseconds kLookAgain(20);
    std::unique_lock lock(mutex_);
    for (;;) {
      if (control_ != nullptr && control_->isCancelled()) return false;
      if (ready_ >= count) return true;
      if (isComplete_) return false;
      changed_.wait_for(lock, kLookAgain);
    }
  }

  BitmapBuilder rows_;
  const JobControl* const control_;
  std::mutex mutex_;
  std::condition_variable changed_;
  int ready_ = 0;
  bool isComplete_ = false;
  Result<std::vector<std::uint8_t>> result_;
  std::jthread thread_;
};

std::unique_ptr<RowEncoder> RowEncoder::start(int width, int height, ColorProfile profile,
                                              FileFormat format, const EncodeOptions& options,
                                              const JobControl* control) {
  auto rows = BitmapBuilder::allocate(width, height, 3);
  if (!rows || !initialiseImaging()) return nullptr;
  return std::unique_ptr<RowEncoder>(new RowEncoder(
      std::make_unique<Work>(std::move(*rows), std::move(profile), format, options, control)));
}

RowEncoder::RowEncoder(std::unique_ptr<Work> work) : work_(std::move(work)) {}

RowEncoder::~RowEncoder() {
  work_->finish();
}

void RowEncoder::add(const std::uint8_t* rows, int firstRow, int rowCount) {
  work_->add(rows, firstRow, rowCount);
}

Result<std::vector<std::uint8_t>> RowEncoder::finish() {
  return work_->finish();
}

}  // namespace velmara
