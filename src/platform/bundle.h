#pragma once

#include <string>
#include <vector>

namespace velmara {

/// What the program knows about itself.
struct BundleFacts {
  /// Its name, that of its executable, its version ("0.1.0") and its reverse-domain name.
  std::string CFBundleName;
  std::string CFBundleExecutable;
  std::string CFBundleVersion;
  std::string bundleIdentifier;

  /// Where pathForResource looks, in this order.
  std::vector<std::string> resourceFolders;

  /// The path of a file that was shipped with the program, "noisy.png" for instance; empty if there
  /// is none of that name.
  std::string pathForResource(const std::string& fileName) const;
};

/// The facts of this program. Its resources are those installed beside it (../share/velmara from
/// the executable's folder) or, for a program run where it was built, those of the source tree.
const BundleFacts& mainBundle();

}  // namespace velmara
