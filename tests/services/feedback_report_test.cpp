#include "services/feedback_report.h"

#include <gtest/gtest.h>

#include <QXmlStreamReader>

#include <optional>

#include "services/soap_request.h"

namespace velmara {
namespace {

// The text of an element, read by a parser that is not ours; nothing if the document is not
// well-formed.
std::optional<std::string> textOf(const std::string& xml, const char* element) {
  QXmlStreamReader reader(QByteArray::fromStdString(xml));
  std::optional<std::string> found;
  while (!reader.atEnd()) {
    if (reader.readNext() == QXmlStreamReader::StartElement &&
        reader.name() == QLatin1String(element)) {
      found = reader.readElementText().toStdString();
    }
  }
  return reader.hasError() ? std::nullopt : found;
}

FeedbackReport someReport() {
  FeedbackReport report;
  report.appName = "My App";
  report.email = "a@b.co";
  report.feedbackType = "General Feedback";
  report.content = "fine";
  report.machineId = "SER1";
  report.buyNowAddress = "https://x/MyApp";
  report.appVersion = "1.2";
  return report;
}

std::string envelopeOf(const FeedbackReport& report) {
  return soapEnvelope("urn:f/", reportText(report), "MyApp-Feedback 20240310T0905 383.xml");
}

// What the service finds: the envelope unescaped once is the report, its elements unescaped again
// are the values.
std::optional<std::string> valueAtTheService(const FeedbackReport& report, const char* element) {
  const auto inner = textOf(envelopeOf(report), "input");
  return inner ? textOf(*inner, element) : std::nullopt;
}

TEST(FeedbackReport, IsOneLineOfEscapedMarkupInTheGivenOrder) {
  const auto inner = textOf(envelopeOf(someReport()), "input");
  EXPECT_EQ(
      inner,
      "<sf_feedback><feedback><appname>My App</appname><email>a@b.co</email><feedback_type>General "
      "Feedback</feedback_type><content>fine</content></feedback><logs_info><logs_Data>"
      "LOGSNOTSELECTED</logs_Data><logs_Data_Scan>SCAN_LOGSNOTSELECTED</logs_Data_Scan></logs_info>"
      "<sys_info><os_version>(null)</os_version><proc_name>(null)</proc_name><ram_info>(null)"
      "</ram_info></sys_info><key><keyvalue></keyvalue><machineid>SER1</machineid>"
      "<registered_email_id></registered_email_id></key><campaign_info><affiliateid></affiliateid>"
      "<utm_campaign></utm_campaign><utm_content></utm_content><utm_medium></utm_medium>"
      "<utm_source></utm_source><utm_term></utm_term><x-at></x-at><URL_BUYNOW>https://x/MyApp"
      "</URL_BUYNOW></campaign_info><app_info><app_ver>1.2</app_ver></app_info></sf_feedback>");
}

TEST(FeedbackReport, ValuesArriveAtTheServiceAsTheyWereTyped) {
  const std::string megabyte(std::size_t{1} << 20, '&');
  for (const std::string& text :
       {std::string("fish & chips \"quoted\" it's > 3"), std::string("\xF0\x9F\x98\x80 \xC3\xA9"),
        std::string("tab\there\nnew line"), std::string("&lt; &amp; &#65;"), megabyte}) {
    FeedbackReport report = someReport();
    report.content = text;
    report.logPart = text;
    report.usagePart = text;
    for (const char* element : {"content", "logs_Data", "logs_Data_Scan"}) {
      EXPECT_TRUE(valueAtTheService(report, element) == text) << text.substr(0, 40);
    }
    EXPECT_EQ(valueAtTheService(report, "app_ver"), "1.2");
  }
}

TEST(FeedbackReport, SomeTextsArriveChanged) {
  FeedbackReport report = someReport();
  report.content = "a<b & c";
  EXPECT_NE(reportText(report).find("a(lessthan)b &amp;amp; c"), std::string::npos);
  EXPECT_EQ(valueAtTheService(report, "content"), "a(lessthan)b & c");
  // Line ends are not escaped, and a parser makes all of them the same.
  report.content = "a\r\nb\rc";
  EXPECT_EQ(valueAtTheService(report, "content"), "a\nb\nc");
}

// The rules let these spoil the document; the report goes out all the same.
TEST(FeedbackReport, SomeTextsMakeAnInvalidReport) {
  FeedbackReport control = someReport();
  control.content = "bell \x07";  // No XML 1.0 document may hold it, escaped or not.
  EXPECT_EQ(valueAtTheService(control, "content"), std::nullopt);

  FeedbackReport address = someReport();
  address.email = "a&b@c.de";  // A valid address, and it goes in as it is.
  EXPECT_EQ(valueAtTheService(address, "email"), std::nullopt);
}

TEST(FeedbackReport, NamesItsFileAndTheWebSite) {
  EXPECT_EQ(feedbackFileName("My New App", "20240310T0905", 7),
            "MyNewApp-Feedback 20240310T0905 7.xml");
  EXPECT_EQ(buyNowAddress("https://x/%@/buy", "My New App"), "https://x/MyNewApp/buy");
  EXPECT_EQ(buyNowAddress("https://x/", "My New App"), "https://x/");
}

TEST(FeedbackReport, TellsTheUserEverythingThatIsSent) {
  FeedbackReport report = someReport();
  report.logPart = "2024-03-10 a line\n";
  const std::string words = describeReport(report);
  for (const char* said :
       {"My App 1.2", "a@b.co", "General Feedback", "fine", "SER1", "https://x/MyApp",
        "2024-03-10 a line", "Usage information: not included"}) {
    EXPECT_NE(words.find(said), std::string::npos) << said;
  }
}

TEST(SoapRequest, IsAsTheServiceExpectsIt) {
  EXPECT_EQ(soapEnvelope("urn:f/", "R", "F"),
            "<soap:Envelope xmlns:soap=\"http://schemas.xmlsoap.org/soap/envelope/\" "
            "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
            "xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\" "
            "xmlns:soapenc=\"http://schemas.xmlsoap.org/soap/encoding/\"><soap:Body>"
            "<UploadFeedback xmlns=\"urn:f/\"><input>R</input><filename>F</filename>"
            "</UploadFeedback></soap:Body></soap:Envelope>");
  // Two units in UTF-16, four bytes in UTF-8.
  const HttpRequest request = soapRequest("http://x/y", "urn:f/", "\xF0\x9F\x98\x80!");
  EXPECT_EQ(request.fields, (HttpFields{{"Content-Type", "text/xml; charset=utf-8"},
                                        {"SOAPAction", "urn:f/UploadFeedback"},
                                        {"Content-Length", "3"}}));
  EXPECT_EQ(request.body.size(), 5U);
}

}  // namespace
}  // namespace velmara
