#include "engine/deep/deep_denoise.h"

#include <algorithm>
#include <functional>
#include <mutex>
#include <new>
#include <utility>
#include <vector>

#include "engine/deep/deep_areas.h"
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
static_assert(kBandRows * DeepPass::kStep >= 2 * DeepPass::kRadius[0] + 8);

std::optional<OpponentPlanes> planesOf(const Bitmap& bitmap, const DeepRequest& request,
                                       const JobControl& control) {
  auto planes = OpponentPlanes::allocate(paddedSide(bitmap.width()), paddedSide(bitmap.height()));
  if (!planes) return std::nullopt;
  shareWork(request.workers, request.threads, planes->height / 4, [&](int i) {
    if (!control.isCancelled()) toOpponent(bitmap, *planes, 4 * i, 4 * i + 4);
  });
  return planes;
}

// The pixels inside a rectangle, which lies in the bitmap.
Bitmap cut(const Bitmap& bitmap, const PixelRect& rect) {
  if (rect == PixelRect{0, 0, bitmap.width(), bitmap.height()}) return bitmap;
  auto piece = BitmapBuilder::allocate(rect.width, rect.height, bitmap.samplesPerPixel());
  if (!piece) return {};
  for (int y = 0; y < rect.height; ++y) {
    std::copy_n(bitmap.pixel(rect.x, rect.y + y), piece->rowBytes(), piece->row(y));
  }
  return std::move(*piece).finish();
}

// A rectangle as it is counted inside another.
PixelRect within(const PixelRect& rect, const PixelRect& other) {
  return {rect.x - other.x, rect.y - other.y, rect.width, rect.height};
}

// One run of the filter over all sizes of a picture.
class DeepRun {
 public:
  DeepRun(const DeepNoise& noise, const DeepRequest& request, JobControl& control)
      : noise_(noise), request_(request), control_(control) {}

  // A part of a picture, filtered; nothing if it was cancelled or memory is short.
  std::optional<Bitmap> run(const Bitmap& bitmap, const PixelRect& part) {
    areas_ = deepAreas(bitmap.width(), bitmap.height(), part, noise_.sizes);
    PixelRect held = areas_.back().worked;
    for (std::size_t size = areas_.size(); --size > 0;) {
      held = enlarged(held, areas_[size], areas_[size - 1]);
    }
    for (const DeepArea& area : areas_) {
      total_ += (noise_.isWhite ? 3.0 : 2.0) * area.worked.width * area.worked.height;
    }
    const PixelRect picture{0, 0, bitmap.width(), bitmap.height()};
    const Bitmap needed = cut(bitmap, intersection(held, picture));
    if (!needed.isValid()) return std::nullopt;
    auto planes = planesOf(needed, request_, control_);
    if (!planes || !filter(*planes, held, 0)) return std::nullopt;

    const PixelRect worked = intersection(areas_[0].worked, picture);
    const Bitmap original = cut(bitmap, worked);
    auto result = BitmapBuilder::allocate(worked.width, worked.height, original.samplesPerPixel());
    if (!result || !original.isValid()) return std::nullopt;
    const SampleTables tables = sampleTables(noise_, request_.strength);
    shareRows(worked.height, [&](int first, int end) {
      fromOpponent(*planes, tables, original, result->bytes().data(), first, end);
    });
    if (control_.isCancelled()) return std::nullopt;
    return cut(std::move(*result).finish(), within(part, worked));
  }

 private:
  // Replaces what is held of a size by its worked area, filtered; false if it was cancelled or
  // memory is short.
  bool filter(OpponentPlanes& planes, const PixelRect& held, std::size_t size) {
    const DeepArea& area = areas_[size];
    const bool isFused = size + 1 < areas_.size();
    if (isFused) {
      const DeepArea& smaller = areas_[size + 1];
      auto plain = halved(planes);
      if (!plain || control_.isCancelled()) return false;
      const PixelRect half{held.x / 2, held.y / 2, plain->width, plain->height};
      OpponentPlanes filtered = *plain;
      if (!filter(filtered, half, size + 1) ||
          !cropTo(filtered, within(smaller.asked, smaller.worked)) ||
          !cropTo(*plain, within(smaller.asked, half)) ||
          !cropTo(planes, within(area.worked, held))) {
        return false;
      }
      shareRows(planes.height, [&](int first, int end) {
        addEnlargedDifference(filtered, *plain, planes, first, end);
      });
    }
    const float scale = request_.scale / static_cast<float>(1 << size);
    const BlockNoise noise = blockNoise(noise_, request_.strength, scale, isFused);
    auto guide = OpponentPlanes::allocate(planes.width, planes.height);
    if (!guide || control_.isCancelled()) return false;
    std::vector<std::int16_t> compared;
    BlockSums sums;
    if (!sums.allocate(planes.pixels(), control_)) return false;
    const PixelRect asked = within(area.asked, area.worked);
    const auto run = [&](DeepStep step, const OpponentPlanes* from, int margin,
                         OpponentPlanes& result) {
      comparedBrightness(from == nullptr ? planes : *from, compared);
      return runPass({step, planes, from, compared, noise}, asked, margin, sums, result);
    };
    const int last = noise_.isWhite ? DeepPass::reach(DeepStep::kBayes) : 0;
    const int both = DeepPass::reach(DeepStep::kWiener) + last;
    if (!run(DeepStep::kThreshold, nullptr, both, *guide)) return false;
    if (!noise_.isWhite) return run(DeepStep::kWiener, &*guide, 0, planes);
    return run(DeepStep::kWiener, &*guide, last, *guide) &&
           run(DeepStep::kBayes, &*guide, 0, planes);
  }

