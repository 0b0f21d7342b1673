#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "base/result.h"

namespace velmara {

/// How the files of results are named after their photos, without the extension:
///
///   {name}    the photo's name without its extension; every pattern has it or {number}
///   {number}  the photo's place in the batch, from 1, with as many digits as the last has
///   {folder}  the name of the folder the photo is in
class NamePattern {
 public:
  /// "{name}-denoised".
  NamePattern() = default;
  /// A pattern of the user's, or what is wrong with it.
  static Result<NamePattern> parse(std::string_view text);

  /// As it was written.
  const std::string& text() const { return text_; }
  /// The name for a photo, the `index`th (from 0) of `count`.
  std::string nameFor(const std::string& photo, std::size_t index, std::size_t count) const;
  /// Whether a name may be the pattern's for some photo of a name: a result among its photos.
  bool isNameFor(const std::string& photo, const std::string& name) const;

 private:
  std::string text_ = "{name}-denoised";
};

}  // namespace velmara
