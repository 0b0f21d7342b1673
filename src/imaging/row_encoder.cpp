#include "imaging/row_encoder.h"

#include <chrono>
#include <condition_variable>
#include <cstring>
#include <list>
#include <mutex>
#include <new>
#include <thread>
#include <utility>

#include "base/bitmap.h"
#include "imaging/initialise.h"
#include "imaging/vips_api.h"

namespace velmara {
namespace {

// Those that ask for each row once, from the top to the bottom.
bool isSequential(FileFormat format) {
  return format == FileFormat::jpeg || format == FileFormat::png || format == FileFormat::tiff;
}

// libvips' own threads ask for regions and wait here until their rows have come. A stretch of rows
// is given up when they have taken it, so that what lies here is only what they are behind.
class VipsRowEncoder final : public RowEncoder {
 public:
  VipsRowEncoder(int width, int height, ColorProfile profile, FileFormat format,
                 const EncodeOptions& options, const JobControl* control)
      : width_(width), height_(height), control_(control), result_(Error{}) {
    thread_ = std::jthread([this, profile = std::move(profile), format, options] {
      result_ = encode(profile, format, options);
    });
  }
  VipsRowEncoder(const VipsRowEncoder&) = delete;
  VipsRowEncoder& operator=(const VipsRowEncoder&) = delete;
  ~VipsRowEncoder() override { end(); }

  void add(const std::uint8_t* rows, int firstRow, int rowCount) override {
    const std::size_t bytes = rowBytes() * static_cast<std::size_t>(rowCount);
    std::unique_ptr<std::uint8_t[]> samples(new (std::nothrow) std::uint8_t[bytes]);
    if (samples != nullptr) std::memcpy(samples.get(), rows, bytes);
    const std::scoped_lock lock(mutex_);
    isComplete_ = isComplete_ || samples == nullptr || firstRow != ready_;
    if (!isComplete_) {
      ready_ += rowCount;
      stretches_.push_back({firstRow, std::move(samples), std::int64_t{rowCount} * width_});
    }
    changed_.notify_all();
  }

  Result<std::vector<std::uint8_t>> finish() override {
    end();
    return std::move(result_);
  }

 private:
  // Rows that have come and not all been taken yet.
  struct Stretch {
    int firstRow = 0;
    std::unique_ptr<std::uint8_t[]> samples;
    std::int64_t untakenPixels = 0;
  };

  std::size_t rowBytes() const { return static_cast<std::size_t>(width_) * kSamples; }

  void end() {
    {
      const std::scoped_lock lock(mutex_);
      isComplete_ = true;
      changed_.notify_all();
    }
    if (thread_.joinable()) thread_.join();
  }

  Result<std::vector<std::uint8_t>> encode(const ColorProfile& profile, FileFormat format,
                                           const EncodeOptions& options) try {
    // The library calls back on threads of its own. That they were handed this object only a lock
    // of ours shows to the thread sanitizer.
    { const std::scoped_lock handOver(mutex_); }
    const VipsImagePtr image(vips().image_new());
    vips().image_init_fields(image.get(), width_, height_, kSamples, VIPS_FORMAT_UCHAR,
                             VIPS_CODING_NONE, VIPS_INTERPRETATION_sRGB, 1.0, 1.0);
    if (vips().image_pipelinev(image.get(), VIPS_DEMAND_STYLE_THINSTRIP, nullptr) != 0 ||
        vips().image_generate(image.get(), nullptr, fillRegion, nullptr, this, nullptr) != 0) {
      return Error{"the picture cannot be encoded (" + takeVipsError() + ")"};
    }
    return encodeVipsImage(image.get(), profile, format, options);
  } catch (const std::bad_alloc&) {
    return Error{"not enough memory for the picture"};
  }

  static int fillRegion(VipsRegion* region, void* /*sequence*/, void* encoder, void* /*unused*/,
                        gboolean* /*stop*/) {
    return static_cast<VipsRowEncoder*>(encoder)->fill(*region) ? 0 : -1;
  }

  bool fill(const VipsRegion& region) {
    const VipsRect& wanted = region.valid;
    if (!waitForRows(wanted.top + wanted.height)) return false;
    const std::size_t left = static_cast<std::size_t>(wanted.left) * kSamples;
    const std::size_t count = static_cast<std::size_t>(wanted.width) * kSamples;
    for (int i = 0; i < wanted.height; ++i) {
      const std::uint8_t* row = rowAt(wanted.top + i);
      if (row == nullptr) return false;
      std::memcpy(region.data + static_cast<std::ptrdiff_t>(i) * region.bpl, row + left, count);
      giveUp(wanted.top + i, wanted.width);
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

  // The stretch of a row that has come; the end if it has been given up.
  std::list<Stretch>::iterator stretchOf(int y) {
    auto found = stretches_.end();
    for (auto it = stretches_.begin(); it != stretches_.end() && it->firstRow <= y; ++it)
      found = it;
    return found;
  }

  const std::uint8_t* rowAt(int y) {
    const std::scoped_lock lock(mutex_);
    const auto stretch = stretchOf(y);
    return stretch == stretches_.end()
               ? nullptr
               : stretch->samples.get() +
                     static_cast<std::size_t>(y - stretch->firstRow) * rowBytes();
  }

  void giveUp(int y, int pixels) {
    const std::scoped_lock lock(mutex_);
    const auto stretch = stretchOf(y);
    if ((stretch->untakenPixels -= pixels) <= 0) stretches_.erase(stretch);
  }

  static constexpr int kSamples = 3;

  const int width_;
  const int height_;
  const JobControl* const control_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::list<Stretch> stretches_;
  int ready_ = 0;
  bool isComplete_ = false;  // No more rows will be taken.
  Result<std::vector<std::uint8_t>> result_;
  std::jthread thread_;
};

}  // namespace

std::unique_ptr<RowEncoder> RowEncoder::start(int width, int height, ColorProfile profile,
                                              FileFormat format, const EncodeOptions& options,
                                              const JobControl* control) {
  if (!isSequential(format) || !isAllowedBitmapSize(width, height, 3) || !initialiseImaging()) {
    return nullptr;
  }
  return std::make_unique<VipsRowEncoder>(width, height, std::move(profile), format, options,
                                          control);
}

}  // namespace velmara
