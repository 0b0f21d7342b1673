#include "services/http_request.h"

#include <string_view>

namespace velmara {
namespace {

bool holdsLineEnd(std::string_view text) {
  return text.find_first_of(std::string_view("\r\n\0", 3)) != std::string_view::npos;
}

// The path and the query as they stand on the request line.
std::string targetOf(const QUrl& url) {
  QByteArray target = url.path(QUrl::FullyEncoded).toLatin1();
  if (target.isEmpty()) target = "/";
  if (url.hasQuery()) target += '?' + url.query(QUrl::FullyEncoded).toLatin1();
  return target.toStdString();
}

std::string hostField(const QUrl& url) {
  std::string host = url.host(QUrl::FullyEncoded).toStdString();
  if (host.find(':') != std::string::npos) host = '[' + host + ']';
  return url.port() < 0 ? host : host + ':' + std::to_string(url.port());
}

bool staysWithTheHost(const QUrl& from, const QUrl& to) {
  if (!isUsableUrl(to) || from.host().compare(to.host(), Qt::CaseInsensitive) != 0) return false;
  if (from.scheme() == to.scheme()) return portOf(from) == portOf(to);
  // The one change of scheme that is no step back.
  return from.scheme() == QLatin1String("http") && to.port() < 0 && from.port() < 0;
}

}  // namespace

bool isUsableUrl(const QUrl& url) {
  return url.isValid() && !url.host().isEmpty() && url.userInfo().isEmpty() &&
         (url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https"));
}

int portOf(const QUrl& url) {
  return url.port(url.scheme() == QLatin1String("https") ? 443 : 80);
}

std::string requestHead(const HttpRequest& request) {
  std::string head = request.method + ' ' + targetOf(request.url) + " HTTP/1.1\r\n";
  head.append("Host: ").append(hostField(request.url)).append("\r\n");
  for (const auto& [name, value] : request.fields) {
    if (holdsLineEnd(name) || holdsLineEnd(value)) continue;
    head.append(name).append(": ").append(value).append("\r\n");
  }
  return head.append("Connection: close\r\n\r\n");
}

bool isRedirect(int status) {
  return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

HttpRequest redirectedRequest(const HttpRequest& request, int status, const std::string& location) {
  const QUrl target = request.url.resolved(QUrl(QString::fromStdString(location)));
  if (location.empty() || !staysWithTheHost(request.url, target)) return {};
  HttpRequest next = request;
  next.url = target;
  if (status == 301 || status == 302 || status == 303) {
    next.method = "GET";
    next.fields.clear();
    next.body.clear();
  }
  return next;
}

}  // namespace velmara
