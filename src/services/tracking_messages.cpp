#include "services/tracking_messages.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QString>

#include <array>
#include <charconv>
#include <limits>
#include <string_view>

namespace velmara {
namespace {

std::string valueText(const JsonValue& value) {
  const auto bare = [](const auto& content) -> std::string {
    if constexpr (std::is_same_v<decltype(content), const std::string&>) {
      return '"' + content + '"';
    } else {
      std::array<char, 64> buffer{};
      return {buffer.data(),
              std::to_chars(buffer.data(), buffer.data() + buffer.size(), content).ptr};
    }
  };
  return std::visit(bare, value);
}

}  // namespace

std::string jsonFromDictionary(const JsonDictionary& dictionary) {
  std::string json = "{";
  for (const auto& [key, value] : dictionary) {
    if (json.size() > 1) json.push_back(',');
    json.append("\"").append(key).append("\":").append(valueText(value));
  }
  return json.append("}");
}

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

}  // namespace velmara
