// What the program reads of picture files by itself, before a library may.
#include "fuzzing.h"
#include "imaging/file_checks.h"
#include "imaging/file_format.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace velmara;
  const auto file = InputFile::open(fuzzing::fileOf(fuzzing::textOf(data, size)));
  if (!file) return 0;
  fileFormatOf(file->read(0, kSignatureBytes));
  (void)checkGifFrame(*file);
  (void)checkPnmHeader(*file);
  (void)checkPnmSamples(*file);
  const TiffDirectories directories = readTiffDirectories(*file);
  for (const FilePiece& jpeg : directories.mosaicJpegs) {
    fuzzing::require(jpeg.bytes <= size && jpeg.offset <= size - jpeg.bytes,
                     "a piece of a file lies in it");
  }
  return 0;
}
