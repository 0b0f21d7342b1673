#pragma once

#include <exiv2/exiv2.hpp>

#include <mutex>
#include <string>

namespace velmara {

/// The metadata of a file as Exiv2 read it, whole. Not changed after it was read.
struct MetadataCarrier {
  Exiv2::ExifData exif;
  Exiv2::IptcData iptc;
  Exiv2::XmpData xmp;
  std::string comment;
  /// Of the Exif block; maker notes may lean on it.
  Exiv2::ByteOrder byteOrder = Exiv2::invalidByteOrder;
};

/// Exiv2 keeps registries for the whole process (name spaces of XMP, the maker notes' tables) that
/// its own locks do not all cover. Whoever reads or writes metadata holds this lock meanwhile.
std::unique_lock<std::mutex> lockExiv2();

/// The lock function that Exiv2's XMP toolkit is started with.
void lockXmpToolkit(void* data, bool lock);

}  // namespace velmara
