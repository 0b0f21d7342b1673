#include "base/alpha.h"

#include <utility>

namespace velmara {

namespace {

// The same pixels with another count of samples, each written from the one it was.
template <typename Write>
Bitmap repacked(const Bitmap& bitmap, int samples, Write write) {
  auto packed = BitmapBuilder::allocate(bitmap.width(), bitmap.height(), samples);
  if (!packed) return {};
  for (int y = 0; y < bitmap.height(); ++y) {
    const std::uint8_t* in = bitmap.row(y);
    std::uint8_t* out = packed->row(y);
    for (int x = 0; x < bitmap.width(); ++x, in += bitmap.samplesPerPixel(), out += samples) {
      write(in, out);
    }
  }
  return std::move(*packed).finish();
}

}  // namespace

Bitmap withoutAlpha(const Bitmap& bitmap) {
  if (!bitmap.isValid() || !bitmap.hasAlpha()) return bitmap;
  const int colours = bitmap.samplesPerPixel() - 1;
  return repacked(bitmap, colours, [colours](const std::uint8_t* in, std::uint8_t* out) {
    for (int c = 0; c < colours; ++c) out[c] = overBlack(in[c], in[colours]);
  });
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
  const int green = samples == 3 ? 1 : 0;
  const int blue = samples == 3 ? 2 : 0;
  return repacked(bitmap, 4, [=](const std::uint8_t* in, std::uint8_t* out) {
    out[0] = in[0];
    out[1] = in[green];
    out[2] = in[blue];
    out[3] = samples == 2 ? in[1] : std::uint8_t{255};
  });
}

}  // namespace velmara
