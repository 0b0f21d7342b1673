// The files that the program keeps for a user: the settings and the photos opened lately.
#include "fuzzing.h"
#include "session/bookmarks.h"
#include "session/rate_invitation.h"
#include "session/recent_photos.h"

namespace {

using namespace velmara;
using fuzzing::require;

void checkSettings(std::string_view bytes) {
  // Qt keeps the contents of a path that it knows.
  static unsigned long run = 0;
  const std::string path = fuzzing::fileOf(bytes, "settings-" + std::to_string(++run));
  {
    UserDefaults defaults(path);
    for (const SavedPath& saved : savedPathsFromUserDefaults(true, defaults)) {
      require(saved.path.starts_with('/') && saved.path.find('\0') == std::string::npos,
              "a remembered photo has a whole path");
    }
    isInvitationOpen(defaults, "1.0");
    defaults.value(defaults_keys::kNotShowPromotionWindow).toBool();
    showAlertForRateApp(defaults);
    defaults.clear();
    require(!defaults.value(defaults_keys::kRateMeCount).isValid(), "nothing stays when cleared");
  }
  std::filesystem::remove(path);
}

void checkRecentPhotos(std::string_view bytes) {
  const RecentPhotos photos(fuzzing::fileOf(bytes, "recent"));
  const auto before = photos.paths();
  require(before.size() <= 10, "ten photos at most");
  require(photos.add("/new/photo.jpg").ok(), "a photo can be added");
  const auto after = photos.paths();
  require(!after.empty() && after.front() == "/new/photo.jpg", "the newest is the first");
  for (const std::string& path : after) {
    require(path.starts_with('/'), "a path is whole");
    require(std::ranges::count(after, path) == 1, "each is there once");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes = fuzzing::textOf(data, size);
  checkSettings(bytes);
  checkRecentPhotos(bytes);
  return 0;
}
