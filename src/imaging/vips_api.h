#pragma once

#include <vips/vips.h>

#include <memory>
#include <string>

namespace velmara {

/// The operations of libvips in use, by their names there without the prefix. The library is loaded
/// when the first picture is read or written: a hundred others come with it, and a window that had
/// to wait for them would take twice as long to appear.
// clang-format off
#define VELMARA_VIPS_OPERATIONS(X)                                                         \
  X(area_unref) X(bandjoin2) X(blob_get) X(cache_set_max) X(cache_set_max_files)           \
  X(cache_set_max_mem) X(colourspace) X(copy) X(error_buffer_copy) X(extract_band)         \
  X(format_sizeof) X(gifload_source) X(gifsave_target) X(heifload_source) X(icc_transform) \
  X(image_generate) X(image_get_bands) X(image_get_blob) X(image_get_coding)               \
  X(image_get_format) X(image_get_height) X(image_get_typeof) X(image_get_width)           \
  X(image_get_xres) X(image_get_yres) X(image_guess_interpretation) X(image_hasalpha)      \
  X(image_init_fields) X(image_new) X(image_new_from_memory) X(image_pipelinev)            \
  X(image_set_blob_copy) X(init) X(jp2kload_source) X(jp2ksave_target) X(jpegload_buffer)  \
  X(jpegload_source) X(jpegsave_target) X(magickload_buffer) X(magicksave_buffer) X(msb)   \
  X(operation_block_set) X(pngload_source) X(pngsave_target) X(ppmload_source)             \
  X(region_new) X(region_prepare) X(source_new_from_descriptor) X(source_rewind)           \
  X(target_end) X(target_new_to_memory) X(target_write) X(tiffload_source)                 \
  X(tiffsave_target) X(webpload_source)
// clang-format on

/// Those of GObject, which comes with it, without the prefix "g_".
#define VELMARA_GOBJECT_OPERATIONS(X) X(object_get) X(object_ref) X(object_unref) X(type_from_name)

/// Pointers to the operations above.
struct VipsApi {
// A member's name cannot stand in parentheses.
#define X(name) decltype(&::vips_##name) name = nullptr;  // NOLINT(bugprone-macro-parentheses)
  VELMARA_VIPS_OPERATIONS(X)
#undef X
#define X(name) decltype(&::g_##name) name = nullptr;  // NOLINT(bugprone-macro-parentheses)
  VELMARA_GOBJECT_OPERATIONS(X)
#undef X
  /// Whether the library was found, with all of them.
  bool isLoaded = false;
};

/// Loads the library with the first call, on any thread. Nothing may be called in it before
/// initialiseImaging() has said yes.
const VipsApi& vips();

/// Gives an object of GObject back.
struct GObjectRelease {
  template <typename T>
  /// `object` is not null.
  void operator()(T* object) const {
    vips().object_unref(object);
  }
};

/// Owners of libvips' objects.
using VipsImagePtr = std::unique_ptr<VipsImage, GObjectRelease>;
using VipsRegionPtr = std::unique_ptr<VipsRegion, GObjectRelease>;
using VipsSourcePtr = std::unique_ptr<VipsSource, GObjectRelease>;
using VipsTargetPtr = std::unique_ptr<VipsTarget, GObjectRelease>;

/// Takes the place of an image with the result of an operation on it, whose options follow; false
/// if that failed.
template <auto kOperation, typename... Options>
bool replaceBy(VipsImagePtr& image, Options... options) {
  VipsImage* result = nullptr;
  if ((vips().*kOperation)(image.get(), &result, options..., nullptr) != 0) return false;
  image.reset(result);
  return true;
}

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
