#include "session/photo_file.h"

#include <QDateTime>
#include <QLocale>

#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>

#include "imaging/image_reader.h"
#include "platform/log.h"

namespace velmara {
namespace {

namespace fs = std::filesystem;

struct Attributes {
  std::uint64_t size = 0;
  QDateTime created;
};

// A file system that keeps no birth time has the time of the last change to offer.
std::optional<Attributes> attributesOf(const std::string& path) {
  struct statx status {};
  if (::statx(AT_FDCWD, path.c_str(), 0, STATX_SIZE | STATX_BTIME | STATX_MTIME, &status) != 0) {
    return std::nullopt;
  }
  const bool hasBirth = (status.stx_mask & STATX_BTIME) != 0;
  const auto& time = hasBirth ? status.stx_btime : status.stx_mtime;
  return Attributes{status.stx_size, QDateTime::fromSecsSinceEpoch(time.tv_sec)};
}

std::string extensionOf(const std::string& name) {
  const std::string extension = fs::path(name).extension().string();
  return extension.empty() ? extension : extension.substr(1);
}

}  // namespace

PhotoFile PhotoFile::initWithFileUrl(const std::string& path) {
  const auto file = openPictureFile(path);
  if (!file) return initWithFile(path, nullptr, {});
  const auto sizes = readRepresentationSizes(*file);
  return initWithFile(path, &*file, sizes ? *sizes : std::vector<RepresentationSize>());
}

PhotoFile PhotoFile::initWithFile(const std::string& path, const PictureFile* file,
                                  const std::vector<RepresentationSize>& sizes) {
  PhotoFile record;
  const fs::path location(path);
  record.filePath = path;
  record.fileURL = path;
  record.fileName = location.filename().string();
  record.fileExtension = extensionOf(record.fileName);
  record.fileContainerFolderName = location.parent_path().filename().string();

  const std::optional<Attributes> attributes = attributesOf(path);
  record.fileSize = std::to_string(attributes ? attributes->size : 0);
  if (attributes) {
    record.fileCreationDate =
        QLocale()
            .toString(attributes->created, QStringLiteral("MMM-dd-yyyy hh:mm:s AP"))
            .toStdString();
  } else {
    logLine("Not found");
  }

  for (const RepresentationSize& size : sizes) {
    if (size.width > 0) record.width = size.width;
    if (size.height > 0) record.height = size.height;
  }
  if (file != nullptr) {
    record.format = file->format;
    record.metaInfoDict = readMetadata(*file);
  }
  return record;
}

std::optional<int> PhotoFile::orientation() const {
  return metaInfoDict ? metaInfoDict->orientation() : std::nullopt;
}

std::optional<ImageMetadata> PhotoFile::exifDict(const std::string& path) {
  return readMetadata(path);
}

}  // namespace velmara
