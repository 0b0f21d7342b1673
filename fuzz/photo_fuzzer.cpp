// A file that a user opens: its kind, headers, metadata and pixels, and, of a small one, a file of
// each kind that an export makes of it.
#include "fuzzing.h"
#include "session/export_formats.h"
#include "session/loaded_photo.h"

namespace {

using namespace velmara;
using fuzzing::require;

constexpr double kMostPixels = 1 << 20;
constexpr double kMostPixelsExported = 1 << 14;

void checkExports(const LoadedPhoto& photo) {
  const auto upright = uprightAtFullSize(photo, wholePhotoToFilter(photo));
  require(upright.ok() || !upright.error().empty(), "a photo that cannot be turned says why");
  if (!upright) return;
  for (const FileFormat format :
       {FileFormat::jpeg, FileFormat::tiff, FileFormat::gif, FileFormat::png}) {
    const auto bytes = encodeExport(photo.record, *upright, format);
    require(bytes.ok(), "what was decoded can be written");
    const auto again =
        openPhoto(fuzzing::fileOf(fuzzing::textOf(bytes->data(), bytes->size()), "exported"));
    require(again.ok(), "what was written can be opened");
    require(again->record.format == format, "as what it was written");
    require(again->record.width == upright->bitmap().width() &&
                again->record.height == upright->bitmap().height(),
            "with its size");
    require(again->record.orientation().value_or(1) == 1, "upright");
  }
}

void open(const std::string& path) {
  auto photo = openPhoto(path);
  if (!photo) {
    require(!photo.error().empty(), "a file that cannot be opened says why");
    return;
  }
  const Size size = photo->fullSize;
  require(size.width >= 1.0 && size.height >= 1.0, "an open photo has a size");
  if (size.width * size.height > kMostPixels) return;
  const auto loaded = loadPixels(std::move(photo).value());
  if (!loaded) {
    require(!loaded.error().empty(), "pixels that cannot be read say why");
    return;
  }
  require(loaded->image.isValid(), "a photo that was read has pixels");
  if (loaded->fullSize.width * loaded->fullSize.height <= kMostPixelsExported) {
    checkExports(*loaded);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes = fuzzing::textOf(data, size);
  open(fuzzing::fileOf(bytes, "photo"));
  // What cameras name their files is asked to be one.
  open(fuzzing::fileOf(bytes, "photo.dng"));
  return 0;
}
