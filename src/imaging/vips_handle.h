#pragma once

#include <vips/vips.h>

#include <memory>
#include <string>

namespace velmara {

struct GObjectRelease {
  template <typename T>
  void operator()(T* object) const {
    g_object_unref(object);
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

}  // namespace velmara
