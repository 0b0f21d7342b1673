#include "services/tracker.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QString>
#include <QUtf8StringView>

#include <array>
#include <charconv>
#include <limits>
#include <string_view>

#include "platform/log.h"

namespace velmara {
namespace {

std::string valueText(const JsonValue& value) {
  if (const auto* text = std::get_if<std::string>(&value)) return '"' + *text + '"';
  if (const auto* whole = std::get_if<std::int64_t>(&value)) return std::to_string(*whole);
  std::array<char, 64> number{};
  return {number.data(), std::to_chars(number.begin(), number.end(), std::get<double>(value)).ptr};
}

// Tells in the log when our own JSON is none; it is sent all the same.
void checkJson(const std::string& json) {
  QJsonParseError error;
  QJsonDocument::fromJson(QByteArray::fromStdString(json), &error);
  if (error.error == QJsonParseError::NoError) return;
  logFormat("JSON ERROR: %s", error.errorString().toUtf8().constData());
  logFormat("ERROR UserInfo: {offset = %d}", error.offset);
}

}  // namespace

HttpRequest jsonRequest(const std::string& url, const std::string& json) {
  const std::string body =
      json.substr(0, static_cast<std::size_t>(QString::fromStdString(json).size()));
  return {.url = url,
          .fields = {{"Accept", "application/json"},
                     {"Content-Type", "application/json"},
                     {"Content-Length", std::to_string(body.size())}},
          .bodySize = body.size(),
          .body = textSource(body)};
}

std::optional<std::uint64_t> trackingIdIn(const std::string& answer) {
  const QJsonValue tid =
      QJsonDocument::fromJson(QByteArray::fromStdString(answer)).object().value("tid");
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

JsonDictionary clickTrackingMessage(const std::string& button, const std::string& productCode,
                                    const std::string& toProductId,
                                    const std::string& fromProductId,
                                    const std::string& serialNumber) {
  // "from" is "vlpro" for every edition.
  return {{"from", "vlpro"}, {"to", productCode},       {"mac", serialNumber},
          {"btn", button},   {"fromid", fromProductId}, {"toid", toProductId}};
}

std::string getURLForTATTracking(const std::string& baseTrackURL) {
  return baseTrackURL + "/CrossTracking";
}

bool asksForNoTracking(const char* doNotTrack) {
  const std::string_view value = doNotTrack != nullptr ? doNotTrack : "";
  return !value.empty() && value != "0";
}

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
  std::string json = "{";
  for (const auto& [key, value] : dictionary) {
    if (json.size() > 1) json.push_back(',');
    json.append("\"").append(key).append("\":").append(valueText(value));
  }
  return json.append("}");
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
  if (answer.end != HttpAnswer::End::kFinished) return;
  const QByteArray bytes = QByteArray::fromStdString(answer.body);
  logFormat("Response: %s", QUtf8StringView(bytes).isValidUtf8() ? bytes.constData() : "(null)");
  const QJsonDocument parsed = QJsonDocument::fromJson(bytes);
  logLine(parsed.isNull() ? "(null)" : parsed.toJson(QJsonDocument::Compact).toStdString());
  if (const auto id = trackingIdIn(answer.body)) tid = *id;
}

}  // namespace velmara
