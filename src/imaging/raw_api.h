#pragma once

#include <libraw/libraw.h>
#include <memory>

namespace velmara {

/// The operations of LibRaw in use, by their names there without the prefix. The library is loaded
/// with the first file that may be a camera's RAW.
// clang-format off
#define VELMARA_RAW_OPERATIONS(X)                                                          \
  X(adjust_sizes_info_only) X(close) X(dcraw_clear_mem) X(dcraw_make_mem_image)            \
  X(dcraw_process) X(init) X(open_buffer) X(set_dataerror_handler) X(set_progress_handler) \
  X(unpack)
// clang-format on

/// Pointers to the operations above.
struct RawApi {
// A member's name cannot stand in parentheses.
#define X(name) decltype(&::libraw_##name) name = nullptr;  // NOLINT(bugprone-macro-parentheses)
  VELMARA_RAW_OPERATIONS(X)
#undef X
  /// Whether the library was found, with all of them; nothing may be called otherwise.
  bool isLoaded = false;
};

/// Loads the library with the first call, on any thread.
const RawApi& rawApi();

/// Gives back what LibRaw made.
struct RawRelease {
  /// Neither is null.
  void operator()(libraw_data_t* file) const { rawApi().close(file); }
  void operator()(libraw_processed_image_t* picture) const { rawApi().dcraw_clear_mem(picture); }
};

/// Owners of LibRaw's objects.
using RawHandle = std::unique_ptr<libraw_data_t, RawRelease>;
using RawPicture = std::unique_ptr<libraw_processed_image_t, RawRelease>;

}  // namespace velmara
