#include "imaging/image_reader.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "imaging/decoding.h"
#include "imaging/file_checks.h"
#include "imaging/memory_budget.h"

namespace velmara {
namespace {

struct Page {
  Bitmap bitmap;
  ColorProfile profile;
};

// An empty message from below means that libvips has the words for it.
Error explained(const std::string& message, FileFormat format) {
  return message.empty() ? damagedFile(format) : Error{message};
}

// The decoders of these fill up what is missing.
Status checkSamples(const PictureFile& file) {
  if (file.format == FileFormat::pnm) return checkPnmSamples(file.file);
  if (file.format == FileFormat::gif) return checkGifFrame(file.file);
  return Done{};
}

Result<Page> decodePage(const PictureFile& file, int number, bool tolerant,
                        const ReadOptions& options) {
  auto opened = openPicture(file, number, tolerant);
  if (!opened) return Error{opened.error()};
  if (const Status whole = checkSamples(file); !whole) return Error{whole.error()};
  auto plain = toPlainPicture(std::move(opened.value().image));
  if (!plain) return explained(plain.error(), file.format);
  const auto tell = [&](const Bitmap& unfinished, int rows) {
    if (number == 0 && options.rowsDecoded)
      options.rowsDecoded(Image(unfinished, plain->profile), rows);
  };
  auto bitmap = toBitmap(plain->image.get(), options.control, tell);
  if (!bitmap) return explained(bitmap.error(), file.format);
  return Page{std::move(bitmap).value(), std::move(plain).value().profile};
}

// Faults of a JPEG's wrapping, which cameras and editors are known for; the picture is whole.
bool isHarmless(const std::string& message) {
  constexpr std::string_view kTexts[] = {"extraneous bytes before marker",
                                         "Unknown Adobe color transform",
                                         "Unknown JFIF revision",
                                         "Warning: unknown JFIF revision",
                                         "Invalid SOS parameters for sequential JPEG",
                                         "Inconsistent progression sequence"};
  return std::ranges::any_of(kTexts, [&message](std::string_view text) {
    return message.find(text) != std::string::npos;
  });
}

/// Decodes a JPEG. libjpeg goes on after any fault but one; a picture is whole if there was none,
/// or one that does no harm (it tells only the first in words, so a second counts as damage).
Result<Page> decodeJpeg(const PictureFile& file, const ReadOptions& options) {
  for (const bool tolerant : {false, true}) {
    const DecoderWarnings warnings;
    auto page = decodePage(file, 0, tolerant, options);
    if (!page && (tolerant || !isHarmless(page.error()))) return page;
    if (!page) continue;
    if (warnings.count() == 0 || (warnings.count() == 1 && isHarmless(warnings.first()))) {
      return page;
    }
    return damagedFile(file.format);
  }
  return damagedFile(file.format);
}

// LibRaw goes on after any fault in a JPEG, and tells nobody but the standard error.
Status checkJpegsOf(const PictureFile& raw, const JobControl* control) {
  for (const FilePiece& piece : raw.jpegs) {
    auto copy = raw.file.copyOf(piece);
    if (!copy) return Error{copy.error()};
    const PictureFile jpeg{raw.path, std::move(copy).value(), FileFormat::jpeg, {{}}};
    const auto page = decodeJpeg(jpeg, {Representations::first, control, {}});
    if (!page) return Error{"inside the RAW file: " + page.error()};
  }
  return Done{};
}

Result<Page> readRaw(const PictureFile& file, const ReadOptions& options) {
  if (const Status whole = checkJpegsOf(file, options.control); !whole) {
    return Error{whole.error()};
  }
  auto bitmap = decodeRaw(file.file, options.control);
  if (!bitmap) return Error{bitmap.error()};
  return Page{std::move(bitmap).value(), nullptr};
}

Result<Page> readPage(const PictureFile& file, int number, const ReadOptions& options) {
  if (file.format == FileFormat::raw) return readRaw(file, options);
  return file.format == FileFormat::jpeg ? decodeJpeg(file, options)
                                         : decodePage(file, number, true, options);
}

Status checkTotal(const std::vector<RepresentationSize>& pages) {
  std::int64_t pixels = 0;
  for (const RepresentationSize& page : pages) {
    if (!isAllowedBitmapSize(page.width, page.height, 4)) continue;  // openPicture has the words
    pixels += page.width * page.height;
    if (pixels > Bitmap::kMaxPixels || !fitsInMemory(static_cast<std::uint64_t>(pixels) * 4U)) {
      return Error{"the " + std::to_string(pages.size()) +
                   " pictures of the file are too large together"};
    }
  }
  return Done{};
}

}  // namespace

Result<Image> readImage(const std::string& path, const ReadOptions& options) {
  const auto file = openPictureFile(path);
  return file ? readImage(*file, options) : Result<Image>(Error{file.error()});
}

Result<Image> readImage(const PictureFile& file, const ReadOptions& options) {
  std::vector<RepresentationSize> pages = file.pages;
  if (options.representations == Representations::first) pages.resize(1);
  if (const Status allowed = checkTotal(pages); !allowed) return Error{allowed.error()};

  std::vector<Bitmap> representations;
  ColorProfile profile;
  for (std::size_t i = 0; i < pages.size(); ++i) {
    auto page = readPage(file, static_cast<int>(i), options);
    if (!page && i > 0) return Error{"page " + std::to_string(i + 1) + ": " + page.error()};
    if (!page) return Error{page.error()};
    if (i == 0) profile = page->profile;
    representations.push_back(std::move(page).value().bitmap);
  }
  const Size size = {static_cast<double>(representations[0].width()),
                     static_cast<double>(representations[0].height())};
  return Image(std::move(representations), size, std::move(profile));
}

Result<std::vector<RepresentationSize>> readRepresentationSizes(const std::string& path) {
  const auto file = openPictureFile(path);
  if (!file) return Error{file.error()};
  return readRepresentationSizes(*file);
}

Result<std::vector<RepresentationSize>> readRepresentationSizes(const PictureFile& file) {
  if (file.format == FileFormat::raw) return file.pages;
  const auto first = openPicture(file, 0);
  if (!first) return Error{first.error()};
  std::vector<RepresentationSize> sizes = file.pages;
  sizes[0] = {vips().image_get_width(first->image.get()),
              vips().image_get_height(first->image.get())};
  return sizes;
}

}  // namespace velmara
