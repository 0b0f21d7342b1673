#pragma once

#include <string>
#include <string_view>
#include <sys/types.h>

namespace velmara {

/// What begins the names of the files and folders a process of ours makes for itself: its number
/// stands in them, so that a later one knows what has been left behind.
std::string ownNamePrefix(std::string_view prefix);

/// Whether a name was made with that prefix by a process that is gone.
bool isLeftBehind(std::string_view name, std::string_view prefix);

/// A file under a hidden name that only stands until its bytes are complete. Should the process be
/// killed meanwhile, a later one finds it by a note, a symbolic link to it in a folder of ours.
class UnfinishedFile {
 public:
  /// Makes up a name in a folder, and the note; the file itself is the caller's to make.
  explicit UnfinishedFile(const std::string& folder);
  UnfinishedFile(const UnfinishedFile&) = delete;
  UnfinishedFile& operator=(const UnfinishedFile&) = delete;
  /// Takes the note away: by now the file has another name, or is gone.
  ~UnfinishedFile();

  const std::string& path() const { return path_; }

 private:
  std::string path_;
  std::string note_;
};

/// Removes the unfinished files of processes that are gone. One on a medium that is not there is
/// left for another time. Any thread.
void removeUnfinishedFiles();

}  // namespace velmara
