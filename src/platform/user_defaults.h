#pragma once

#include <QSettings>
#include <QVariant>

#include <string>
#include <string_view>

namespace velmara {

/// Where the settings of this user live: the file "settings.ini" in our folder of the desktop's
/// configuration folder ($XDG_CONFIG_HOME, by default ~/.config).
std::string userDefaultsPath();

/// The per-user settings: values by key in one file that is ours alone. Setters hold at once;
/// synchronize makes them last. Numbers and truth values come back from the file as text, which
/// QVariant turns into what is asked for. A file that cannot be understood is taken as far as it
/// makes sense. Main thread.
class UserDefaults {
 public:
  /// `path` is in the system's own bytes; a folder that has to be made for it is private.
  explicit UserDefaults(const std::string& path);

  /// An invalid value when the key is absent.
  QVariant value(std::string_view key) const;
  /// The dictionaries in the list that was stored; none when the key is absent or holds no list.
  QList<QVariantMap> dictionaries(std::string_view key) const;

  /// Sets or removes a value; on disk with synchronize.
  void set(std::string_view key, const QVariant& value);
  void remove(std::string_view key);

  /// Writes what was set. Returns whether it is safe on disk; what could not be written is tried
  /// again the next time.
  bool synchronize();

  /// Removes every value, on disk too.
  void clear();

 private:
  QSettings settings_;
};

/// The keys in use.
namespace defaults_keys {
/// The list of photos that were open, each a dictionary of kPath and kState.
inline constexpr std::string_view kSavedPaths = "savedPaths";
inline constexpr std::string_view kPath = "path";    ///< in a dictionary of kSavedPaths
inline constexpr std::string_view kState = "state";  ///< in a dictionary of kSavedPaths
/// Exports since the last invitation to rate.
inline constexpr std::string_view kRateMeCount = "RATE_ME_COUNT";
/// The version whose invitation was accepted.
inline constexpr std::string_view kAppVersion = "appVersion";
/// Set once this launch was tracked.
inline constexpr std::string_view kTrackedForAppStore = "trackedForAppStore";
/// Whether the promotion window was asked to stay away.
inline constexpr std::string_view kNotShowPromotionWindow = "notShowPromotionWindow";
}  // namespace defaults_keys

}  // namespace velmara
