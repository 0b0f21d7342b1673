#pragma once

#include "imaging/metadata.h"
#include "imaging/metadata_carrier.h"

namespace velmara {

/// Adds the groups "{TIFF}", "{Exif}", "{GPS}", "{IPTC}" and "{XMP}" to a dictionary, and at its
/// top "Orientation". What a file's directories need for themselves (offsets, strips, pointers),
/// maker notes and values too long to look at are left out.
void addMetadataGroups(const MetadataCarrier& carrier, MetadataDictionary& dictionary);

/// Whether an Exif entry tells how the pixels are stored in its file, and so belongs to no other
/// file: sizes, strips, tiles, compression, embedded profiles and packets, pointers, further
/// pictures.
bool describesStorage(const Exiv2::Exifdatum& entry);

}  // namespace velmara
