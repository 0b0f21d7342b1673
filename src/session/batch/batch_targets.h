#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "base/result.h"
#include "imaging/file_format.h"
#include "session/batch/batch_run.h"
#include "session/batch/found_photos.h"
#include "session/batch/name_pattern.h"

namespace velmara {

/// Where the results of a batch go.
struct BatchNaming {
  /// What is done where a result's file is there already.
  enum class Existing {
    refuse,
    replace,
    /// The photo is passed over.
    skip,
    /// The result gets the first name of "NAME 2", "NAME 3" that is free.
    rename
  };

  /// The file for the one photo there is; without it, a name by the pattern.
  std::optional<std::string> file = {};
  /// The folder; without it, beside the photo.
  std::optional<std::string> folder = {};
  /// Whether photos found in folders of folders go into such folders there.
  bool keepsFolders = false;
  NamePattern pattern = {};
  /// Without it the photo's own where it is one of those written, else PNG.
  std::optional<FileFormat> format = {};
  Existing existing = Existing::refuse;
};

/// The file and format for a photo, the `index`th (from 0) of `count`, whose own format is `own`
/// (nothing where it is none of those written); an extension of its own that fits is kept. "-" is
/// standard output.
PhotoOutput namedOutput(const BatchPhoto& photo, std::size_t index, std::size_t count,
                        std::optional<FileFormat> own, const BatchNaming& naming);

/// The device and the inode of a file.
using FileIdentity = std::pair<std::uint64_t, std::uint64_t>;

/// The files that one batch may write: none of its photos, none that is there already unless
/// replacing is allowed, and none twice. Not for several threads at once.
class BatchTargets {
 public:
  /// For the photos of one batch, in its order.
  BatchTargets(std::vector<BatchPhoto> photos, BatchNaming naming);

  /// The target of a photo, asked before the work of making its contents is done. Makes the folder
  /// it needs.
  Result<BatchTarget> target(std::size_t index, const LoadedPhoto& photo);
  /// Leaves a photo to another program at work on the same ones. The name that its result gets
  /// there, as far as the photo's own name tells, is given to no later one here.
  void leaveToOthers(std::size_t index);
  /// Another file for the batch to write, with the reasons of a target where it may not.
  Status promise(const std::string& path);

 private:
  Status check(const std::string& path) const;
  std::string freePath(const std::string& path) const;

  const std::vector<BatchPhoto> photos_;
  const BatchNaming naming_;
  std::set<FileIdentity> inputs_;
  /// The paths that results were promised to, as far as they lead to folders that are there.
  std::set<std::string> promised_;
};

/// The format that a file name's extension stands for, upper or lower case.
std::optional<FileFormat> formatForPath(const std::string& path);

}  // namespace velmara
