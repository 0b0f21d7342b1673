#include <algorithm>
#include <set>
#include <span>
#include <utility>

#include "imaging/file_checks.h"

namespace velmara {
namespace {

constexpr std::size_t kMostDirectories = 1024;
constexpr std::size_t kMostNested = 16;
constexpr std::uint64_t kMostEntries = 4096;
constexpr std::size_t kMostPieces = 65536;

constexpr unsigned kImageWidth = 256;
constexpr unsigned kImageLength = 257;
constexpr unsigned kCompression = 259;
constexpr unsigned kPhotometricInterpretation = 262;
constexpr unsigned kStripOffsets = 273;
constexpr unsigned kStripByteCounts = 279;
constexpr unsigned kTileOffsets = 324;
constexpr unsigned kTileByteCounts = 325;
constexpr unsigned kSubIfds = 330;
constexpr unsigned kDngVersion = 50706;

constexpr std::uint64_t kColorFilterArray = 32803;
constexpr std::uint64_t kLinearRaw = 34892;
constexpr std::uint64_t kLossyJpeg = 34892;  // the number is the same by chance

struct Entry {
  unsigned tag = 0;
  std::vector<std::uint64_t> values;
};

struct Directory {
  std::vector<Entry> entries;
  std::uint64_t next = 0;

  std::uint64_t first(unsigned tag) const {
    for (const Entry& entry : entries) {
      if (entry.tag == tag && !entry.values.empty()) return entry.values[0];
    }
    return 0;
  }
  bool has(unsigned tag) const { return find(tag) != nullptr; }
  const Entry* find(unsigned tag) const {
    const auto found = std::ranges::find(entries, tag, &Entry::tag);
    return found == entries.end() ? nullptr : &*found;
  }
};

/// Reads numbers of one file in its byte order.
class TiffReader {
 public:
  explicit TiffReader(const InputFile& file) : file_(file) {
    const auto head = file.read(0, 16);
    if (head.size() < 8) return;
    littleEndian_ = head[0] == 'I';
    big_ = number(std::span(head).subspan(2, 2)) == 43;
    if (big_ && head.size() < 16) return;
    isAllMosaic_ = head.size() == 16 && head[8] == 'C' && head[9] == 'R';
    first_ = big_ ? number(std::span(head).subspan(8, 8)) : number(std::span(head).subspan(4, 4));
  }

  std::uint64_t firstDirectory() const { return first_; }

  /// Whether the mark of a maker who names no mosaic as such stands behind the header.
  bool isAllMosaic() const { return isAllMosaic_; }

  /// The strips or tiles of a directory.
  static std::vector<FilePiece> piecesOf(const Directory& directory) {
    std::vector<FilePiece> pieces;
    for (const auto& [at, bytes] :
         {std::pair(kStripOffsets, kStripByteCounts), std::pair(kTileOffsets, kTileByteCounts)}) {
      const Entry* offsets = directory.find(at);
      const Entry* counts = directory.find(bytes);
      if (offsets == nullptr || counts == nullptr) continue;
      for (std::size_t i = 0; i < offsets->values.size() && i < counts->values.size(); ++i) {
        pieces.push_back({offsets->values[i], counts->values[i]});
      }
    }
    return pieces;
  }

  /// Whether a piece ends before the file does.
  bool holds(const FilePiece& piece) const {
    const auto size = static_cast<std::uint64_t>(file_.size());
    return piece.offset <= size && piece.bytes <= size - piece.offset;
  }

  /// A directory with the values of its whole-number entries; no entries if it is not inside the
  /// file.
  Directory directoryAt(std::uint64_t offset) const {
    const std::size_t countBytes = big_ ? 8 : 2;
    const auto countField = bytes(offset, countBytes);
    if (countField.size() < countBytes) return {};
    const std::uint64_t count = number(countField);
    if (count == 0 || count > kMostEntries) return {};
    const std::size_t entryBytes = big_ ? 20 : 12;
    const auto table = bytes(offset + countBytes, count * entryBytes + wordBytes());
    if (table.size() < count * entryBytes) return {};

    Directory directory;
    for (std::size_t i = 0; i < count; ++i) {
      directory.entries.push_back(entryOf(std::span(table).subspan(i * entryBytes, entryBytes)));
    }
    directory.next = number(std::span(table).subspan(count * entryBytes));
    return directory;
  }

