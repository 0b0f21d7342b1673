#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace velmara {

/// The kinds of colour that pictures come in.
enum class PictureColors { gray, rgb, cmyk, lab };

/// What an ICC profile is for, by its header (ICC.1:2010, 7.2); nothing if the bytes are no profile
/// of a picture's colours or are cut short.
std::optional<PictureColors> profileColors(std::span<const std::uint8_t> profile);

/// The profile's own name, from its "desc" tag, as UTF-8; empty if it cannot be read.
std::string profileName(std::span<const std::uint8_t> profile);

}  // namespace velmara
