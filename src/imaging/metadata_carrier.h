#pragma once

#include <exiv2/exiv2.hpp>

#include <mutex>
#include <string>

#include "imaging/metadata.h"

namespace velmara {

/// The metadata of a file as Exiv2 read it, whole. Not changed after it was read.
struct MetadataCarrier {
  /// What each kind holds; empty where the file has none. `comment` is that of a JPEG.
  Exiv2::ExifData exif;
  Exiv2::IptcData iptc;
  Exiv2::XmpData xmp;
  std::string comment;
  /// Of the Exif block; maker notes may lean on it.
  Exiv2::ByteOrder byteOrder = Exiv2::invalidByteOrder;
};

/// Exiv2 keeps registries for the whole process (name spaces of XMP, the maker notes' tables) that
/// its own locks do not all cover. Whoever reads or writes metadata holds this lock meanwhile.
inline std::unique_lock<std::mutex> lockExiv2() {
  static std::mutex mutex;
  return std::unique_lock(mutex);
}

/// Adds the groups "{TIFF}", "{Exif}", "{GPS}", "{IPTC}" and "{XMP}" to a dictionary, and at its
/// top "Orientation". What a file's directories need for themselves (offsets, strips, pointers),
/// maker notes and values too long to look at are left out.
void addMetadataGroups(const MetadataCarrier& carrier, MetadataDictionary& dictionary);

/// Whether an Exif entry tells how the pixels are stored in its file, and so belongs to no other
/// file: sizes, strips, tiles, compression, embedded profiles and packets, pointers, further
/// pictures, how a RAW's samples become colours.
bool describesStorage(const Exiv2::Exifdatum& entry);

}  // namespace velmara