 private:
  std::size_t wordBytes() const { return big_ ? 8 : 4; }

  std::vector<std::uint8_t> bytes(std::uint64_t offset, std::size_t count) const {
    if (offset > static_cast<std::uint64_t>(file_.size())) return {};
    return file_.read(static_cast<std::int64_t>(offset), count);
  }

  std::uint64_t number(std::span<const std::uint8_t> field) const {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < field.size(); ++i) {
      value = value << 8U | field[littleEndian_ ? field.size() - 1 - i : i];
    }
    return value;
  }

  Entry entryOf(std::span<const std::uint8_t> field) const {
    Entry entry{static_cast<unsigned>(number(field.subspan(0, 2))), {}};
    const std::size_t size = sizeOfType(number(field.subspan(2, 2)));
    if (size == 0) return entry;
    const std::uint64_t count = std::min<std::uint64_t>(
        number(field.subspan(4, wordBytes())), isOfPieces(entry.tag) ? kMostPieces : kMostNested);
    const auto inside = field.subspan(4 + wordBytes());
    std::vector<std::uint8_t> outside;
    std::span<const std::uint8_t> data = inside;
    if (count * size > inside.size()) {
      outside = bytes(number(inside), count * size);
      data = outside;
    }
    for (std::size_t i = 0; i < count && (i + 1) * size <= data.size(); ++i) {
      entry.values.push_back(number(data.subspan(i * size, size)));
    }
    return entry;
  }

  static bool isOfPieces(unsigned tag) {
    return tag == kStripOffsets || tag == kStripByteCounts || tag == kTileOffsets ||
           tag == kTileByteCounts;
  }

  // Bytes of the types of whole numbers: BYTE, SHORT, LONG, IFD, LONG8, IFD8.
  static std::size_t sizeOfType(std::uint64_t type) {
    constexpr std::uint8_t kSizes[] = {0, 1, 0, 2, 4, 0, 0, 0, 0, 0, 0, 0, 0, 4, 0, 0, 8, 0, 8};
    return type < std::size(kSizes) ? kSizes[type] : 0;
  }

  const InputFile& file_;
  bool littleEndian_ = true;
  bool big_ = false;
  bool isAllMosaic_ = false;
  std::uint64_t first_ = 0;
};

bool holdsMosaic(const Directory& directory) {
  const std::uint64_t photometric = directory.first(kPhotometricInterpretation);
  return directory.has(kDngVersion) || photometric == kColorFilterArray ||
         photometric == kLinearRaw;
}

// What a directory and those nested in it have to say of a camera's mosaic.
void lookForMosaic(const TiffReader& reader, const Directory& directory, TiffDirectories& result) {
  const auto look = [&](const Directory& one) {
    if (!reader.isAllMosaic() && !holdsMosaic(one)) return;
    result.isCameraRaw = true;
    const auto pieces = TiffReader::piecesOf(one);
    if (!std::ranges::all_of(pieces, [&](const FilePiece& piece) { return reader.holds(piece); })) {
      result.isMosaicCutShort = true;
    }
    if (one.first(kCompression) == kLossyJpeg) {
      result.mosaicJpegs.insert(result.mosaicJpegs.end(), pieces.begin(), pieces.end());
    }
  };
  look(directory);
  const Entry* nested = directory.find(kSubIfds);
  if (nested == nullptr) return;
  for (const std::uint64_t offset : nested->values) look(reader.directoryAt(offset));
}

}  // namespace

TiffDirectories readTiffDirectories(const InputFile& file) {
  TiffDirectories result;
  const TiffReader reader(file);
  std::set<std::uint64_t> seen;
  std::uint64_t offset = reader.firstDirectory();
  while (offset != 0 && seen.size() < kMostDirectories && seen.insert(offset).second) {
    const Directory directory = reader.directoryAt(offset);
    if (directory.entries.empty()) break;
    lookForMosaic(reader, directory, result);
    result.sizes.push_back({static_cast<std::int64_t>(directory.first(kImageWidth)),
                            static_cast<std::int64_t>(directory.first(kImageLength))});
    offset = directory.next;
  }
  return result;
}

}  // namespace velmara
