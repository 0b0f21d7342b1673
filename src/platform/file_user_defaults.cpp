#include "platform/file_user_defaults.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStandardPaths>

#include <cstddef>
#include <span>
#include <utility>

#include "platform/atomic_file.h"
#include "platform/log.h"

namespace velmara {
namespace {

constexpr const char* kDataKey = "data";

QJsonValue toJson(const std::string& value) {
  return QString::fromStdString(value);
}

QJsonValue toJson(std::int64_t value) {
  return QJsonValue(static_cast<qint64>(value));
}

QJsonValue toJson(bool value) {
  return value;
}

// Bytes have no counterpart in JSON: they stand as an object with their base64 form.
QJsonValue toJson(const DefaultsData& value) {
  const QByteArray bytes(reinterpret_cast<const char*>(value.data()),
                         static_cast<qsizetype>(value.size()));
  return QJsonObject{{QLatin1String(kDataKey), QString::fromLatin1(bytes.toBase64())}};
}

QJsonValue toJson(const DefaultsArray& array) {
  QJsonArray json;
  for (const DefaultsDictionary& dictionary : array) {
    QJsonObject object;
    for (const auto& [key, stored] : dictionary) {
      object.insert(QString::fromStdString(key),
                    std::visit([](const auto& value) { return toJson(value); }, stored));
    }
    json.append(object);
  }
  return json;
}

void insertFromJson(DefaultsDictionary& dictionary, std::string key, const QJsonValue& json) {
  if (json.isString()) {
    dictionary[std::move(key)] = json.toString().toStdString();
  } else if (json.isBool()) {
    dictionary[std::move(key)] = json.toBool();
  } else if (json.isDouble()) {
    dictionary[std::move(key)] = static_cast<std::int64_t>(json.toInteger());
  } else if (const QJsonValue data = json.toObject().value(QLatin1String(kDataKey));
             data.isString()) {
    const QByteArray bytes = QByteArray::fromBase64(data.toString().toLatin1());
    dictionary[std::move(key)] = DefaultsData(bytes.begin(), bytes.end());
  }
}

DefaultsArray arrayFromJson(const QJsonArray& json) {
  DefaultsArray array;
  for (const QJsonValue entry : json) {
    const QJsonObject object = entry.toObject();
    DefaultsDictionary dictionary;
    for (auto member = object.begin(); member != object.end(); ++member) {
      insertFromJson(dictionary, member.key().toStdString(), member.value());
    }
    array.push_back(std::move(dictionary));
  }
  return array;
}

}  // namespace

std::string userDefaultsPath() {
  const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
  return QFile::encodeName(folder + QStringLiteral("/velmara/settings.json")).toStdString();
}

FileUserDefaults::FileUserDefaults(std::string identifier, std::string path)
    : MemoryUserDefaults(std::move(identifier)), path_(std::move(path)) {
  read();
}

void FileUserDefaults::read() {
  QFile file(QFile::decodeName(path_.c_str()));
  if (!file.open(QIODevice::ReadOnly)) return;
  QJsonParseError error;
  const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
  if (!document.isObject()) {
    logFormat("settings %s cannot be read: %s", path_.c_str(), qPrintable(error.errorString()));
    return;
  }
  const QJsonObject object = document.object();
  for (auto member = object.begin(); member != object.end(); ++member) {
    const std::string key = member.key().toStdString();
    const QJsonValue json = member.value();
    if (json.isArray()) {
      values.insert_or_assign(key, arrayFromJson(json.toArray()));
    } else if (json.isString()) {
      values.insert_or_assign(key, json.toString().toStdString());
    } else if (json.isBool()) {
      values.insert_or_assign(key, json.toBool());
    } else if (json.isDouble()) {
      values.insert_or_assign(key, static_cast<std::int64_t>(json.toInteger()));
    }
  }
}

bool FileUserDefaults::synchronize() {
  QJsonObject object;
  for (const auto& [key, stored] : values) {
    object.insert(QString::fromStdString(key),
                  std::visit([](const auto& value) { return toJson(value); }, stored));
  }
  const QFileInfo info(QFile::decodeName(path_.c_str()));
  if (!info.dir().exists()) {
    QDir().mkpath(info.dir().path());
    QFile::setPermissions(
        info.dir().path(),
        static_cast<QFile::Permissions>(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
  }
  const QByteArray bytes = QJsonDocument(object).toJson();
  const Status written =
      replaceFile(path_, {reinterpret_cast<const std::uint8_t*>(bytes.constData()),
                          static_cast<std::size_t>(bytes.size())});
  if (!written) logFormat("settings %s: %s", path_.c_str(), written.error().c_str());
  return written.ok();
}

void FileUserDefaults::removePersistentDomain(std::string_view domain) {
  MemoryUserDefaults::removePersistentDomain(domain);
  if (domain == identifier()) QFile::remove(QFile::decodeName(path_.c_str()));
}

}  // namespace velmara
