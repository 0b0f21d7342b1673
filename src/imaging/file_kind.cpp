#include "imaging/file_kind.h"

#include <algorithm>
#include <string_view>

namespace velmara {
namespace {

using namespace std::string_view_literals;

std::string_view textOf(std::span<const std::uint8_t> head) {
  return {reinterpret_cast<const char*>(head.data()), head.size()};
}

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

bool isPnm(std::string_view head) {
  return head.size() > 2 && head[0] == 'P' && head[1] >= '1' && head[1] <= '6' &&
         " \t\r\n#"sv.find(head[2]) != std::string_view::npos;
}

}  // namespace

std::optional<FileKind> fileKindOf(std::span<const std::uint8_t> bytes) {
  const std::string_view head = textOf(bytes);
  if (head.starts_with("\xff\xd8\xff"sv)) return FileKind::jpeg;
  if (head.starts_with("\x89PNG\r\n\x1a\n"sv)) return FileKind::png;
  if (head.starts_with("GIF87a"sv) || head.starts_with("GIF89a"sv)) return FileKind::gif;
  if (head.starts_with("RIFF"sv) && head.substr(0, 12).ends_with("WEBP"sv)) return FileKind::webp;
  if (head.starts_with("\0\0\0\x0cjP  \r\n\x87\n"sv) || head.starts_with("\xff\x4f\xff\x51"sv)) {
    return FileKind::jpeg2000;
  }
  if (head.starts_with("BM"sv)) return FileKind::bmp;
  if (isTiff(head)) return FileKind::tiff;
  if (isHeif(head)) return FileKind::heif;
  if (isPnm(head)) return FileKind::pnm;
  return std::nullopt;
}

bool looksLikeCameraRaw(std::span<const std::uint8_t> bytes) {
  const std::string_view head = textOf(bytes);
  return (isTiff(head) && head.size() > 10 && head.substr(8, 2) == "CR"sv) ||
         head.starts_with("IIRO"sv) || head.starts_with("IIRS"sv) || head.starts_with("MMOR"sv) ||
         head.starts_with("IIU\0"sv) || head.starts_with("FUJIFILMCCD-RAW"sv) ||
         head.starts_with("FOVb"sv) || head.starts_with("\0MRM"sv) ||
         (head.size() > 12 && head.substr(4, 8) == "ftypcrx "sv);
}

std::string nameOf(FileKind kind) {
  switch (kind) {
    case FileKind::jpeg:
      return "JPEG";
    case FileKind::png:
      return "PNG";
    case FileKind::tiff:
      return "TIFF";
    case FileKind::bmp:
      return "BMP";
    case FileKind::gif:
      return "GIF";
    case FileKind::webp:
      return "WebP";
    case FileKind::jpeg2000:
      return "JPEG 2000";
    case FileKind::heif:
      return "HEIF";
    case FileKind::pnm:
      return "PNM";
  }
  return {};
}

}  // namespace velmara
