// Face detection with a trained Haar cascade in OpenCV's XML format (the detector
// is face_detector.h, built only on the library's exports):
//   vnxfaces [cascade.xml] [photo.png|.jpg] [out.png] [scale step, 1.1]
// Prints the faces and the detection time (the best of five runs), and writes the
// photo with a box per face.
#include <png.h>
#ifdef VNX_HAVE_JPEG
#include <cstdio>
#include <jpeglib.h>
#endif

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "face_detector.h"

namespace {

struct Gray {
  int width = 0, height = 0;
  std::vector<vnx8u> px;
};

bool endsWith(const std::string& s, const std::string& e) {
  return s.size() >= e.size() && s.compare(s.size() - e.size(), e.size(), e) == 0;
}

bool readPng(const std::string& path, Gray& g) {
  png_image img{};
  img.version = PNG_IMAGE_VERSION;
  if (!png_image_begin_read_from_file(&img, path.c_str())) return false;
  img.format = PNG_FORMAT_GRAY;
  g.width = int(img.width);
  g.height = int(img.height);
  g.px.resize(PNG_IMAGE_SIZE(img));
  return png_image_finish_read(&img, nullptr, g.px.data(), 0, nullptr) != 0;
}

#ifdef VNX_HAVE_JPEG
bool readJpeg(const std::string& path, Gray& g) {
  FILE* f = std::fopen(path.c_str(), "rb");
  if (!f) return false;
  jpeg_decompress_struct cinfo;
  jpeg_error_mgr jerr;
  cinfo.err = jpeg_std_error(&jerr);
  jpeg_create_decompress(&cinfo);
  jpeg_stdio_src(&cinfo, f);
  jpeg_read_header(&cinfo, TRUE);
  cinfo.out_color_space = JCS_GRAYSCALE;
  jpeg_start_decompress(&cinfo);
  g.width = int(cinfo.output_width);
  g.height = int(cinfo.output_height);
  g.px.resize(std::size_t(g.width) * g.height);
  while (cinfo.output_scanline < cinfo.output_height) {
    JSAMPROW row = g.px.data() + std::size_t(cinfo.output_scanline) * g.width;
    jpeg_read_scanlines(&cinfo, &row, 1);
  }
  jpeg_finish_decompress(&cinfo);
  jpeg_destroy_decompress(&cinfo);
  std::fclose(f);
  return true;
}
#endif

void drawBox(Gray& g, const vnxface::Box& b) {
  const int x0 = std::max(0, b.x), y0 = std::max(0, b.y);
  const int x1 = std::min(g.width - 1, b.x + b.width), y1 = std::min(g.height - 1, b.y + b.height);
  for (int t = 0; t < 2; ++t) {
    for (int x = x0; x <= x1; ++x) g.px[std::size_t(std::min(y0 + t, y1)) * g.width + x] = g.px[std::size_t(std::max(y1 - t, y0)) * g.width + x] = 255;
    for (int y = y0; y <= y1; ++y) g.px[std::size_t(y) * g.width + std::min(x0 + t, x1)] = g.px[std::size_t(y) * g.width + std::max(x1 - t, x0)] = 255;
  }
}

}  // namespace

int main(int argc, char** argv) {
  const std::string cascadePath = argc > 1 ? argv[1] : "/usr/share/opencv4/haarcascades/haarcascade_frontalface_default.xml";
  const std::string photoPath = argc > 2 ? argv[2] : "/usr/share/doc/opencv-doc/examples/data/messi5.jpg";
  const std::string outPath = argc > 3 ? argv[3] : "faces.png";
  const double scaleStep = argc > 4 ? std::atof(argv[4]) : 1.1;
  vnxface::Cascade cascade;
  if (!vnxface::readCascade(cascadePath, cascade)) {
    std::fprintf(stderr, "cannot read the cascade %s\n", cascadePath.c_str());
    return 1;
  }
  Gray photo;
  bool ok = false;
#ifdef VNX_HAVE_JPEG
  if (endsWith(photoPath, ".jpg") || endsWith(photoPath, ".jpeg")) ok = readJpeg(photoPath, photo);
  else
#endif
    ok = readPng(photoPath, photo);
  if (!ok) {
    std::fprintf(stderr, "cannot read the photo %s\n", photoPath.c_str());
    return 1;
  }
  vnxface::Detector detector(cascade);
  if (!detector.ok() || !(scaleStep > 1.0)) {
    std::fprintf(stderr, "cannot build the stages of %s at scale step %g\n", cascadePath.c_str(), scaleStep);
    return 1;
  }
  std::vector<vnxface::Box> faces;
  double best = 1e30;
  for (int run = 0; run < 5; ++run) {
    const auto t0 = std::chrono::steady_clock::now();
    faces = detector.detect(photo.px.data(), photo.width, {photo.width, photo.height}, scaleStep, 3);
    best = std::min(best, std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - t0).count());
  }
  std::printf("%zu raw hits, %zu faces in %.1f ms\n", detector.hits().size(), faces.size(), best);
  for (const vnxface::Box& b : faces) {
    std::printf("face at %d,%d size %dx%d\n", b.x, b.y, b.width, b.height);
    drawBox(photo, b);
  }
  png_image img{};
  img.version = PNG_IMAGE_VERSION;
  img.width = unsigned(photo.width);
  img.height = unsigned(photo.height);
  img.format = PNG_FORMAT_GRAY;
  if (!png_image_write_to_file(&img, outPath.c_str(), 0, photo.px.data(), 0, nullptr)) {
    std::fprintf(stderr, "cannot write %s\n", outPath.c_str());
    return 1;
  }
  return 0;
}
