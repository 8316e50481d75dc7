#include "shared/PngImage.h"

#include <png.h>

#include <cerrno>
#include <vector>

namespace quorl {

std::string EncodePng(const std::uint32_t* pixels, int width, int height, Failure& failure) {
  const std::size_t count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  std::vector<std::uint8_t> colours;
  colours.reserve(3 * count);
  for (std::size_t i = 0; i < count; ++i) {
    for (const int shift : {16, 8, 0}) colours.push_back(static_cast<std::uint8_t>(pixels[i] >> shift));
  }
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  image.width = static_cast<png_uint_32>(width);
  image.height = static_cast<png_uint_32>(height);
  image.format = PNG_FORMAT_RGB;
  std::string file(PNG_IMAGE_PNG_SIZE_MAX(image), '\0');
  png_alloc_size_t bytes = file.size();
  if (png_image_write_to_memory(&image, file.data(), &bytes, 0, colours.data(), 0, nullptr) == 0) {
    failure = Error{ENOMEM, std::string("the picture can't be made: ") + image.message};
    return {};
  }
  file.resize(bytes);
  return file;
}

}  // namespace quorl
