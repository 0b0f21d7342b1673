#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <random>
#include <string>

#include "engine/filter_kernel.h"
#include "engine/pictures.h"

namespace velmara {

/// One request to the kernels, small enough for the reference.
struct KernelRequest {
  Content content = Content::kPhoto;
  int width = 1, height = 1, channels = 3;
  int t = 3, s = 7;
  double sigma = 5.0;
  std::uint64_t seed = 1;

  std::string text() const;
};

/// A request with sizes around vector widths and tile edges, windows of 0 to 13 (now and then to
/// 64), usual and unusual strengths, and content of every kind, its cost within a limit.
KernelRequest randomRequest(std::mt19937_64& random);

/// The buffers of a request, its output pre-filled, with untouchable bytes before and behind it.
class KernelBuffers {
 public:
  explicit KernelBuffers(const KernelRequest& request);

  const FilterGeometry& geometry() const { return geometry_; }
  FilterBuffers& buffers() { return buffers_; }
  /// Runs a kernel over the whole picture in its own tiles; the output, with what surrounds it.
  Bytes run(const FilterKernel& kernel);

 private:
  FilterGeometry geometry_;
  Bitmap padded_;
  Bytes output_;
  FilterBuffers buffers_;
};

}  // namespace velmara
