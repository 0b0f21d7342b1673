#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/result.h"
#include "imaging/file_format.h"
#include "imaging/raw_file.h"

namespace velmara {

/// Where some of a file's bytes lie.
struct FilePiece {
  /// From the start of the file, and how many.
  std::uint64_t offset = 0;
  std::uint64_t bytes = 0;
};

/// An ordinary file open for reading, closed at the end.
class InputFile {
 public:
  /// Opens a path; what is no ordinary file (a folder, a pipe, a device) is refused without being
  /// waited for, an empty file likewise. The errors do not repeat the path.
  static Result<InputFile> open(const std::string& path);

  /// Takes the descriptor over.
  InputFile(InputFile&& other) noexcept;
  InputFile& operator=(InputFile&&) = delete;
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;
  ~InputFile();

  /// Open for reading until this ends.
  int descriptor() const { return descriptor_; }
  /// In bytes, when it was opened.
  std::int64_t size() const { return size_; }

  /// The bytes from an offset on, fewer than asked for at the end of the file. The position of the
  /// descriptor is not used.
  std::vector<std::uint8_t> read(std::int64_t offset, std::size_t count) const;

  /// A file in memory with the bytes of a piece of this one.
  Result<InputFile> copyOf(const FilePiece& piece) const;

 private:
  InputFile(int descriptor, std::int64_t size) : descriptor_(descriptor), size_(size) {}

  int descriptor_;
  std::int64_t size_;
};

/// Width and height of one of the pictures inside a file, in pixels as stored.
struct RepresentationSize {
  /// 0 where it is not known yet.
  std::int64_t width = 0;
  std::int64_t height = 0;

  friend bool operator==(const RepresentationSize&, const RepresentationSize&) = default;
};

/// A file known to be a picture of some kind, open, nothing of it decoded yet: sizes, metadata and
/// pixels can be had of it without opening it again, also after it was deleted. Any thread, but one
/// at a time.
struct PictureFile {
  /// Where it was opened, in the system's own bytes, the open file, and its kind.
  std::string path;
  InputFile file;
  FileFormat format;
  /// The pages of a TIFF; one size for every other kind, which is known of RAW files only.
  std::vector<RepresentationSize> pages;
  /// There for RAW files only.
  std::optional<RawFacts> raw = std::nullopt;
  /// The JPEGs, if any, that a RAW file keeps its samples in.
  std::vector<FilePiece> jpegs = {};
};

/// Opens a path and tells its kind by its contents; refuses what cannot be read. Where a TIFF does
/// not say that it holds a camera's mosaic, or the contents say nothing, a name as cameras give
/// them is reason enough to ask whether it is a RAW file. `path` is in the file system's own bytes,
/// and the error does not repeat it.
Result<PictureFile> openPictureFile(const std::string& path);

}  // namespace velmara
