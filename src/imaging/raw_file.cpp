#include "imaging/raw_file.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <ctime>
#include <exception>
#include <sys/mman.h>
#include <utility>
#include <vector>

#include "imaging/memory_budget.h"
#include "imaging/picture_file.h"
#include "imaging/raw_api.h"

namespace velmara {
namespace {

constexpr const char* kDamagedRaw = "the RAW file is damaged or cut short";

// The mosaic, four samples a pixel while it is developed, the result and a copy of that.
constexpr std::uint64_t kBytesWhileDeveloping = 2 + 8 + 3 + 3;
// Of the mosaic alone; LibRaw refuses what needs more.
constexpr unsigned kMostMosaicMegabytes = 2048;

/// The bytes of a file as they are looked at: headers lie at its start, its end and between.
class MappedFile {
 public:
  explicit MappedFile(const InputFile& file) : size_(static_cast<std::size_t>(file.size())) {
    void* start = ::mmap(nullptr, size_, PROT_READ, MAP_PRIVATE, file.descriptor(), 0);
    if (start != MAP_FAILED) start_ = start;
  }
  MappedFile(const MappedFile&) = delete;
  MappedFile& operator=(const MappedFile&) = delete;
  ~MappedFile() {
    if (start_ != nullptr) ::munmap(start_, size_);
  }

  void* start() const { return start_; }
  std::size_t size() const { return size_; }

