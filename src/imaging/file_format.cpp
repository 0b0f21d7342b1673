#include "imaging/file_format.h"

#include "imaging/file_kind.h"
#include "imaging/input_file.h"

namespace velmara {

std::optional<FileFormat> formatOfFile(const std::string& path) {
  const auto file = InputFile::open(path);
  if (!file) return std::nullopt;
  const auto kind = fileKindOf(file->read(0, kSignatureBytes));
  if (!kind) return std::nullopt;
  switch (*kind) {
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
