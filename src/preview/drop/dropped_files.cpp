#include "preview/drop/dropped_files.h"

#include <QByteArray>
#include <QMimeData>
#include <QSysInfo>

#include "platform/workspace.h"

namespace velmara {
namespace {

constexpr const char* kUriListType = "text/uri-list";

bool isThisMachine(std::string_view host) {
  return host.empty() || host == "localhost" ||
         host == QSysInfo::machineHostName().toUtf8().toStdString();
}

// The path of "file:///path", "file://host/path" or "file:/path" (RFC 8089).
std::string pathOfUri(std::string_view uri) {
  constexpr std::string_view kScheme = "file:";
  constexpr std::string_view kAuthority = "//";
  if (uri.size() < kScheme.size() ||
      QByteArray(uri.data(), kScheme.size()).toLower() != kScheme.data()) {
    return {};
  }
  uri.remove_prefix(kScheme.size());
  if (uri.starts_with(kAuthority)) {
    uri.remove_prefix(kAuthority.size());
    const std::size_t slash = uri.find('/');
    if (slash == std::string_view::npos || !isThisMachine(uri.substr(0, slash))) return {};
    uri.remove_prefix(slash);
  }
  const QByteArray encoded(uri.data(), static_cast<qsizetype>(uri.size()));
  std::string path = QByteArray::fromPercentEncoding(encoded).toStdString();
  const bool isPath = path.starts_with('/') && path.find('\0') == std::string::npos;
  return isPath ? path : std::string();
}

}  // namespace

std::vector<std::string> pathsOfUriList(std::string_view uriList) {
  std::vector<std::string> paths;
  while (!uriList.empty()) {
    const std::size_t end = uriList.find('\n');
    std::string_view line = uriList.substr(0, end);
    uriList.remove_prefix(end == std::string_view::npos ? uriList.size() : end + 1);
    while (!line.empty() && (line.back() == '\r' || line.back() == '\0')) line.remove_suffix(1);
    if (line.empty() || line.front() == '#') continue;
    paths.push_back(pathOfUri(line));
  }
  return paths;
}

std::optional<std::vector<std::string>> draggedFiles(const QMimeData& data) {
  if (!data.hasFormat(QLatin1String(kUriListType))) return std::nullopt;
  return pathsOfUriList(data.data(QLatin1String(kUriListType)).toStdString());
}

bool isImageFile(const std::string& path) {
  return typeConformsToImage(typeOfFile(path));
}

}  // namespace velmara
