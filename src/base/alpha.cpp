#include "base/alpha.h"

#include <utility>

namespace velmara {

Bitmap withoutAlpha(const Bitmap& bitmap) {
  if (!bitmap.isValid() || !bitmap.hasAlpha()) return bitmap;
  const int samples = bitmap.samplesPerPixel();
  const int colours = samples - 1;
  auto opaque = BitmapBuilder::allocate(bitmap.width(), bitmap.height(), colours);
  if (!opaque) return {};
  for (int y = 0; y < bitmap.height(); ++y) {
    const std::uint8_t* in = bitmap.row(y);
    std::uint8_t* out = opaque->row(y);
    for (int x = 0; x < bitmap.width(); ++x, in += samples, out += colours) {
      for (int c = 0; c < colours; ++c) out[c] = overBlack(in[c], in[colours]);
    }
  }
  return std::move(*opaque).finish();
}

void logAlphaRemoval(const LogSink& log) {
  if (log) log("Utils removeAlphaChannelFromImage");
}

Bitmap removeAlpha(const Bitmap& bitmap, const LogSink& log) {
  logAlphaRemoval(log);
  Bitmap opaque = withoutAlpha(bitmap);
  if (!opaque.isValid() && log) log("Error in removeAlphaChannelFromImage");
  return opaque;
}

Bitmap asRgba(const Bitmap& bitmap) {
  const int samples = bitmap.samplesPerPixel();
  if (!bitmap.isValid() || samples == 4) return bitmap;
  auto rgba = BitmapBuilder::allocate(bitmap.width(), bitmap.height(), 4);
  if (!rgba) return {};
  const int green = samples == 3 ? 1 : 0;
  const int blue = samples == 3 ? 2 : 0;
  for (int y = 0; y < bitmap.height(); ++y) {
    const std::uint8_t* in = bitmap.row(y);
    std::uint8_t* out = rgba->row(y);
    for (int x = 0; x < bitmap.width(); ++x, in += samples, out += 4) {
      out[0] = in[0];
      out[1] = in[green];
      out[2] = in[blue];
      out[3] = samples == 2 ? in[1] : std::uint8_t{255};
    }
  }
  return std::move(*rgba).finish();
}

}  // namespace velmara
