#include "imaging/picture_file.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <optional>
#include <sys/mman.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "imaging/file_checks.h"
#include "imaging/initialise.h"

namespace velmara {
namespace {

std::string kindOf(mode_t mode) {
  if (S_ISDIR(mode)) return "it is a folder";
  if (S_ISFIFO(mode)) return "it is a pipe";
  if (S_ISSOCK(mode)) return "it is a socket";
  return "it is no ordinary file";
}

}  // namespace

Result<InputFile> InputFile::open(const std::string& path) {
  // Without O_NONBLOCK the open itself would wait for a pipe's other end.
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  if (descriptor < 0) {
    const int code = errno;
    struct stat status {};
    if (code == ENXIO && ::stat(path.c_str(), &status) == 0) return Error{kindOf(status.st_mode)};
    return Error{"cannot open the file: " + std::generic_category().message(code)};
  }
  InputFile file(descriptor, 0);
  struct stat status {};
  if (::fstat(descriptor, &status) != 0) {
    return Error{"cannot read the file: " + std::generic_category().message(errno)};
  }
  if (!S_ISREG(status.st_mode)) return Error{kindOf(status.st_mode)};
  if (status.st_size == 0) return Error{"the file is empty"};
  file.size_ = status.st_size;
  return Result<InputFile>(std::move(file));
}

InputFile::InputFile(InputFile&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)), size_(other.size_) {}

InputFile::~InputFile() {
  if (descriptor_ >= 0) ::close(descriptor_);
}

std::vector<std::uint8_t> InputFile::read(std::int64_t offset, std::size_t count) const {
  if (offset < 0 || offset >= size_) return {};
  std::vector<std::uint8_t> bytes(
      std::min<std::size_t>(count, static_cast<std::size_t>(size_ - offset)));
  std::size_t filled = 0;
  while (filled < bytes.size()) {
    const ssize_t got = ::pread(descriptor_, bytes.data() + filled, bytes.size() - filled,
                                offset + static_cast<std::int64_t>(filled));
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) break;
    filled += static_cast<std::size_t>(got);
  }
  bytes.resize(filled);
  return bytes;
}

Result<InputFile> InputFile::copyOf(const FilePiece& piece) const {
  const auto bytes = read(static_cast<std::int64_t>(piece.offset), piece.bytes);
  InputFile copy(::memfd_create("velmara", MFD_CLOEXEC), static_cast<std::int64_t>(bytes.size()));
  for (std::size_t written = 0; written < bytes.size();) {
    const ssize_t count = ::write(copy.descriptor_, bytes.data() + written, bytes.size() - written);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return Error{"not enough memory for the picture"};
    written += static_cast<std::size_t>(count);
  }
  return Result<InputFile>(std::move(copy));
}

Result<PictureFile> openPictureFile(const std::string& path) {
  if (!initialiseImaging()) return Error{"the picture libraries cannot be started"};
  auto file = InputFile::open(path);
  if (!file) return Error{file.error()};
  const auto head = file->read(0, kSignatureBytes);
  const std::optional<FileFormat> format = fileFormatOf(head);
  const bool mayBeTiff = format == FileFormat::tiff || format == FileFormat::raw;
  TiffDirectories directories = mayBeTiff ? readTiffDirectories(*file) : TiffDirectories();

  const bool isRaw = format == FileFormat::raw || directories.isCameraRaw;
  const bool isNamedRaw = (!format || format == FileFormat::tiff) && isNamedAsRaw(path);
  if (isRaw || isNamedRaw) {
    auto facts = directories.isMosaicCutShort
                     ? Result<RawFacts>(Error{"the RAW file is damaged or cut short"})
                     : readRawFacts(*file);
    if (facts) {
      const RepresentationSize size = {facts->width, facts->height};
      return PictureFile{path,   std::move(file).value(),  FileFormat::raw,
                         {size}, std::move(facts).value(), std::move(directories.mosaicJpegs)};
    }
    if (isRaw) return Error{facts.error()};
  }
  if (!format) return Error{"it is not a picture of a kind that can be read"};

  if (*format == FileFormat::pnm) {
    if (const Status header = checkPnmHeader(*file); !header) return Error{header.error()};
  }
  std::vector<RepresentationSize> pages(1);
  if (*format == FileFormat::tiff) {
    if (directories.sizes.empty()) return Error{"the TIFF file is damaged or cut short"};
    pages = std::move(directories.sizes);
  }
  return PictureFile{path, std::move(file).value(), *format, std::move(pages)};
}

}  // namespace velmara
