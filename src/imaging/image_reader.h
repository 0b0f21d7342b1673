#pragma once

#include <functional>
#include <string>
#include <vector>

#include "base/image.h"
#include "base/job_control.h"
#include "base/result.h"
#include "imaging/picture_file.h"

namespace velmara {

/// Which pictures of a file are read.
enum class Representations {
  /// The first picture of a file only.
  first,
  /// All of them, the pages of a TIFF.
  all,
};

/// What is read of a file, and who is told meanwhile.
struct ReadOptions {
  /// Which of its pictures.
  Representations representations = Representations::all;
  /// Cancelled between strips of rows, with an error.
  const JobControl* control = nullptr;
  /// Told, on the thread that reads, how many rows of the first picture are decoded, whose other
  /// rows must not be looked at yet. Another bitmap than before means that reading began anew.
  std::function<void(const Image& unfinished, int rows)> rowsDecoded;
};

/// Decodes a file: JPEG, PNG, TIFF, BMP, GIF, WebP, JPEG 2000, HEIC, AVIF, PNM (P1 to P6) or a
/// camera's RAW, told apart by its contents (see openPictureFile).
///
/// Pixels come as they are stored, not turned by any orientation tag (HEIC and AVIF keep the turn
/// in the container, so theirs come upright). 8-bit RGB keeps its numbers, and the embedded profile
/// travels in Image::profile(). What is 16-bit, palette or CMYK becomes 8-bit sRGB through the
/// embedded profile (CMYK without one through a usual press profile) and has no profile; gray stays
/// gray, through its profile where it has one. RAW is developed as decodeRaw says. Alpha is
/// straight. The logical size is the pixel size of the first picture.
///
/// Of GIF and WebP animations the first frame counts, of HEIC and AVIF the primary picture; only
/// TIFF has several representations, its pages in order.
///
/// Nothing the file claims is believed: pictures beyond Bitmap::kMaxPixels or beyond the memory of
/// the machine are refused before anything is allocated for them, and a file that is cut short or
/// damaged gives an error, not half a picture. Folders, sockets, pipes and devices are refused
/// without being read. The error does not repeat the path.
///
/// `path` is in the file system's own bytes. Any thread.
Result<Image> readImage(const std::string& path, const ReadOptions& options = {});
/// The same of a file that is open.
Result<Image> readImage(const PictureFile& file, const ReadOptions& options = {});

/// The pixel sizes of all representations readImage would give, from the file's headers alone.
/// Any thread.
Result<std::vector<RepresentationSize>> readRepresentationSizes(const std::string& path);
Result<std::vector<RepresentationSize>> readRepresentationSizes(const PictureFile& file);

}  // namespace velmara
