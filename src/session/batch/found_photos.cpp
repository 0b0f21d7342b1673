#include "session/batch/found_photos.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>
#include <system_error>

#include "imaging/file_format.h"

namespace velmara {
namespace {

namespace fs = std::filesystem;

class Finder {
 public:
  Finder(const PhotoSearch& search,
         const std::function<void(const std::string&, const std::string&)>& unreadable,
         const JobControl& control)
      : search_(search), unreadable_(unreadable), control_(control) {
    std::error_code failure;
    if (!search.resultFolder.empty()) {
      resultFolder_ = fs::weakly_canonical(search.resultFolder, failure);
    }
  }

  void add(const std::string& path) {
    std::error_code failure;
    if (fs::is_directory(path, failure)) {
      addFolder(path, {});
    } else {
      addPhoto(path, {});
    }
  }

  std::vector<BatchPhoto> photos;

 private:
  void addPhoto(const fs::path& path, const std::string& subfolder) {
    std::error_code failure;
    const fs::path whole = fs::weakly_canonical(path, failure);
    if (seen_.insert(failure ? path : whole).second) photos.push_back({path.string(), subfolder});
  }

  void addFolder(const fs::path& folder, const fs::path& subfolder) {
    std::error_code failure;
    std::vector<fs::directory_entry> entries;
    fs::directory_iterator entry(folder, failure);
    for (; !failure && entry != fs::directory_iterator(); entry.increment(failure)) {
      if (control_.isCancelled()) return;
      entries.push_back(*entry);
    }
    if (failure) unreadable_(folder.string(), failure.message());
    std::sort(entries.begin(), entries.end());

    std::vector<fs::path> files, folders;
    for (const fs::directory_entry& each : entries) {
      if (each.path().filename().string().starts_with('.')) continue;
      std::error_code ignored;
      if (each.is_directory(ignored)) {
        if (!each.is_symlink(ignored)) folders.push_back(each.path());
      } else if (isReadable(each.path())) {
        files.push_back(each.path());
      }
    }
    addFiles(files, subfolder);
    if (!search_.isRecursive) return;
    for (const fs::path& each : folders) {
      if (control_.isCancelled()) return;
      if (!isResultFolder(each)) addFolder(each, subfolder / each.filename());
    }
  }

  // All of one folder's but the results of others.
  void addFiles(const std::vector<fs::path>& files, const fs::path& subfolder) {
    std::set<std::string> results;
    for (const fs::path& file : files) {
      const std::string name = search_.results.nameFor(file.string(), 0, 1);
      if (search_.results.isNameFor(file.string(), name)) results.insert(name);
    }
    for (const fs::path& file : files) {
      if (!results.contains(file.stem().string())) addPhoto(file, subfolder.string());
    }
  }

  static bool isReadable(const fs::path& file) {
    const std::string extension = file.extension().string();
    return !extension.empty() && isReadableFileType(std::string_view(extension).substr(1));
  }

  bool isResultFolder(const fs::path& folder) const {
    std::error_code failure;
    return !resultFolder_.empty() && fs::weakly_canonical(folder, failure) == resultFolder_;
  }

  const PhotoSearch& search_;
  const std::function<void(const std::string&, const std::string&)>& unreadable_;
  const JobControl& control_;
  fs::path resultFolder_;
  std::set<fs::path> seen_;
};

}  // namespace

std::vector<BatchPhoto> findPhotos(
    const PhotoSearch& search,
    const std::function<void(const std::string& folder, const std::string& reason)>& unreadable,
    const JobControl& control) {
  Finder finder(search, unreadable, control);
  for (const std::string& path : search.paths) {
    if (control.isCancelled()) break;
    finder.add(path);
  }
  return std::move(finder.photos);
}

}  // namespace velmara
