// Texts that a user types and that a service is sent: escaping, checks of the form, the report.
#include <QString>

#include <chrono>

#include "fuzzing.h"
#include "services/feedback_report.h"
#include "services/text.h"

namespace {

using namespace velmara;
using fuzzing::require;

bool isUtf8(const std::string& text) {
  return QUtf8StringView(text.data(), static_cast<qsizetype>(text.size())).isValidUtf8();
}

void checkEscaping(const std::string& text) {
  const std::string escaped = StringEscaping::xmlSimpleEscapeString(text);
  require(escaped.find_first_of("<>\"'") == std::string::npos, "nothing special is left");
  StringEscaping::xmlSimpleUnescapeString(text);
  require(StringEscaping::xmlSimpleEscapeStringNEW(text).find('<') == std::string::npos,
          "no markup is left");
  const std::string trimmed = StringEscaping::trim(text);
  require(StringEscaping::trim(trimmed) == trimmed, "what is trimmed stays");
  const std::string encoded = StringEscaping::URLEncodedString(text);
  const auto decoded = StringEscaping::URLDecodedString(encoded);
  require(decoded.has_value() == isUtf8(text), "what is no text is not decoded");
  require(!decoded || *decoded == text, "an address comes back as it was");
  if (const auto other = StringEscaping::URLDecodedString(text)) {
    require(isUtf8(*other), "what is decoded is a text");
  }
}

void checkReport(const std::string& text) {
  FeedbackForm form{.email = text, .type = "General Feedback", .experience = text};
  const FeedbackFaults faults = checkFeedbackFields(form);
  if (!faults.invalidEmail) {
    require(form.email.find('@') != std::string::npos, "an address says where it is");
  }
  FeedbackReport report;
  report.content = form.experience;
  const WallTime now{std::chrono::seconds(1'700'000'000)};
  const ReportText envelope = prepareSoapMsg(report, FeedbackSources{}, now, 7);
  const TextSource source = envelope.text();
  std::string whole;
  for (std::string piece = source(); !piece.empty(); piece = source()) whole += piece;
  require(whole.find("(null)") != std::string::npos, "a report says what it does not know");
  const HttpRequest request = soapRequest(ServiceAddresses{}, envelope);
  require(request.bodySize == whole.size(), "the whole of it is sent");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const LogSink before = setLogSink(silentLog());
  const std::string text(fuzzing::textOf(data, size));
  checkEscaping(text);
  checkReport(text);
  return 0;
}
