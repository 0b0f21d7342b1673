#pragma once

#include <string>

#include "services/http_request.h"

namespace velmara {

/// The envelope of a SOAP 1.1 call of UploadFeedback: one line of XML. The report must be escaped
/// already; both texts go in as they are.
std::string soapEnvelope(const std::string& serviceNamespace, const std::string& report,
                         const std::string& fileName);

/// The request that carries an envelope. Its Content-Length counts UTF-16 units, not bytes: with
/// text beyond ASCII it is smaller than the body, which is what the service expects.
HttpRequest soapRequest(const std::string& endpoint, const std::string& serviceNamespace,
                        std::string envelope);

}  // namespace velmara
