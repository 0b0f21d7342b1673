#include "app/clipboard/pasted_picture.h"

#include <QBuffer>
#include <QByteArray>
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QMimeData>
#include <QUrl>

#include <cstdint>
#include <filesystem>
#include <span>

#include "platform/whole_file.h"

namespace velmara {
namespace {

struct PasteText {
  Q_DECLARE_TR_FUNCTIONS(PastedPicture)
};

constexpr int kMostNames = 1000;

struct Encoded {
  QByteArray bytes;
  const char* extension = "png";
};

// What keeps most of the picture comes first.
Encoded encodedPicture(const QMimeData& clipboard) {
  struct Type {
    const char* mimeType;
    const char* extension;
  };
  for (const Type& type :
       {Type{"image/png", "png"}, Type{"image/tiff", "tif"}, Type{"image/jpeg", "jpg"}}) {
    const QByteArray bytes = clipboard.data(QString::fromLatin1(type.mimeType));
    if (!bytes.isEmpty()) return {bytes, type.extension};
  }
  Encoded drawn;
  const auto image = qvariant_cast<QImage>(clipboard.imageData());
  QBuffer buffer(&drawn.bytes);
  if (!image.isNull()) image.save(&buffer, "PNG");
  return drawn;
}

Result<std::string> writtenTo(const std::string& folder, const Encoded& picture) {
  const std::span bytes(reinterpret_cast<const std::uint8_t*>(picture.bytes.constData()),
                        static_cast<std::size_t>(picture.bytes.size()));
  const std::filesystem::path directory(folder);
  const std::string name = PasteText::tr("Pasted Picture").toStdString();
  for (int number = 1; number < kMostNames; ++number) {
    const std::string suffix = number == 1 ? "" : " " + std::to_string(number);
    const std::string path = (directory / (name + suffix + "." + picture.extension)).string();
    if (std::filesystem::exists(path)) continue;
    const Status written = createFile(path, bytes);
    if (written) return path;
    return Error{written.error()};
  }
  return Error{PasteText::tr("too many pictures were pasted").toStdString()};
}

}  // namespace

Result<std::string> pastedPicture(const QMimeData& clipboard, const std::string& folder) {
  for (const QUrl& url : clipboard.urls()) {
    const QString file = url.toLocalFile();
    if (QFileInfo(file).isFile()) return QFile::encodeName(file).toStdString();
  }
  const Encoded picture = encodedPicture(clipboard);
  if (picture.bytes.isEmpty()) {
    return Error{PasteText::tr("there is no picture on the clipboard").toStdString()};
  }
  return writtenTo(folder, picture);
}

}  // namespace velmara
