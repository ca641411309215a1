// Reading and writing 8-bit PNG files for the demo and the examples, through
// libpng's simplified interface (any PNG in, gray or RGB out).
#pragma once

#include <png.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace vnxdemo {

// An 8-bit image with tightly packed rows: `channels` samples a pixel, 1 (gray) or 3 (RGB).
struct Image8 {
  int width = 0, height = 0, channels = 1;
  std::vector<std::uint8_t> pixels;
  int step() const { return width * channels; }
};

// Reads any PNG and converts it to 8-bit gray. On failure returns false and puts
// libpng's message into `error`.
inline bool readGrayPng(const char* path, Image8& out, std::string& error) {
  png_image image;
  std::memset(&image, 0, sizeof image);
  image.version = PNG_IMAGE_VERSION;
  if (!png_image_begin_read_from_file(&image, path)) {
    error = image.message;
    return false;
  }
  image.format = PNG_FORMAT_GRAY;
  out.width = int(image.width);
  out.height = int(image.height);
  out.channels = 1;
  out.pixels.assign(PNG_IMAGE_SIZE(image), 0);
  if (!png_image_finish_read(&image, nullptr, out.pixels.data(), 0, nullptr)) {
    error = image.message;
    png_image_free(&image);
    return false;
  }
  return true;
}

// Writes a gray (1 channel) or RGB (3 channels) image. On failure returns false.
inline bool writePng(const char* path, const Image8& img, std::string& error) {
  png_image image;
  std::memset(&image, 0, sizeof image);
  image.version = PNG_IMAGE_VERSION;
  image.width = png_uint_32(img.width);
  image.height = png_uint_32(img.height);
  image.format = img.channels == 3 ? PNG_FORMAT_RGB : PNG_FORMAT_GRAY;
  if (!png_image_write_to_file(&image, path, 0, img.pixels.data(), img.step(), nullptr)) {
    error = image.message;
    return false;
  }
  return true;
}

}  // namespace vnxdemo
