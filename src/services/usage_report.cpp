#include "services/usage_report.h"

#include <QXmlStreamReader>

#include <map>

#include "services/small_file.h"

namespace velmara {
namespace {

constexpr int kDeepest = 64;
constexpr std::size_t kLargestReport = std::size_t{16} * 1024 * 1024;

constexpr std::string_view kOpening =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
    "<plist version=\"1.0\">\n";

QString escaped(QString text) {
  return text.replace(QLatin1Char('&'), QLatin1String("&amp;"))
      .replace(QLatin1Char('<'), QLatin1String("&lt;"))
      .replace(QLatin1Char('>'), QLatin1String("&gt;"));
}

// Reads one value after the other and writes it as it is read; any fault is raised in the reader.
class Rewriter {
 public:
  explicit Rewriter(QXmlStreamReader& reader) : reader_(reader) {}

  // The element that the reader has just entered, on a line of its own.
  QString value(int depth) {
    const QString name = reader_.name().toString();
    if (depth > kDeepest) {
      reader_.raiseError(QStringLiteral("nested too deeply"));
      return {};
    }
    if (name == QLatin1String("dict")) return dictionary(depth);
    if (name == QLatin1String("array")) return array(depth);
    if (name == QLatin1String("true") || name == QLatin1String("false")) {
      reader_.readElementText();
      return indent(depth) + QLatin1Char('<') + name + QLatin1String("/>\n");
    }
    if (name == QLatin1String("string") || name == QLatin1String("integer") ||
        name == QLatin1String("real") || name == QLatin1String("date") ||
        name == QLatin1String("data")) {
      return line(depth, name, reader_.readElementText());
    }
    reader_.raiseError(QStringLiteral("not an element of a property list"));
    return {};
  }

 private:
  static QString indent(int depth) { return {depth, QLatin1Char('\t')}; }

  static QString line(int depth, const QString& name, const QString& text) {
    return indent(depth) + QLatin1Char('<') + name + QLatin1Char('>') + escaped(text) +
           QLatin1String("</") + name + QLatin1String(">\n");
  }

  static QString enclosed(int depth, const QString& name, const QString& content) {
    if (content.isEmpty()) return indent(depth) + QLatin1Char('<') + name + QLatin1String("/>\n");
    return indent(depth) + QLatin1Char('<') + name + QLatin1String(">\n") + content +
           indent(depth) + QLatin1String("</") + name + QLatin1String(">\n");
  }

  QString dictionary(int depth) {
    std::map<QString, QString> entries;
    while (reader_.readNextStartElement()) {
      if (reader_.name() != QLatin1String("key")) {
        reader_.raiseError(QStringLiteral("a key is missing"));
        return {};
      }
      const QString key = reader_.readElementText();
      if (!reader_.readNextStartElement()) {
        reader_.raiseError(QStringLiteral("a value is missing"));
        return {};
      }
      entries[key] = value(depth + 1);
    }
    QString content;
    for (const auto& [key, text] : entries) {
      content += line(depth + 1, QStringLiteral("key"), key) + text;
    }
    return enclosed(depth, QStringLiteral("dict"), content);
  }

  QString array(int depth) {
    QString content;
    while (reader_.readNextStartElement()) content += value(depth + 1);
    return enclosed(depth, QStringLiteral("array"), content);
  }

  QXmlStreamReader& reader_;
};

}  // namespace

std::optional<std::string> rewritePropertyList(std::string_view xml) {
  QXmlStreamReader reader(QByteArray(xml.data(), static_cast<qsizetype>(xml.size())));
  if (!reader.readNextStartElement() || reader.name() != QLatin1String("plist") ||
      !reader.readNextStartElement() || reader.name() != QLatin1String("dict")) {
    return std::nullopt;
  }
  const QString content = Rewriter(reader).value(0);
  // Nothing but the end may follow.
  if (reader.readNextStartElement() || reader.hasError()) return std::nullopt;
  return std::string(kOpening) + content.toStdString() + "</plist>\n";
}

std::optional<std::string> readUsageReport(const std::string& path) {
  const std::optional<std::string> bytes = readSmallFile(path, kLargestReport);
  return bytes ? rewritePropertyList(*bytes) : std::nullopt;
}

}  // namespace velmara
