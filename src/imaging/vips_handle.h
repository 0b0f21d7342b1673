#pragma once

#include <memory>
#include <string>

#include "imaging/vips_api.h"

namespace velmara {

struct GObjectRelease {
  template <typename T>
  void operator()(T* object) const {
    vips().object_unref(object);
  }
};

/// Owners of libvips' objects.
using VipsImagePtr = std::unique_ptr<VipsImage, GObjectRelease>;
using VipsRegionPtr = std::unique_ptr<VipsRegion, GObjectRelease>;
using VipsSourcePtr = std::unique_ptr<VipsSource, GObjectRelease>;
using VipsTargetPtr = std::unique_ptr<VipsTarget, GObjectRelease>;
using VipsInterpolatePtr = std::unique_ptr<VipsInterpolate, GObjectRelease>;

/// What libvips says went wrong last, one line without the name of the operation, cleared with the
/// call; empty if it says nothing.
std::string takeVipsError();

/// Listens to what the decoders on this thread only warn of, while it lives. Not to be nested.
class DecoderWarnings {
 public:
  DecoderWarnings();
  DecoderWarnings(const DecoderWarnings&) = delete;
  DecoderWarnings& operator=(const DecoderWarnings&) = delete;
  ~DecoderWarnings();

  /// The most faults that a picture opened meanwhile was said to have.
  long count() const { return count_; }
  /// The first of them in words; the others are not told.
  const std::string& first() const { return first_; }

  /// Takes a warning of libvips on this thread.
  static void note(const char* message);

 private:
  long count_ = 0;
  std::string first_;
};

}  // namespace velmara