 private:
  void* start_ = nullptr;
  std::size_t size_;
};

/// What LibRaw calls while it works.
struct RawWatch {
  const JobControl* control = nullptr;
  bool hasDataError = false;
};

void noteDataError(void* watch, const char* /*file*/, int /*offset*/) {
  static_cast<RawWatch*>(watch)->hasDataError = true;
}

int askForCancel(void* watch, LibRaw_progress /*stage*/, int /*iteration*/, int /*expected*/) {
  const JobControl* control = static_cast<RawWatch*>(watch)->control;
  return control != nullptr && control->isCancelled() ? 1 : 0;
}

Error rawError(int code) {
  switch (code) {
    case LIBRAW_FILE_UNSUPPORTED:
    case LIBRAW_NOT_IMPLEMENTED:
      return {"the camera RAW file is damaged or of a kind that cannot be read"};
    case LIBRAW_UNSUFFICIENT_MEMORY:
      return {"not enough memory for the picture"};
    case LIBRAW_TOO_BIG:
      return {"the picture is too large"};
    case LIBRAW_CANCELLED_BY_CALLBACK:
      return {"reading was cancelled"};
    default:
      return {kDamagedRaw};
  }
}

/// How a RAW is developed. All of it is decided here.
void setDevelopment(libraw_data_t& raw) {
  libraw_output_params_t& params = raw.params;
  params.output_bps = kRawOutputBits;
  params.output_color = 1;  // sRGB, and its curve in place of the older one that is usual there
  params.gamm[0] = 1.0 / 2.4;
  params.gamm[1] = 12.92;
  params.use_camera_wb = 1;
  params.user_flip = 0;  // whoever shows or writes the picture turns it
  params.user_qual = 3;  // adaptive homogeneity-directed: few artefacts, and it can be stopped
  // Brightening until a hundredth of the pixels is white would make frames of one series differ,
  // and lose highlights that nothing brings back.
  params.no_auto_bright = 1;
  params.max_raw_memory_mb = kMostMosaicMegabytes;
  if (raw.idata.dng_version == 0) return;
  // A DNG says what is white and how bright its maker means the picture to be. For the others the
  // usual limits stand: white is lowered to the brightest sample, against tinted highlights.
  params.adjust_maximum_thr = 0.0F;
  const float stops = raw.color.dng_levels.baseline_exposure;
  if (std::abs(stops) <= 4.0F) params.bright = std::exp2(stops);
}

/// The tag's number for the turn that LibRaw calls a flip: 1 mirrors left to right, 2 top to
/// bottom, 4 exchanges the sides; or in degrees.
int orientationOfFlip(int flip) {
  constexpr int kOrientations[] = {1, 2, 4, 3, 5, 8, 6, 7};
  switch ((flip + 3600) % 360) {
    case 270:
      return 8;
    case 180:
      return 3;
    case 90:
      return 6;
    default:
      return kOrientations[static_cast<unsigned>(flip) & 7U];
  }
}

std::string fixedSizeText(const char* text, std::size_t size) {
  return {text, ::strnlen(text, size)};
}

void addCamera(const libraw_data_t& raw, RawFacts& facts) {
  facts.make = fixedSizeText(raw.idata.make, sizeof raw.idata.make);
  facts.model = fixedSizeText(raw.idata.model, sizeof raw.idata.model);
  facts.lens = fixedSizeText(raw.lens.Lens, sizeof raw.lens.Lens);
  const auto known = [](float value) {
    return std::isfinite(value) && value > 0.0F ? value : 0.0F;
  };
  facts.seconds = double{known(raw.other.shutter)};
  facts.fNumber = double{known(raw.other.aperture)};
  facts.focalLength = double{known(raw.other.focal_len)};
  facts.iso = static_cast<int>(std::min(known(raw.other.iso_speed), 1e8F));
  std::tm time{};
  char text[32];
  // LibRaw has read the camera's clock as if it were this machine's.
  if (raw.other.timestamp > 0 && ::localtime_r(&raw.other.timestamp, &time) != nullptr &&
      std::strftime(text, sizeof text, "%Y:%m:%d %H:%M:%S", &time) == 19) {
    facts.taken = text;
  }
}

/// Checks sizes before anything is allocated for them.
Status checkRawSize(std::int64_t width, std::int64_t height, const libraw_data_t& raw,
                    std::size_t fileBytes) {
  const std::int64_t mosaic = std::int64_t{raw.sizes.raw_width} * raw.sizes.raw_height;
  const std::string text = std::to_string(width) + " x " + std::to_string(height) + " pixels";
  if (width <= 0 || height <= 0) return Error{kDamagedRaw};
  if (!isAllowedBitmapSize(width, height, 4) || mosaic > Bitmap::kMaxPixels) {
    return Error{"the picture is too large: " + text};
  }
  // No compression takes less than a bit for every 8 x 8 samples.
  if (mosaic / 64 > static_cast<std::int64_t>(fileBytes) * 8) return Error{kDamagedRaw};
  const auto pixels = static_cast<std::uint64_t>(std::max(width * height, mosaic));
  if (!fitsInMemory(pixels * kBytesWhileDeveloping + fileBytes)) {
    return Error{"not enough memory for a picture of " + text};
  }
  return Done{};
}

/// A RAW file in LibRaw's hands, its headers read. `watch` and the bytes must outlive it.
Result<RawHandle> openRaw(void* bytes, std::size_t size, RawWatch& watch) {
  if (!rawApi().isLoaded) return Error{"camera RAW files cannot be read, LibRaw is not installed"};
  RawHandle raw(rawApi().init(LIBRAW_OPIONS_NO_MEMERR_CALLBACK));
  if (raw == nullptr) return rawError(LIBRAW_UNSUFFICIENT_MEMORY);
  rawApi().set_dataerror_handler(raw.get(), noteDataError, &watch);
  rawApi().set_progress_handler(raw.get(), askForCancel, &watch);
  const int code = rawApi().open_buffer(raw.get(), bytes, size);
  if (code != 0) return rawError(code);
  return raw;
}

Result<Bitmap> toBitmap(const libraw_processed_image_t& picture) {
  static_assert(kRawOutputBits == 8);
  const bool isKnown = picture.type == LIBRAW_IMAGE_BITMAP && picture.bits == kRawOutputBits &&
                       (picture.colors == 1 || picture.colors == 3);
  if (!isKnown) return Error{"RAW files of this camera's colours cannot be read"};
  auto bitmap = BitmapBuilder::allocate(picture.width, picture.height, picture.colors);
  if (!bitmap) return rawError(LIBRAW_UNSUFFICIENT_MEMORY);
  const std::size_t bytes = bitmap->rowBytes() * picture.height;
  if (picture.data_size < bytes) return Error{kDamagedRaw};
  std::memcpy(bitmap->row(0), picture.data, bytes);
  return std::move(*bitmap).finish();
}

/// The developed picture of a file's bytes, which are given up.
Result<RawPicture> develop(std::vector<std::uint8_t> bytes, const JobControl* control) {
  RawWatch watch{control};
  auto opened = openRaw(bytes.data(), bytes.size(), watch);
  if (!opened) return Error{opened.error()};
  libraw_data_t* raw = opened.value().get();
  if (Status allowed = checkRawSize(raw->sizes.width, raw->sizes.height, *raw, bytes.size());
      !allowed) {
    return Error{allowed.error()};
  }
  setDevelopment(*raw);
  watch.hasDataError = false;
  int code = rawApi().unpack(raw);
  // LibRaw fills up what is missing and goes on.
  if (code == 0 && watch.hasDataError) return Error{kDamagedRaw};
  if (code == 0) code = rawApi().dcraw_process(raw);
  if (code != 0) return rawError(code);
  RawPicture picture(rawApi().dcraw_make_mem_image(raw, &code));
  if (picture == nullptr) return rawError(code);
  return picture;
}

}  // namespace

bool isRawReaderInstalled() {
  return rawApi().isLoaded;
}

Result<RawFacts> readRawFacts(const InputFile& file) try {
  const MappedFile mapped(file);
  if (mapped.start() == nullptr) return Error{"cannot read the file"};
  RawWatch watch;
  auto opened = openRaw(mapped.start(), mapped.size(), watch);
  if (!opened) return Error{opened.error()};
  libraw_data_t* raw = opened.value().get();
  RawFacts facts;
  facts.orientation = orientationOfFlip(raw->sizes.flip);
  addCamera(*raw, facts);
  setDevelopment(*raw);
  if (const int code = rawApi().adjust_sizes_info_only(raw); code != 0) return rawError(code);
  facts.width = raw->sizes.iwidth;
  facts.height = raw->sizes.iheight;
  const Status allowed = checkRawSize(facts.width, facts.height, *raw, mapped.size());
  if (!allowed) return Error{allowed.error()};
  return facts;
} catch (const std::exception&) {
  return rawError(LIBRAW_UNSUFFICIENT_MEMORY);
}

Result<Bitmap> decodeRaw(const InputFile& file, const JobControl* control) try {
  if (!fitsInMemory(static_cast<std::uint64_t>(file.size()))) {
    return rawError(LIBRAW_UNSUFFICIENT_MEMORY);
  }
  auto picture = develop(file.read(0, static_cast<std::size_t>(file.size())), control);
  if (!picture) return Error{picture.error()};
  if (control != nullptr && control->isCancelled()) return rawError(LIBRAW_CANCELLED_BY_CALLBACK);
  return toBitmap(**picture);
} catch (const std::exception&) {
  return rawError(LIBRAW_UNSUFFICIENT_MEMORY);
}

}  // namespace velmara
