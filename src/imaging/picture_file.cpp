#include "imaging/picture_file.h"

#include <optional>
#include <utility>

#include "imaging/initialise.h"
#include "imaging/sample_check.h"
#include "imaging/tiff_directories.h"

namespace velmara {

Result<PictureFile> openPictureFile(const std::string& path) {
  if (!initialiseImaging()) return Error{"the picture libraries cannot be started"};
  auto file = InputFile::open(path);
  if (!file) return Error{file.error()};
  const auto head = file->read(0, kSignatureBytes);
  if (looksLikeCameraRaw(head)) return Error{"camera RAW files are not supported yet"};
  const std::optional<FileFormat> format = fileFormatOf(head);
  if (!format) return Error{"it is not a picture of a kind that can be read"};

  if (*format == FileFormat::pnm) {
    if (const Status header = checkPnmHeader(*file); !header) return Error{header.error()};
  }
  std::vector<RepresentationSize> pages(1);
  if (*format == FileFormat::tiff) {
    TiffDirectories directories = readTiffDirectories(*file);
    if (directories.isCameraRaw) return Error{"camera RAW files are not supported yet"};
    if (directories.sizes.empty()) return Error{"the TIFF file is damaged or cut short"};
    pages = std::move(directories.sizes);
  }
  return PictureFile{path, std::move(file).value(), *format, std::move(pages)};
}

}  // namespace velmara
