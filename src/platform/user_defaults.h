#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace velmara {

using DefaultsData = std::vector<std::uint8_t>;

/// A value inside a stored dictionary.
using DefaultsValue = std::variant<std::string, std::int64_t, bool, DefaultsData>;
using DefaultsDictionary = std::map<std::string, DefaultsValue, std::less<>>;
using DefaultsArray = std::vector<DefaultsDictionary>;

/// The per-user settings: values by key. A getter gives nothing when the key is absent or holds a
/// value of another type. Setters hold at once; synchronize makes them last. Main thread.
class UserDefaults {
 public:
  virtual ~UserDefaults() = default;

  virtual std::optional<std::string> stringForKey(std::string_view key) const = 0;
  virtual std::optional<std::int64_t> integerForKey(std::string_view key) const = 0;
  virtual std::optional<bool> boolForKey(std::string_view key) const = 0;
  virtual std::optional<DefaultsArray> arrayForKey(std::string_view key) const = 0;

  virtual void setString(std::string_view key, std::string value) = 0;
  virtual void setInteger(std::string_view key, std::int64_t value) = 0;
  virtual void setBool(std::string_view key, bool value) = 0;
  virtual void setArray(std::string_view key, DefaultsArray value) = 0;
  virtual void removeObjectForKey(std::string_view key) = 0;

  /// Writes what was set. Returns whether it is safe on disk.
  virtual bool synchronize() = 0;

  /// Removes every value of the domain, on disk too, if it is this store's own.
  virtual void removePersistentDomain(std::string_view identifier) = 0;
};

/// The keys in use.
namespace defaults_keys {
inline constexpr std::string_view kSavedPaths = "savedPaths";
inline constexpr std::string_view kPath = "path";    ///< in a dictionary of kSavedPaths
inline constexpr std::string_view kState = "state";  ///< in a dictionary of kSavedPaths
inline constexpr std::string_view kRateMeCount = "RATE_ME_COUNT";
inline constexpr std::string_view kAppVersion = "appVersion";
inline constexpr std::string_view kTrackedForAppStore = "trackedForAppStore";
inline constexpr std::string_view kNotShowPromotionWindow = "notShowPromotionWindow";
}  // namespace defaults_keys

}  // namespace velmara
