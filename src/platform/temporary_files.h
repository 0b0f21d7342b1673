#pragma once

#include <string>

namespace velmara {

/// The process's own temporary directory, ending in "/": made on first use with mode 0700 inside
/// the system's temporary directory, removed at the end of the process. What processes of ours on
/// this machine that are gone left there is removed when it is made. Empty if it cannot be made.
/// Any thread.
const std::string& temporaryDirectory();

/// Removes it now, for a process that ends without its usual clean-up.
void removeTemporaryDirectory();

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

  /// Where it stands, in the system's own bytes.
  const std::string& path() const { return path_; }

 private:
  std::string path_;
  std::string note_;
};

/// Removes the unfinished files of this machine's processes that are gone. One on a medium that is
/// not there is left for another time. Any thread.
void removeUnfinishedFiles();

}  // namespace velmara
