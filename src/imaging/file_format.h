#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

using VipsImage = struct _VipsImage;    // NOLINT(bugprone-reserved-identifier)
using VipsSource = struct _VipsSource;  // NOLINT(bugprone-reserved-identifier)
using VipsTarget = struct _VipsTarget;  // NOLINT(bugprone-reserved-identifier)

namespace velmara {

/// The formats of picture files. The first six are written too, by these indices.
enum class FileFormat {
  jpeg = 0,
  tiff = 1,
  bmp = 2,
  gif = 3,
  png = 4,
  jpeg2000 = 5,
  webp,
  heif,
  pnm,
  /// A camera's own, of any maker: read by LibRaw.
  raw
};

/// Where a format's Exif, XMP and IPTC are to be found.
enum class MetadataPlace {
  nowhere,
  /// In a file that Exiv2 opens and, where the format is written, writes.
  file,
  /// In packets that libvips hands out.
  packets,
};

/// Room for the extensions of one format: makers of cameras have one or more each.
inline constexpr std::size_t kMostExtensions = 26;

/// What there is to know of a format. All that depends on the format of a file comes from here.
struct FormatFacts {
  /// Its place in the table.
  FileFormat format;
  /// As messages have it: "JPEG 2000".
  std::string_view name;
  /// The word for it in the save panel and behind --format; empty for a format exports do not
  /// offer.
  std::string_view word = {};
  /// Its title in the save panel.
  std::string_view title = {};
  /// File name extensions in lower case without the dot, the usual one first, the rest empty.
  std::array<std::string_view, kMostExtensions> extensions;
  /// Whether a file that begins with these bytes is of this format.
  bool (*matches)(std::string_view head);
  /// The class of its decoders in libvips; those of no format here stay switched off. Null where
  /// another library decodes.
  const char* decoder = nullptr;
  /// Opens the picture of a page, its pixels to come from top to bottom. Null where the decoder
  /// wants the whole file in memory, or libvips does not decode it. `tolerant`: what the decoder
  /// only warns of is no fault.
  int (*load)(VipsSource* source, int page, bool tolerant, VipsImage** image) = nullptr;
  /// Encodes a picture, with a quality of 1 to 100 where there is one. Null if it is only read.
  int (*save)(VipsImage* image, int quality, VipsTarget* target) = nullptr;
  /// Where its Exif, XMP and IPTC are.
  MetadataPlace metadata = MetadataPlace::nowhere;
  /// What else a written file can hold.
  bool carriesProfile = false;
  bool carriesAlpha = false;
};

/// All formats, in the order of the save panel as far as they stand there.
std::span<const FormatFacts> fileFormats();

/// The row of a format.
const FormatFacts& factsOf(FileFormat format);

/// Whether this installation has a format's decoder; some come with packages of their own. After
/// initialiseImaging().
bool isDecoderInstalled(const FormatFacts& facts);

/// How many bytes of a file's start fileFormatOf looks at.
constexpr std::size_t kSignatureBytes = 64;

/// The format of a file by its first bytes; nothing if it is none of them. Most cameras' RAW files
/// begin as a TIFF does, and only their directories tell (openPictureFile).
std::optional<FileFormat> fileFormatOf(std::span<const std::uint8_t> head);

/// Whether a path has an extension that cameras give their RAW files, in whatever case.
bool isNamedAsRaw(std::string_view path);

/// The format an index stands for when a picture is written; nothing for 6 and above.
std::optional<FileFormat> fileFormatOfIndex(unsigned index);

/// The format itself if exports offer it, else nothing.
std::optional<FileFormat> exportFormatOf(FileFormat format);

/// The format that exports offer under an extension, upper or lower case.
std::optional<FileFormat> exportFormatForExtension(std::string_view extension);

/// The words of the formats that exports offer: "jpeg", "tiff" and so on.
std::vector<std::string> exportFormatWords();

/// The extensions of the picture files that can be opened, without the dot, each in lower and in
/// upper case: cameras write "JPG".
std::vector<std::string> readableFileTypes();

/// Whether an extension is one of them, exactly as written.
bool isReadableFileType(std::string_view fileExtension);

}  // namespace velmara
