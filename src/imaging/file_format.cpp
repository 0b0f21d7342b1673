#include "imaging/file_format.h"

namespace velmara {

std::optional<FileFormat> formatOf(FileKind kind) {
  switch (kind) {
    case FileKind::jpeg:
      return FileFormat::jpeg;
    case FileKind::tiff:
      return FileFormat::tiff;
    case FileKind::bmp:
      return FileFormat::bmp;
    case FileKind::gif:
      return FileFormat::gif;
    case FileKind::png:
      return FileFormat::png;
    case FileKind::webp:
    case FileKind::jpeg2000:
    case FileKind::heif:
    case FileKind::pnm:
      break;
  }
  return std::nullopt;
}

}  // namespace velmara
