// Pictures as text, so that a test shows what it expects and a failure what came.
#pragma once

#include <string>

#include "display/canvas/RasterCanvas.h"

namespace quorl::test {

// A character a device pixel, by its green: " .:+#" from none to full; a line end after each row.
inline std::string PictureText(const RasterCanvas& canvas) {
  std::string text;
  for (int y = 0; y < canvas.DeviceHeight(); ++y) {
    for (int x = 0; x < canvas.DeviceWidth(); ++x) text += " .:+#"[((canvas.At(x, y) >> 8 & 0xFF) + 32) / 64];
    text += '\n';
  }
  return text;
}

// A canvas whose scale counts pixels from the top left.
inline RasterCanvas PixelCanvas(int width, int height, int ratio = 1) {
  RasterCanvas canvas(width, height, ratio);
  canvas.SetScale({0.0, 0.0, static_cast<double>(width), static_cast<double>(height)});
  return canvas;
}

}  // namespace quorl::test
