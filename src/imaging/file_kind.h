#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace velmara {

/// The kinds of picture file that can be read.
enum class FileKind { jpeg, png, tiff, bmp, gif, webp, jpeg2000, heif, pnm };

/// How many bytes of a file's start fileKindOf looks at.
constexpr std::size_t kSignatureBytes = 64;

/// The kind of a file by its first bytes; nothing if it is none of them.
std::optional<FileKind> fileKindOf(std::span<const std::uint8_t> head);

/// Whether a file's first bytes are those of a camera's own RAW format.
bool looksLikeCameraRaw(std::span<const std::uint8_t> head);

/// The name of a kind as a message uses it: "JPEG".
std::string nameOf(FileKind kind);

}  // namespace velmara
