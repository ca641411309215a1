// Face detection with a trained Haar cascade in OpenCV's XML format, built only on
// the library's integral tables, rectangle deviation, Haar stages and pyramid
// layers:
//   vnxfaces [cascade.xml] [photo.png|.jpg] [out.png]
// Every stage of the cascade becomes a classifier state (feature threshold x the
// inner window area, left and right leaf values, the stage threshold); the photo is
// scanned over layers shrunk by 1.1 each, with the deviation of the window's inner
// rectangle as the per-position norm and the mask carried from stage to stage.
// Overlapping hits are grouped, and the photo is written with a box per face.
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
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "vnxcv.h"

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

// ---- the cascade ----------------------------------------------------------------

struct Weak {
  int feature;
  float threshold, left, right;
};
struct Stage {
  float threshold;
  std::vector<Weak> weak;
};
struct Feature {
  std::vector<vnxiRect> rects;
  std::vector<float> weights;
};
struct Cascade {
  int width = 0, height = 0;
  std::vector<Stage> stages;
  std::vector<Feature> features;
};

// Text between <tag> and </tag> starting the search at pos; pos moves past it.
bool nextTag(const std::string& xml, const std::string& tag, std::size_t& pos, std::string& text) {
  const std::size_t a = xml.find("<" + tag + ">", pos);
  if (a == std::string::npos) return false;
  const std::size_t b = xml.find("</" + tag + ">", a);
  text = xml.substr(a + tag.size() + 2, b - a - tag.size() - 2);
  pos = b + tag.size() + 3;
  return true;
}

bool readCascade(const std::string& path, Cascade& c) {
  std::ifstream in(path);
  if (!in) return false;
  std::stringstream ss;
  ss << in.rdbuf();
  const std::string xml = ss.str();
  std::size_t pos = 0;
  std::string t;
  if (!nextTag(xml, "height", pos, t)) return false;
  c.height = std::atoi(t.c_str());
  if (!nextTag(xml, "width", pos, t)) return false;
  c.width = std::atoi(t.c_str());
  const std::size_t featuresAt = xml.find("<features>");
  while (true) {
    std::size_t p = pos;
    if (!nextTag(xml, "maxWeakCount", p, t) || p > featuresAt) break;
    Stage s;
    const int n = std::atoi(t.c_str());
    nextTag(xml, "stageThreshold", p, t);
    s.threshold = std::strtof(t.c_str(), nullptr);
    for (int i = 0; i < n; ++i) {
      Weak w;
      nextTag(xml, "internalNodes", p, t);
      std::istringstream nodes(t);
      int left, right;
      nodes >> left >> right >> w.feature >> w.threshold;
      nextTag(xml, "leafValues", p, t);
      std::istringstream leaves(t);
      leaves >> w.left >> w.right;
      s.weak.push_back(w);
    }
    c.stages.push_back(s);
    pos = p;
  }
  pos = featuresAt;
  while (nextTag(xml, "rects", pos, t)) {
    Feature f;
    std::size_t q = 0;
    std::string r;
    while (nextTag(t, "_", q, r)) {
      std::istringstream rs(r);
      vnxiRect rect;
      float weight;
      rs >> rect.x >> rect.y >> rect.width >> rect.height >> weight;
      f.rects.push_back(rect);
      f.weights.push_back(weight);
    }
    c.features.push_back(f);
  }
  return !c.stages.empty() && !c.features.empty();
}

// One classifier state a stage. The library's stage compares the weighted sum with
// threshold x norm; the norm here is the deviation of the inner window, so the
// thresholds carry its area (a sum normalised by area x deviation).
std::vector<vnxiHaarClassifier_32f*> buildStates(const Cascade& c) {
  const float area = float((c.width - 2) * (c.height - 2));
  std::vector<vnxiHaarClassifier_32f*> states;
  for (const Stage& s : c.stages) {
    std::vector<vnxiRect> rects;
    std::vector<float> weights, th, v1, v2;
    std::vector<int> num;
    for (const Weak& w : s.weak) {
      const Feature& f = c.features[w.feature];
      rects.insert(rects.end(), f.rects.begin(), f.rects.end());
      weights.insert(weights.end(), f.weights.begin(), f.weights.end());
      num.push_back(int(f.rects.size()));
      th.push_back(w.threshold * area);
      v1.push_back(w.left);
      v2.push_back(w.right);
    }
    vnxiHaarClassifier_32f* st = nullptr;
    if (vnxiHaarClassifierInitAlloc_32f(&st, rects.data(), weights.data(), th.data(), v1.data(), v2.data(),
                                        num.data(), int(num.size())) != vnxStatusOk)
      std::exit(2);
    states.push_back(st);
  }
  return states;
}

struct Box {
  float x, y, w, h;
};

