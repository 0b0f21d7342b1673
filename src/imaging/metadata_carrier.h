#pragma once

#include <exiv2/exiv2.hpp>

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

}  // namespace velmara
