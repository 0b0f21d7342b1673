#include "services/tracker.h"

#include <QJsonDocument>
#include <QUtf8StringView>

#include "platform/log.h"

namespace velmara {
namespace {

// Tells in the log when our own JSON is none; it is sent all the same.
void checkJson(const std::string& json) {
  QJsonParseError error;
  QJsonDocument::fromJson(QByteArray::fromStdString(json), &error);
  if (error.error == QJsonParseError::NoError) return;
  logFormat("JSON ERROR: %s", error.errorString().toUtf8().constData());
  logFormat("ERROR UserInfo: {offset = %d}", error.offset);
}

}  // namespace

std::shared_ptr<Tracker> Tracker::initWithApp(const std::string& app, TrackerSetup setup) {
  std::shared_ptr<Tracker> tracker(new Tracker(std::move(setup)));
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
  setup_.async([self = shared_from_this(), url, json] { self->post(url, json); });
}

void Tracker::post(const std::string& url, const std::string& json) {
  logFormat("url = %s", url.c_str());
  const HttpRequest request = jsonRequest(url, json);
  checkJson(json.substr(0, request.bodySize));
  const HttpAnswer answer = setup_.isSilent ? HttpAnswer{} : setup_.send(request);
  tid = 0;
  if (answer.end == HttpAnswer::End::kFinished) takeAnswer(answer.body);
}

void Tracker::takeAnswer(const std::string& answer) {
  const QByteArray bytes = QByteArray::fromStdString(answer);
  logFormat("Response: %s", QUtf8StringView(bytes).isValidUtf8() ? answer.c_str() : "(null)");
  const QJsonDocument parsed = QJsonDocument::fromJson(bytes);
  logLine(parsed.isNull() ? "(null)" : parsed.toJson(QJsonDocument::Compact).toStdString());
  if (const auto id = trackingIdIn(answer)) tid = *id;
}

}  // namespace velmara