// Hits of one layer, in base-image coordinates.
void scanLayer(const Gray& g, const Cascade& c, const std::vector<vnxiHaarClassifier_32f*>& states, float scale,
               std::vector<Box>& hits) {
  const vnxiSize roi{g.width - c.width + 1, g.height - c.height + 1};
  if (roi.width < 1 || roi.height < 1) return;
  const int cols = g.width + 1;
  std::vector<vnx32s> sum(std::size_t(cols) * (g.height + 1));
  std::vector<vnx64f> sqr(sum.size());
  vnxiSqrIntegral_8u32s64f_C1R(g.px.data(), g.width, sum.data(), 4 * cols, sqr.data(), 8 * cols, {g.width, g.height},
                               0, 0.0);
  std::vector<vnx32f> norm(std::size_t(roi.width) * roi.height);
  vnxiRectStdDev_32s32f_C1R(sum.data(), 4 * cols, sqr.data(), 8 * cols, norm.data(), 4 * roi.width, roi,
                            {1, 1, c.width - 2, c.height - 2});
  for (float& n : norm) n = n > 0 ? n : 1.0f / float((c.width - 2) * (c.height - 2));
  std::vector<vnx8u> mask(norm.size(), 1);
  for (std::size_t s = 0; s < states.size(); ++s) {
    int positive = 0;
    vnxiApplyHaarClassifier_32s32f_C1R(sum.data(), 4 * cols, norm.data(), 4 * roi.width, mask.data(), roi.width, roi,
                                       &positive, c.stages[s].threshold, states[s]);
    if (positive == 0) return;
  }
  for (int y = 0; y < roi.height; ++y)
    for (int x = 0; x < roi.width; ++x)
      if (mask[std::size_t(y) * roi.width + x])
        hits.push_back({x * scale, y * scale, c.width * scale, c.height * scale});
}

// Groups hits whose edges lie within 0.2 x the mean size of each other; keeps groups
// of more than `minNeighbors` hits as their mean box.
std::vector<Box> group(const std::vector<Box>& hits, int minNeighbors) {
  std::vector<int> label(hits.size(), -1);
  int nLabels = 0;
  auto similar = [](const Box& a, const Box& b) {
    const float d = 0.2f * (std::min(a.w, b.w) + std::min(a.h, b.h)) * 0.5f;
    return std::fabs(a.x - b.x) <= d && std::fabs(a.y - b.y) <= d && std::fabs(a.x + a.w - b.x - b.w) <= d &&
           std::fabs(a.y + a.h - b.y - b.h) <= d;
  };
  for (std::size_t i = 0; i < hits.size(); ++i) {
    if (label[i] >= 0) continue;
    std::vector<std::size_t> stack{i};
    label[i] = nLabels;
    while (!stack.empty()) {
      const std::size_t k = stack.back();
      stack.pop_back();
      for (std::size_t j = 0; j < hits.size(); ++j)
        if (label[j] < 0 && similar(hits[k], hits[j])) {
          label[j] = nLabels;
          stack.push_back(j);
        }
    }
    ++nLabels;
  }
  std::vector<Box> out;
  for (int l = 0; l < nLabels; ++l) {
    Box m{0, 0, 0, 0};
    int n = 0;
    for (std::size_t i = 0; i < hits.size(); ++i)
      if (label[i] == l) {
        m.x += hits[i].x, m.y += hits[i].y, m.w += hits[i].w, m.h += hits[i].h;
        ++n;
      }
    if (n > minNeighbors) out.push_back({m.x / n, m.y / n, m.w / n, m.h / n});
  }
  return out;
}

void drawBox(Gray& g, const Box& b) {
  const int x0 = std::max(0, int(b.x)), y0 = std::max(0, int(b.y));
  const int x1 = std::min(g.width - 1, int(b.x + b.w)), y1 = std::min(g.height - 1, int(b.y + b.h));
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
  Cascade cascade;
  if (!readCascade(cascadePath, cascade)) {
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
  const auto t0 = std::chrono::steady_clock::now();
  const std::vector<vnxiHaarClassifier_32f*> states = buildStates(cascade);
  // Layer k is the photo resampled at 1.1^k (each from the photo, so the layers do
  // not blur one another); the kernel 0 1 0 leaves plain linear resampling.
  const vnx16s kernel[3] = {0, 1, 0};
  const vnxiSize base{photo.width, photo.height};
  std::vector<Box> hits;
  scanLayer(photo, cascade, states, 1.0f, hits);
  for (float rate = 1.1f; rate <= 10.0f; rate *= 1.1f) {
    vnxiSize size{0, 0};
    if (vnxiGetPyramidDownROI(base, &size, rate) != vnxStatusOk) break;
    if (size.width < cascade.width || size.height < cascade.height) break;
    vnxiPyramidState* down = nullptr;
    if (vnxiPyramidLayerDownInitAlloc_8u_C1R(&down, base, rate, kernel, 3, 2) != vnxStatusOk) break;
    Gray layer;
    layer.width = size.width;
    layer.height = size.height;
    layer.px.resize(std::size_t(size.width) * size.height);
    const vnxStatus st = vnxiPyramidLayerDown_8u_C1R(photo.px.data(), photo.width, base, layer.px.data(), size.width,
                                                     size, down);
    vnxiPyramidLayerDownFree_8u_C1R(down);
    if (st != vnxStatusOk) break;
    scanLayer(layer, cascade, states, float(photo.width) / float(layer.width), hits);
  }
  const std::vector<Box> faces = group(hits, 3);
  const double ms = std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - t0).count();
  for (vnxiHaarClassifier_32f* st : states) vnxiHaarClassifierFree_32f(st);
  std::printf("%zu raw hits, %zu faces in %.1f ms\n", hits.size(), faces.size(), ms);
  for (const Box& b : faces) {
    std::printf("face at %.0f,%.0f size %.0fx%.0f\n", b.x, b.y, b.w, b.h);
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
