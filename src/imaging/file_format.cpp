#include "imaging/file_format.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

#include "imaging/raw_file.h"
#include "imaging/vips_api.h"

namespace velmara {
namespace {

using namespace std::string_view_literals;

bool isTiff(std::string_view head) {
  return head.starts_with("II*\0"sv) || head.starts_with("MM\0*"sv) ||
         head.starts_with("II+\0"sv) || head.starts_with("MM\0+"sv);
}

// An ISO base media file whose main or compatible brands are those of still pictures.
bool isHeif(std::string_view head) {
  constexpr std::string_view kBrands[] = {"heic"sv, "heix"sv, "heim"sv, "heis"sv, "hevc"sv,
                                          "mif1"sv, "msf1"sv, "avif"sv, "avis"sv};
  if (head.size() < 16 || head.substr(4, 4) != "ftyp"sv) return false;
  for (std::size_t at = 8; at + 4 <= head.size(); at += 4) {
    if (std::ranges::find(kBrands, head.substr(at, 4)) != std::end(kBrands)) return true;
  }
  return false;
}

// Those cameras' formats that do not pass for a TIFF, and one that says more in its first bytes.
bool isRaw(std::string_view head) {
  constexpr std::string_view kStarts[] = {"IIRO"sv,
                                          "IIRS"sv,
                                          "MMOR"sv,
                                          "IIU\0"sv,
                                          "FUJIFILMCCD-RAW"sv,
                                          "FOVb"sv,
                                          "\0MRM"sv,
                                          "IIII"sv,
                                          "II\x1a\0\0\0HEAPCCDR"sv};
  return (isTiff(head) && head.size() > 10 && head.substr(8, 2) == "CR"sv) ||
         (head.size() >= 12 && head.substr(4, 8) == "ftypcrx "sv) ||
         std::ranges::any_of(kStarts,
                             [&](std::string_view start) { return head.starts_with(start); });
}

bool isPnm(std::string_view head) {
  return head.size() > 2 && head[0] == 'P' && head[1] >= '1' && head[1] <= '6' &&
         " \t\r\n#"sv.find(head[2]) != std::string_view::npos;
}

constexpr auto kAccess = VIPS_ACCESS_SEQUENTIAL;

template <auto kOperation>
int load(VipsSource* source, int /*page*/, bool /*tolerant*/, VipsImage** image) {
  return (vips().*kOperation)(source, image, "access", kAccess, "fail_on", VIPS_FAIL_ON_TRUNCATED,
                              nullptr);
}

int loadJpeg(VipsSource* source, int /*page*/, bool tolerant, VipsImage** image) {
  // What libjpeg only warns of may be a picture of which the lower half is missing.
  return vips().jpegload_source(source, image, "access", kAccess, "fail_on",
                                tolerant ? VIPS_FAIL_ON_TRUNCATED : VIPS_FAIL_ON_WARNING, nullptr);
}

int loadTiff(VipsSource* source, int page, bool /*tolerant*/, VipsImage** image) {
  return vips().tiffload_source(source, image, "access", kAccess, "fail_on", VIPS_FAIL_ON_TRUNCATED,
                                "page", page, nullptr);
}

int saveJpeg(VipsImage* image, int quality, VipsTarget* target) {
  constexpr int kLeastQualityOfFullColours = 90;
  return vips().jpegsave_target(image, target, "Q", quality, "subsample_mode",
                                quality >= kLeastQualityOfFullColours ? VIPS_FOREIGN_SUBSAMPLE_OFF
                                                                      : VIPS_FOREIGN_SUBSAMPLE_ON,
                                nullptr);
}

int saveTiff(VipsImage* image, int /*quality*/, VipsTarget* target) {
  return vips().tiffsave_target(image, target, "compression", VIPS_FOREIGN_TIFF_COMPRESSION_LZW,
                                "predictor", VIPS_FOREIGN_TIFF_PREDICTOR_HORIZONTAL, "resunit",
                                VIPS_FOREIGN_TIFF_RESUNIT_INCH, nullptr);
}

int saveBmp(VipsImage* image, int /*quality*/, VipsTarget* target) {
  void* bytes = nullptr;
  std::size_t size = 0;
  if (vips().magicksave_buffer(image, &bytes, &size, "format", "BMP", nullptr) != 0) return -1;
  const int failed = vips().target_write(target, bytes, size);
  g_free(bytes);
  return failed != 0 ? failed : vips().target_end(target);
}

int saveJpeg2000(VipsImage* image, int /*quality*/, VipsTarget* target) {
  return vips().jp2ksave_target(image, target, "lossless", TRUE, nullptr);
}

template <auto kOperation>
int save(VipsImage* image, int /*quality*/, VipsTarget* target) {
  return (vips().*kOperation)(image, target, nullptr);
}

constexpr FormatFacts kFormats[] = {
    {.format = FileFormat::jpeg,
     .name = "JPEG",
     .word = "jpeg",
     .title = "JPEG (*.jpg)",
     .extensions = {"jpg", "jpeg", "jpe"},
     .matches = [](std::string_view head) { return head.starts_with("\xff\xd8\xff"sv); },
     .decoder = "VipsForeignLoadJpeg",
     .load = loadJpeg,
     .save = saveJpeg,
     .metadata = MetadataPlace::file,
     .carriesProfile = true},
    {.format = FileFormat::tiff,
     .name = "TIFF",
     .word = "tiff",
     .title = "Tiff (*.tiff)",
     .extensions = {"tiff", "tif"},
     .matches = isTiff,
     .decoder = "VipsForeignLoadTiff",
     .load = loadTiff,
     .save = saveTiff,
     .metadata = MetadataPlace::file,
     .carriesProfile = true,
     .carriesAlpha = true},
    {.format = FileFormat::bmp,
     .name = "BMP",
     .word = "bmp",
     .title = "BMP (*.bmp)",
     .extensions = {"bmp", "dib"},
     .matches = [](std::string_view head) { return head.starts_with("BM"sv); },
     .decoder = "VipsForeignLoadMagick",
     .save = saveBmp,
     .carriesProfile = true,
     .carriesAlpha = true},
    {.format = FileFormat::gif,
     .name = "GIF",
     .word = "gif",
     .title = "GIF (*.gif)",
     .extensions = {"gif"},
     .matches =
         [](std::string_view head) {
           return head.starts_with("GIF87a"sv) || head.starts_with("GIF89a"sv);
         },
     .decoder = "VipsForeignLoadNsgif",
     .load = load<&VipsApi::gifload_source>,
     .save = save<&VipsApi::gifsave_target>,
     .carriesAlpha = true},
    {.format = FileFormat::png,
     .name = "PNG",
     .word = "png",
     .title = "PNG (*.png)",
     .extensions = {"png"},
     .matches = [](std::string_view head) { return head.starts_with("\x89PNG\r\n\x1a\n"sv); },
     .decoder = "VipsForeignLoadPng",
     .load = load<&VipsApi::pngload_source>,
     .save = save<&VipsApi::pngsave_target>,
     .metadata = MetadataPlace::file,
     .carriesProfile = true,
     .carriesAlpha = true},
    {.format = FileFormat::jpeg2000,
     .name = "JPEG 2000",
     .extensions = {"jp2", "j2k", "jpx", "jpf"},
     .matches =
         [](std::string_view head) {
           return head.starts_with("\0\0\0\x0cjP  \r\n\x87\n"sv) ||
                  head.starts_with("\xff\x4f\xff\x51"sv);
         },
     .decoder = "VipsForeignLoadJp2k",
     .load = load<&VipsApi::jp2kload_source>,
     .save = saveJpeg2000,
     .metadata = MetadataPlace::file,
     .carriesAlpha = true},
    {.format = FileFormat::webp,
     .name = "WebP",
     .extensions = {"webp"},
     .matches =
         [](std::string_view head) {
           return head.starts_with("RIFF"sv) && head.substr(0, 12).ends_with("WEBP"sv);
         },
     .decoder = "VipsForeignLoadWebp",
     .load = load<&VipsApi::webpload_source>,
     .metadata = MetadataPlace::file},
    {.format = FileFormat::heif,
     .name = "HEIF",
     .extensions = {"heic", "heif", "avif"},
     .matches = isHeif,
     .decoder = "VipsForeignLoadHeif",
     .load = load<&VipsApi::heifload_source>,
     .metadata = MetadataPlace::packets},
    {.format = FileFormat::pnm,
     .name = "PNM",
     .extensions = {"ppm", "pgm", "pbm", "pnm"},
     .matches = isPnm,
     .decoder = "VipsForeignLoadPpm",
     .load = load<&VipsApi::ppmload_source>},
    {.format = FileFormat::raw,
     .name = "RAW",
     .extensions = {"dng", "cr2", "cr3", "crw", "nef", "nrw", "arw", "sr2", "srf",
                    "raf", "orf", "rw2", "rwl", "pef", "srw", "x3f", "mrw", "erf",
                    "mef", "mos", "iiq", "3fr", "fff", "dcr", "kdc", "k25"},
     .matches = isRaw,
     .metadata = MetadataPlace::file},
};

std::string_view textOf(std::span<const std::uint8_t> head) {
  return {reinterpret_cast<const char*>(head.data()), head.size()};
}

std::string inCase(std::string_view text, int (*convert)(int)) {
  std::string converted(text);
  for (char& c : converted) c = static_cast<char>(convert(static_cast<unsigned char>(c)));
  return converted;
}

}  // namespace

std::span<const FormatFacts> fileFormats() {
  return kFormats;
}

const FormatFacts& factsOf(FileFormat format) {
  return kFormats[static_cast<std::size_t>(format)];
}

bool isDecoderInstalled(const FormatFacts& facts) {
  if (facts.decoder == nullptr) return isRawReaderInstalled();
  return vips().isLoaded && vips().type_from_name(facts.decoder) != 0;
}

std::optional<FileFormat> fileFormatOf(std::span<const std::uint8_t> head) {
  // First, as one of them is a TIFF too.
  if (isRaw(textOf(head))) return FileFormat::raw;
  const auto found = std::ranges::find_if(
      kFormats, [&](const FormatFacts& facts) { return facts.matches(textOf(head)); });
  return found == std::end(kFormats) ? std::nullopt : std::optional(found->format);
}

bool isNamedAsRaw(std::string_view path) {
  const std::string extension =
      inCase(std::filesystem::path(path).extension().string(), std::tolower);
  const auto& known = factsOf(FileFormat::raw).extensions;
  return extension.size() > 1 && std::ranges::find(known, extension.substr(1)) != known.end();
}

std::optional<FileFormat> fileFormatOfIndex(unsigned index) {
  if (index >= std::size(kFormats) || kFormats[index].save == nullptr) return std::nullopt;
  return kFormats[index].format;
}

std::optional<FileFormat> exportFormatOf(FileFormat format) {
  return factsOf(format).word.empty() ? std::nullopt : std::optional(format);
}

std::optional<FileFormat> exportFormatForExtension(std::string_view extension) {
  const std::string lower = inCase(extension, std::tolower);
  for (const FormatFacts& facts : kFormats) {
    const bool isNamedSo = std::ranges::find(facts.extensions, lower) != facts.extensions.end();
    if (!facts.word.empty() && !lower.empty() && isNamedSo) return facts.format;
  }
  return std::nullopt;
}

std::vector<std::string> exportFormatWords() {
  std::vector<std::string> words;
  for (const FormatFacts& facts : kFormats) {
    if (!facts.word.empty()) words.emplace_back(facts.word);
  }
  return words;
}

std::vector<std::string> readableFileTypes() {
  std::vector<std::string> types;
  for (const FormatFacts& facts : kFormats) {
    for (const std::string_view extension : facts.extensions) {
      if (extension.empty()) continue;
      types.emplace_back(extension);
      types.push_back(inCase(extension, std::toupper));
    }
  }
  return types;
}

bool isReadableFileType(std::string_view fileExtension) {
  const auto types = readableFileTypes();
  return std::ranges::find(types, fileExtension) != types.end();
}

}  // namespace velmara
