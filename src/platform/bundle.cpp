#include "platform/bundle.h"

#include <filesystem>
#include <system_error>

namespace velmara {
namespace {

std::vector<std::string> findResourceFolders() {
  std::vector<std::string> folders;
  std::error_code error;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
  if (!error) {
    folders.push_back((program.parent_path().parent_path() / "share" / "velmara").string());
  }
#ifdef VELMARA_SOURCE_DATA_DIR
  folders.emplace_back(VELMARA_SOURCE_DATA_DIR);
  folders.emplace_back(VELMARA_SOURCE_DATA_DIR "/../docs");
#endif
  return folders;
}

}  // namespace

std::string BundleFacts::pathForResource(const std::string& fileName) const {
  if (fileName.empty()) return {};
  for (const std::string& folder : resourceFolders) {
    const std::filesystem::path path = std::filesystem::path(folder) / fileName;
    std::error_code error;
    if (std::filesystem::is_regular_file(path, error)) return path.string();
  }
  return {};
}

const BundleFacts& mainBundle() {
  static const BundleFacts facts{
      .CFBundleName = "Velmara",
      .CFBundleExecutable = "Velmara",
      .CFBundleVersion = VELMARA_VERSION,
      .bundleIdentifier = "org.velmara.Velmara",
      .resourceFolders = findResourceFolders(),
  };
  return facts;
}

}  // namespace velmara
