#include "platform/user_defaults.h"

#include <QFile>
#include <QStandardPaths>

#include <filesystem>
#include <system_error>

#include "platform/log.h"

namespace velmara {

std::string userDefaultsPath() {
  const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
  return QFile::encodeName(folder + QStringLiteral("/velmara/settings.ini")).toStdString();
}

UserDefaults::UserDefaults(const std::string& path)
    : settings_(QFile::decodeName(path.c_str()), QSettings::IniFormat) {
  // Which photos were opened is nobody else's business.
  std::error_code ignored;
  const std::filesystem::path folder = std::filesystem::path(path).parent_path();
  if (std::filesystem::create_directories(folder, ignored)) {
    std::filesystem::permissions(folder, std::filesystem::perms::owner_all, ignored);
  }
}

QVariant UserDefaults::value(std::string_view key) const {
  return settings_.value(QUtf8StringView(key));
}

QList<QVariantMap> UserDefaults::dictionaries(std::string_view key) const {
  const QVariant stored = value(key);
  // A list of one comes back from the file as that one.
  if (stored.typeId() == QMetaType::QVariantMap) return {stored.toMap()};
  QList<QVariantMap> dictionaries;
  for (const QVariant& entry : stored.toList()) {
    if (entry.typeId() == QMetaType::QVariantMap) dictionaries.append(entry.toMap());
  }
  return dictionaries;
}

void UserDefaults::set(std::string_view key, const QVariant& value) {
  settings_.setValue(QUtf8StringView(key), value);
}

void UserDefaults::remove(std::string_view key) {
  settings_.remove(QUtf8StringView(key));
}

bool UserDefaults::synchronize() {
  // Another view of the same settings: the status of one never forgets an error.
  QSettings writer(settings_.fileName(), QSettings::IniFormat);
  writer.sync();
  const bool written = writer.status() != QSettings::AccessError;
  if (!written) logFormat("settings %s cannot be written", qPrintable(settings_.fileName()));
  return written;
}

void UserDefaults::clear() {
  settings_.clear();
  settings_.sync();
  QFile::remove(settings_.fileName());
}

}  // namespace velmara