  // Makes the pixels of a result that lie inside a rectangle or at most `margin` around it.
  bool runPass(const DeepPass& pass, const PixelRect& asked, int margin, BlockSums& sums,
               OpponentPlanes& result) {
    const auto inPieces = [&](const auto& piece) {
      const std::size_t pixels = result.pixels();
      constexpr std::size_t kPiece = 1 << 16;
      shareWork(request_.workers, request_.threads,
                static_cast<int>((pixels + kPiece - 1) / kPiece), [&](int i) {
                  const std::size_t begin = static_cast<std::size_t>(i) * kPiece;
                  if (!control_.isCancelled()) piece(begin, std::min(begin + kPiece, pixels));
                });
    };
    if (pass.step == DeepStep::kBayes) {
      inPieces([&](auto from, auto to) { sums.beginWith(*pass.guide, from, to); });
    }
    // Blocks of a stack begin at most the radius before and after that of the grid.
    const int reach = margin + pass.radius();
    const auto first = [reach](int begin) {
      return std::max(begin - reach - 7, 0) / DeepPass::kStep;
    };
    const auto end = [reach](int at, int most) {
      return std::min((at + reach - 1) / DeepPass::kStep + 1, most);
    };
    const PixelRect grid{first(asked.x), first(asked.y),
                         end(asked.x + asked.width, pass.columns()) - first(asked.x),
                         end(asked.y + asked.height, pass.rows()) - first(asked.y)};
    const int bands = (grid.height + kBandRows - 1) / kBandRows;
    for (const int odd : {0, 1}) {
      shareWork(request_.workers, request_.threads, (bands - odd + 1) / 2,
                [&](int i) { addBand(pass, grid, odd + 2 * i, sums); });
    }
    inPieces([&](auto from, auto to) { takeMeans(sums, result, from, to); });
    return !control_.isCancelled();
  }

  void addBand(const DeepPass& pass, const PixelRect& grid, int band, BlockSums& sums) {
    const int end = grid.y + std::min((band + 1) * kBandRows, grid.height);
    for (int row = grid.y + band * kBandRows; row < end; ++row) {
      if (control_.isCancelled()) return;
      if (pass.uses(row)) {
        (request_.plainly ? addBlocksPlainly : addBlocks)(pass, row, grid.x, grid.x + grid.width,
                                                          sums);
      }
      const std::lock_guard lock(progress_);
      pixelsDone_ += static_cast<double>(pass.noisy.width) * DeepPass::kStep;
      control_.setProgress(std::min(pixelsDone_ / total_, 1.0));
    }
  }

  void shareRows(int rows, const std::function<void(int, int)>& work) {
    constexpr int kPiece = 16;
    shareWork(request_.workers, request_.threads, (rows + kPiece - 1) / kPiece, [&](int i) {
      if (!control_.isCancelled()) work(kPiece * i, std::min(kPiece * (i + 1), rows));
    });
  }

  const DeepNoise& noise_;
  const DeepRequest& request_;
  JobControl& control_;
  std::vector<DeepArea> areas_;
  double total_ = 0.0;
  std::mutex progress_;  // Keeps it from falling.
  double pixelsDone_ = 0.0;
};

}  // namespace

DeepNoise measureNoise(const Bitmap& bitmap, JobControl* control) {
  if (!bitmap.isValid()) return {};
  JobControl unwatched;
  JobControl& watched = control != nullptr ? *control : unwatched;
  const auto planes = planesOf(bitmap, {}, watched);
  return planes ? measureNoise(*planes, watched) : DeepNoise{};
}

std::optional<Bitmap> denoiseDeeply(const Bitmap& bitmap, const DeepNoise& noise,
                                    const DeepRequest& request, JobControl& control) {
  if (!bitmap.isValid() || control.isCancelled()) return std::nullopt;
  const PixelRect whole{0, 0, bitmap.width(), bitmap.height()};
  const PixelRect part = intersection(request.part.value_or(whole), whole);
  if (part.isEmpty()) return std::nullopt;
  if (noise.isNone()) return cut(bitmap, part);
  useInstructionSetOfEnvironment();
  try {
    auto result = DeepRun(noise, request, control).run(bitmap, part);
    if (!result || !result->isValid()) return std::nullopt;
    control.setProgress(1.0);
    return result;
  } catch (const std::bad_alloc&) {
    return std::nullopt;
  }
}

}  // namespace velmara
