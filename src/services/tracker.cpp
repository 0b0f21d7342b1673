#include "services/tracker.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <limits>

#include "platform/log.h"
#include "services/utf8.h"

namespace velmara {
namespace {

QByteArray bytesOf(const std::string& text) {
  return {text.data(), static_cast<qsizetype>(text.size())};
}

// Tells in the log when our own JSON is none; it is sent all the same.
void checkJson(const std::string& json) {
  QJsonParseError error;
  QJsonDocument::fromJson(bytesOf(json), &error);
  if (error.error == QJsonParseError::NoError) return;
  logFormat("JSON ERROR: %s", error.errorString().toUtf8().constData());
  logFormat("ERROR UserInfo: {offset = %d}", error.offset);
}

}  // namespace

HttpRequest jsonRequest(const std::string& url, const std::string& json) {
  HttpRequest request;
  request.url = QUrl(QString::fromStdString(url));
  request.body = json.substr(0, utf16Length(json));
  request.fields = {{"Accept", "application/json"},
                    {"Content-Type", "application/json"},
                    {"Content-Length", std::to_string(request.body.size())}};
  return request;
}

std::optional<std::uint64_t> trackingIdIn(const std::string& answer) {
  const QJsonValue tid = QJsonDocument::fromJson(bytesOf(answer)).object().value("tid");
  if (!tid.isDouble()) return std::nullopt;
  constexpr auto kNone = std::numeric_limits<qint64>::min();
  const qint64 whole = tid.toInteger(kNone);
  if (whole != kNone) return static_cast<std::uint64_t>(whole);
  // Fractions lose their fraction; beyond 63 bits the parser keeps 53 of them.
  const double number = tid.toDouble();
  constexpr double kBeyond = 18446744073709551616.0;
  if (number >= kBeyond) return std::numeric_limits<std::uint64_t>::max();
  return number > 0.0 ? static_cast<std::uint64_t>(number) : 0U;
}

std::shared_ptr<Tracker> Tracker::initWithApp(const std::string& app, TrackerSetup setup) {
  const std::shared_ptr<Tracker> tracker(new Tracker(std::move(setup)));
  tracker->frmApp = app;
  tracker->baseTrackURL = tracker->setup_.addresses.trackingService;
  tracker->appStoreTrackURL = tracker->baseTrackURL + "/registerAppInstalls";
  tracker->macSerialNumber = tracker->setup_.serialNumber().value_or("DUMMYSERIAL");
  return tracker;
}

void Tracker::crossTrackingForProductId(const std::string& productId) {
  logLine("fireTQSHitForTrackSource");
  const JsonDictionary report{{"pid", productId}, {"bins", "1"}, {"mac", macSerialNumber}};
  openURLAsync(appStoreTrackURL, getJSONFromDict(report));
}

std::string Tracker::getJSONFromDict(const JsonDictionary& dictionary) {
  return jsonFromDictionary(dictionary);
}

void Tracker::openURLAsync(const std::string& url, const std::string& json) {
  setup_.queue->async([self = shared_from_this(), url, json] { self->post(url, json); });
}

void Tracker::post(const std::string& url, const std::string& json) {
  logFormat("url = %s", url.c_str());
  const HttpRequest request = jsonRequest(url, json);
  checkJson(request.body);
  const std::optional<std::string> answer = setup_.isSilent ? std::nullopt : setup_.send(request);
  tid = 0;
  if (answer) takeAnswer(*answer);
}

void Tracker::takeAnswer(const std::string& answer) {
  logFormat("Response: %s", isValidUtf8(answer) ? answer.c_str() : "(null)");
  const QJsonDocument parsed = QJsonDocument::fromJson(bytesOf(answer));
  logLine(parsed.isNull() ? "(null)" : parsed.toJson(QJsonDocument::Compact).toStdString());
  if (const auto id = trackingIdIn(answer)) tid = *id;
}

}  // namespace velmara
