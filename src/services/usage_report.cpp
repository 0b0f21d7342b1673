#include "services/usage_report.h"

#include <QString>
#include <QXmlStreamReader>

#include <memory>
#include <plist/plist.h>

#include "platform/whole_file.h"

namespace velmara {
namespace {

constexpr int kDeepest = 64;
constexpr std::size_t kLargestReport = std::size_t{16} * 1024 * 1024;

// The library follows whatever it is given with the stack it has, so what it cannot bear is found
// before.
bool isSoundXml(std::string_view xml) {
  QXmlStreamReader reader(QByteArray::fromRawData(xml.data(), static_cast<qsizetype>(xml.size())));
  int depth = 0;
  while (!reader.atEnd()) {
    const auto token = reader.readNext();
    if (token == QXmlStreamReader::StartElement && ++depth > kDeepest) return false;
    if (token == QXmlStreamReader::EndElement) --depth;
  }
  return !reader.hasError();
}

// A binary list: a table of objects that refer to each other by number, from the top down. One that
// many refer to is copied for each, so a small file may stand for an endless one.
class BinaryWalk {
 public:
  explicit BinaryWalk(std::string_view bytes) : bytes_(bytes) {}

  bool isSound() {
    constexpr std::size_t kTrailer = 32;
    if (bytes_.size() < kTrailer) return false;
    const std::size_t trailer = bytes_.size() - kTrailer;
    offsetSize_ = number(trailer + 6, 1);
    referenceSize_ = number(trailer + 7, 1);
    objects_ = number(trailer + 8, 8);
    table_ = number(trailer + 24, 8);
    return offsetSize_ != 0 && referenceSize_ != 0 && visit(number(trailer + 16, 8), 0);
  }

 private:
  // A number of so many bytes, the highest first; one beyond the end is larger than any file.
  std::uint64_t number(std::uint64_t at, std::uint64_t size) const {
    if (size > 8 || at > bytes_.size() || size > bytes_.size() - at) return kNowhere;
    std::uint64_t value = 0;
    for (const char byte : bytes_.substr(at, size)) {
      value = value << 8U | static_cast<unsigned char>(byte);
    }
    return value;
  }

  bool visit(std::uint64_t object, int depth) {
    constexpr std::uint64_t kNode = 64;  // What one takes in memory, about.
    if (object >= objects_ || object >= bytes_.size() || depth > kDeepest) return false;
    const std::uint64_t at = number(table_ + object * offsetSize_, offsetSize_);
    const std::uint64_t marker = number(at, 1);
    if (marker == kNowhere) return false;
    const std::uint64_t kind = marker >> 4U;
    std::uint64_t count = marker & 15U;
    std::uint64_t content = at + 1;
    const bool isCounted = kind >= 4 && kind != 8;
    if (isCounted && count == 15) {
      const std::uint64_t size = std::uint64_t{1} << (number(content, 1) & 3U);
      count = number(content + 1, size);
      content += 1 + size;
    }
    const bool isContainer = kind >= 10;
    const std::uint64_t items = isContainer && kind == 13 ? 2 * count : count;
    if (count > bytes_.size() || (cost_ += kNode + count) > kLargestReport) return false;
    for (std::uint64_t item = 0; isContainer && item < items; ++item) {
      if (!visit(number(content + item * referenceSize_, referenceSize_), depth + 1)) return false;
    }
    return true;
  }

  static constexpr std::uint64_t kNowhere = ~std::uint64_t{0};

  std::string_view bytes_;
  std::uint64_t offsetSize_ = 0;
  std::uint64_t referenceSize_ = 0;
  std::uint64_t objects_ = 0;
  std::uint64_t table_ = 0;
  std::uint64_t cost_ = 0;
};

}  // namespace

std::optional<std::string> rewritePropertyList(std::string_view bytes) {
  const bool isBinary = bytes.starts_with("bplist");
  if (isBinary ? !BinaryWalk(bytes).isSound() : !isSoundXml(bytes)) return std::nullopt;
  plist_t parsed = nullptr;
  plist_from_memory(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &parsed);
  const std::unique_ptr<void, void (*)(plist_t)> list(parsed, plist_free);
  if (list == nullptr || plist_get_node_type(parsed) != PLIST_DICT) return std::nullopt;
  char* text = nullptr;
  std::uint32_t length = 0;
  plist_to_xml(parsed, &text, &length);
  const std::unique_ptr<char, void (*)(char*)> owned(text, plist_to_xml_free);
  if (owned == nullptr || length > kLargestReport) return std::nullopt;
  // Its strings are taken as they are; what is sent is UTF-8.
  return QString::fromUtf8(text, static_cast<qsizetype>(length)).toStdString();
}

std::optional<std::string> readUsageReport(const std::string& path) {
  const std::optional<std::string> bytes = readSmallFile(path, kLargestReport);
  return bytes ? rewritePropertyList(*bytes) : std::nullopt;
}

}  // namespace velmara
