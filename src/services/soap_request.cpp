#include "services/soap_request.h"

#include "services/utf8.h"

namespace velmara {

std::string soapEnvelope(const std::string& serviceNamespace, const std::string& report,
                         const std::string& fileName) {
  std::string envelope =
      "<soap:Envelope xmlns:soap=\"http://schemas.xmlsoap.org/soap/envelope/\""
      " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\""
      " xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\""
      " xmlns:soapenc=\"http://schemas.xmlsoap.org/soap/encoding/\"><soap:Body>";
  envelope.reserve(envelope.size() + report.size() + 512);
  envelope.append("<UploadFeedback xmlns=\"").append(serviceNamespace).append("\"><input>");
  envelope.append(report).append("</input><filename>").append(fileName).append("</filename>");
  return envelope.append("</UploadFeedback></soap:Body></soap:Envelope>");
}

HttpRequest soapRequest(const std::string& endpoint, const std::string& serviceNamespace,
                        std::string envelope) {
  HttpRequest request;
  request.url = QUrl(QString::fromStdString(endpoint));
  request.fields = {{"Content-Type", "text/xml; charset=utf-8"},
                    {"SOAPAction", serviceNamespace + "UploadFeedback"},
                    {"Content-Length", std::to_string(utf16Length(envelope))}};
  request.body = std::move(envelope);
  return request;
}

}  // namespace velmara
