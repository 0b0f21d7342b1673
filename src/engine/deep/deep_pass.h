#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "base/job_control.h"
#include "engine/deep/opponent_planes.h"

namespace velmara {

/// The noise of opponent planes as the filter takes it, in the planes' own units: coefficient i of
/// a block of plane k has the variance spectrum[k][i] times the sum over the channels c of
/// kOpponent[k][c]^2 variance[c][b], b being the channel's mean in the group, 0 to 255.
struct BlockNoise {
  /// By channel and level, and by plane and frequency.
  std::array<std::array<float, 256>, 3> variance;
  std::array<std::array<float, 64>, 3> spectrum;
};

/// The steps of the filter. The first two are those of collaborative filtering (K. Dabov, A. Foi,
/// V. Katkovnik, K. Egiazarian, "Image denoising by sparse 3-D transform-domain collaborative
/// filtering", IEEE Transactions on Image Processing 16, 2007), the last one is the second of M.
/// Lebrun, A. Buades, J.-M. Morel, "A nonlocal Bayesian image denoising algorithm", SIAM Journal on
/// Imaging Sciences 6, 2013.
enum class DeepStep : std::uint8_t { kThreshold, kWiener, kBayes };

/// One step over a picture.
///
/// The blocks of a grid of step 4 are looked at one after another. The 16 blocks within the radius
/// whose brightness is most like the block's own (sum of squared differences; of equal ones those
/// that come first in searchOrder) are stacked.
///
/// In the first two steps the stack is transformed, along itself by Walsh-Hadamard. The first drops
/// small coefficients; the second weights each by the share of the guide's energy in the sum of it
/// and the noise's (Wiener's filter). Every block of the stack then adds to the sums of the pixels
/// it covers, with a weight that falls with how much noise it kept.
///
/// In the last step the 4 x 4 pixels in the middle of the guide's blocks, all planes together, are
/// taken for samples of a normal distribution, and the noisy ones replaced by what is most likely
/// behind them. What no such patch covers stays as the guide has it. For white noise only.
struct DeepPass {
  /// Which step, and the planes with the noise.
  DeepStep step;
  const OpponentPlanes& noisy;
  /// The result of the step before; null in the first.
  const OpponentPlanes* guide;
  /// The brightness that blocks are compared by, with the planes' slack.
  const std::vector<std::int16_t>& compared;
  /// How strong the noise is.
  const BlockNoise& noise;

  /// The most blocks in a stack.
  static constexpr int kGroup = 16;
  /// By step.
  static constexpr int kRadius[3] = {15, 11, 7};
  /// The grid's spacing.
  static constexpr int kStep = OpponentPlanes::kStep;
  /// What a coefficient has to exceed, in standard deviations of its noise.
  static constexpr float kThreshold[3] = {2.5F, 3.2F, 3.2F};
  /// The largest weight, and the largest sample: sums of every block that can reach a pixel stay
  /// below 2^31.
  static constexpr float kMostWeight = 64.0F;
  static constexpr float kMostSample = 8191.0F;
  /// The side of the last step's patches, and how far they lie inside their blocks.
  static constexpr int kPatch = 4;
  /// Pixels from the block's edge, and the weight of a patch's pixel.
  static constexpr int kPatchInset = 2;
  static constexpr std::int32_t kPatchWeight = 16;

  /// Places of the grid along each side.
  int columns() const { return (noisy.width - 8) / kStep + 1; }
  int rows() const { return (noisy.height - 8) / kStep + 1; }
  /// Whether a row of the grid takes part. The guide need not be as good as the result: every other
  /// row and the last cover all pixels.
  bool uses(int row) const {
    return step != DeepStep::kThreshold || row % 2 == 0 || row + 1 == rows();
  }
  /// How far away blocks are looked for.
  static constexpr int radiusOf(DeepStep step) { return kRadius[static_cast<std::size_t>(step)]; }
  /// As radiusOf, of this step.
  int radius() const { return radiusOf(step); }
  /// How many shifts are tried along each axis.
  int shifts() const { return 2 * radius() + 1; }
  /// How far from a pixel its result is made of others: the block that covers it, the stack that
  /// block is in and what that stack was found in.
  static constexpr int reach(DeepStep step) { return 2 * radiusOf(step) + 7; }
};

/// The shifts along one axis in the order in which they are tried: 0, -1, 1, -2, 2 and so on.
constexpr int searchOrder(int i) {
  return i % 2 == 0 ? i / 2 : -(i / 2) - 1;
}

/// What the blocks say of each pixel, summed. Whole numbers, so that the order of the blocks, and
/// with it how they are dealt out to threads, does not matter.
struct BlockSums {
  /// Weighted samples by plane, and the weights of each pixel.
  std::array<std::vector<std::int32_t>, 3> samples;
  std::vector<std::int32_t> weights;

  /// Zeros for so many pixels; false if the memory is not to be had or the control was cancelled.
  bool allocate(std::size_t pixels, const JobControl& control);
  /// Makes the sums of pixels [begin, end) those of a picture, of weight 1.
  void beginWith(const OpponentPlanes& planes, std::size_t begin, std::size_t end);
};

/// The brightness of planes as blocks are compared by it, in halves of a level.
void comparedBrightness(const OpponentPlanes& planes, std::vector<std::int16_t>& brightness);

/// Adds the blocks of columns [columnBegin, columnEnd) of a row of the grid to the sums: one block
/// after another in plain loops, which say what the result is.
void addBlocksPlainly(const DeepPass& pass, int row, int columnBegin, int columnEnd,
                      BlockSums& sums);
/// The same bits with the vectors of the chosen instruction set (engine/fast/instruction_sets.h).
void addBlocks(const DeepPass& pass, int row, int columnBegin, int columnEnd, BlockSums& sums);

/// The weighted means of pixels [begin, end) that the sums stand for; the sums become 0.
void takeMeans(BlockSums& sums, OpponentPlanes& planes, std::size_t begin, std::size_t end);

}  // namespace velmara
