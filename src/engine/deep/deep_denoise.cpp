#include "engine/deep/deep_denoise.h"

#include <mutex>
#include <new>

#include "engine/deep/deep_pass.h"
#include "engine/deep/noise_measure.h"
#include "engine/deep/opponent_planes.h"
#include "engine/deep/shared_work.h"
#include "engine/fast/instruction_sets.h"

namespace velmara {
namespace {

// Rows of the grid in a band. Blocks reach 15 pixels up and 22 down from their band, so every other
// band may be worked on at the same time.
constexpr int kBandRows = 10;
static_assert(kBandRows * DeepPass::kStep >= 2 * DeepPass::kRadius + 8);
constexpr int kPhotoLevels = 3;
// A smaller picture has nothing coarser to tell.
constexpr int kLeastSideToHalve = 64;

std::optional<OpponentPlanes> planesOf(const Bitmap& bitmap, const DeepRequest& request) {
  auto planes = OpponentPlanes::allocate(paddedSide(bitmap.width()), paddedSide(bitmap.height()));
  if (!planes) return std::nullopt;
  shareWork(request.workers, request.threads, planes->height / 4,
            [&](int i) { toOpponent(bitmap, *planes, 4 * i, 4 * i + 4); });
  return planes;
}

// One run of the filter over all sizes of a picture.
class DeepRun {
 public:
  DeepRun(const DeepNoise& noise, const DeepRequest& request, JobControl& control)
      : noise_(noise), request_(request), control_(control) {}

  // Replaces a picture by its filtered self; false if it was cancelled or memory is short.
  bool filter(OpponentPlanes& planes) {
    const int levels = noise_.isWhite ? 1 : kPhotoLevels;
    // Two passes over a picture and all its halves.
    total_ = 2.0 * static_cast<double>(planes.pixels()) * (levels == 1 ? 1.0 : 1.0 + 0.25 + 0.0625);
    return filterLevel(planes, 0, levels);
  }

 private:
  bool filterLevel(OpponentPlanes& planes, int level, int levels) {
    bool isFused = false;
    if (level + 1 < levels && std::min(planes.width, planes.height) >= kLeastSideToHalve) {
      const auto plain = halved(planes);
      if (!plain) return false;
      OpponentPlanes filtered = *plain;
      if (!filterLevel(filtered, level + 1, levels)) return false;
      addEnlargedDifference(filtered, *plain, planes);
      isFused = true;
    }
    const BlockNoise noise = blockNoise(noise_, request_.strength, level, isFused);
    auto guide = OpponentPlanes::allocate(planes.width, planes.height);
    std::vector<std::int16_t> compared;
    BlockSums sums;
    if (!guide || !sums.allocate(planes.pixels())) return false;
    comparedBrightness(planes, compared);
    if (!runPass({planes, nullptr, compared, noise}, sums, *guide)) return false;
    comparedBrightness(*guide, compared);
    return runPass({planes, &*guide, compared, noise}, sums, planes);
  }

  bool runPass(const DeepPass& pass, BlockSums& sums, OpponentPlanes& result) {
    const int bands = (pass.rows() + kBandRows - 1) / kBandRows;
    for (const int first : {0, 1}) {
      shareWork(request_.workers, request_.threads, (bands - first + 1) / 2,
                [&](int i) { addBand(pass, first + 2 * i, sums); });
    }
    if (control_.isCancelled()) return false;
    const std::size_t pixels = result.pixels();
    constexpr std::size_t kPiece = 1 << 16;
    shareWork(request_.workers, request_.threads, static_cast<int>((pixels + kPiece - 1) / kPiece),
              [&](int i) {
                const std::size_t begin = static_cast<std::size_t>(i) * kPiece;
                takeMeans(sums, result, begin, std::min(begin + kPiece, pixels));
              });
    return true;
  }

  void addBand(const DeepPass& pass, int band, BlockSums& sums) {
    const int end = std::min((band + 1) * kBandRows, pass.rows());
    for (int row = band * kBandRows; row < end; ++row) {
      if (control_.isCancelled()) return;
      if (pass.uses(row)) {
        (request_.plainly ? addBlocksPlainly : addBlocks)(pass, row, 0, pass.columns(), sums);
      }
      const std::lock_guard lock(progress_);
      pixelsDone_ += static_cast<double>(pass.noisy.width) * DeepPass::kStep;
      control_.setProgress(std::min(pixelsDone_ / total_, 1.0));
    }
  }

  const DeepNoise& noise_;
  const DeepRequest& request_;
  JobControl& control_;
  double total_ = 1.0;
  std::mutex progress_;  // Keeps it from falling.
  double pixelsDone_ = 0.0;
};

}  // namespace

DeepNoise measureNoise(const Bitmap& bitmap) {
  if (!bitmap.isValid()) return {};
  const auto planes = planesOf(bitmap, {});
  return planes ? measureNoise(*planes) : DeepNoise{};
}

std::optional<Bitmap> denoiseDeeply(const Bitmap& bitmap, const DeepNoise& noise,
                                    const DeepRequest& request, JobControl& control) {
  if (!bitmap.isValid() || control.isCancelled()) return std::nullopt;
  if (noise.isNone()) return bitmap;
  useInstructionSetOfEnvironment();
  try {
    auto planes = planesOf(bitmap, request);
    auto result =
        BitmapBuilder::allocate(bitmap.width(), bitmap.height(), bitmap.samplesPerPixel());
    if (!planes || !result) return std::nullopt;
    if (!DeepRun(noise, request, control).filter(*planes)) return std::nullopt;
    const SampleTables tables = sampleTables(noise, request.strength);
    shareWork(request.workers, request.threads, bitmap.height(), [&](int y) {
      fromOpponent(*planes, tables, bitmap, result->bytes().data(), y, y + 1);
    });
    control.setProgress(1.0);
    return std::move(*result).finish();
  } catch (const std::bad_alloc&) {
    return std::nullopt;
  }
}

}  // namespace velmara
