#pragma once

#include <QUrl>

#include <string>
#include <utility>
#include <vector>

namespace velmara {

/// Header fields in the order in which they go out.
using HttpFields = std::vector<std::pair<std::string, std::string>>;

/// A request as the program wants it on the wire.
struct HttpRequest {
  QUrl url;
  std::string method = "POST";
  HttpFields fields;
  std::string body;
};

/// Whether the address can be asked: http or https, a host, no user name or password.
bool isUsableUrl(const QUrl& url);

/// The port of the address, that of its scheme if it names none.
int portOf(const QUrl& url);

/// The request line and the header fields, up to the empty line: Host, then exactly the request's
/// own fields (a Content-Length too, whatever it says), then "Connection: close". A field that
/// holds a line end is left out.
std::string requestHead(const HttpRequest& request);

/// Whether an answer with this status sends the client elsewhere.
bool isRedirect(int status);

/// What to ask next after a redirect. It has no usable address if the answer points to another host
/// or port, or from https back to http: those are not followed. 301, 302 and 303 turn the request
/// into a GET without a body, 307 and 308 repeat it.
HttpRequest redirectedRequest(const HttpRequest& request, int status, const std::string& location);

}  // namespace velmara
