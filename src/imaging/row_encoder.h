#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "base/image.h"
#include "base/job_control.h"
#include "base/result.h"
#include "imaging/image_writer.h"

namespace velmara {

/// Encodes an opaque colour picture on threads of its own while its rows are still being made, into
/// the bytes that encodeImage makes of the whole.
class RowEncoder {
 public:
  /// Starts to wait for the rows of a picture of this size; null if the format cannot be written
  /// row by row (JPEG, PNG and TIFF can) or the size is not allowed. A control that is cancelled,
  /// which must outlive it, ends it with an error.
  static std::unique_ptr<RowEncoder> start(int width, int height, ColorProfile profile,
                                           FileFormat format, const EncodeOptions& options,
                                           const JobControl* control = nullptr);
  /// Gives up what has not been encoded.
  virtual ~RowEncoder() = default;

  /// Copies the next rows: three samples a pixel, no gaps, from the top to the bottom, one call at
  /// a time.
  virtual void add(const std::uint8_t* rows, int firstRow, int rowCount) = 0;

  /// The file's bytes, waited for; an error where rows are missing. To be called once.
  virtual Result<std::vector<std::uint8_t>> finish() = 0;
};

}  // namespace velmara
