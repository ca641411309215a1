// A face detector built only on the library's integral tables, rectangle
// deviation, Haar stages and pyramid layers, with a trained Haar cascade in
// OpenCV's XML format. Header-only, so the example, its test and its benchmark
// share one detector.
//
// Every stage of the cascade becomes a classifier state (feature threshold x the
// inner window area, left and right leaf values as the two output values; the
// stage threshold less 1e-5 is the stage's, as the cascade format is usually read).
// The photo is scanned over layers shrunk by the scale step (1.1 by default) with
// the 32f integral, the deviation of the window's inner rectangle as the
// per-position norm and the mask carried from stage to stage. As the usual cascade
// scanners do, layers shrunk by less than 2 start from every second position of
// every second row; the others from every position. Overlapping hits are grouped.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <numeric>
#include <sstream>
#include <string>
#include <vector>

#include "vnxcv.h"

namespace vnxface {

struct Box {
  int x, y, width, height;
};

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

// Text between <tag> and </tag> from pos on; pos moves past it.
inline bool nextTag(const std::string& xml, const std::string& tag, std::size_t& pos, std::string& text) {
  const std::size_t a = xml.find("<" + tag + ">", pos);
  if (a == std::string::npos) return false;
  const std::size_t b = xml.find("</" + tag + ">", a);
  if (b == std::string::npos) return false;
  text = xml.substr(a + tag.size() + 2, b - a - tag.size() - 2);
  pos = b + tag.size() + 3;
  return true;
}

inline bool readCascade(const std::string& path, Cascade& c) {
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
  if (featuresAt == std::string::npos) return false;
  while (true) {
    std::size_t p = pos;
    if (!nextTag(xml, "maxWeakCount", p, t) || p > featuresAt) break;
    Stage s;
    const int n = std::atoi(t.c_str());
    if (!nextTag(xml, "stageThreshold", p, t)) return false;
    s.threshold = std::strtof(t.c_str(), nullptr);
    for (int i = 0; i < n; ++i) {
      Weak w;
      int left, right;
      if (!nextTag(xml, "internalNodes", p, t)) return false;
      std::istringstream(t) >> left >> right >> w.feature >> w.threshold;
      if (!nextTag(xml, "leafValues", p, t)) return false;
      std::istringstream(t) >> w.left >> w.right;
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
      vnxiRect rect;
      float weight;
      std::istringstream(r) >> rect.x >> rect.y >> rect.width >> rect.height >> weight;
      f.rects.push_back(rect);
      f.weights.push_back(weight);
    }
    c.features.push_back(f);
  }
  for (const Stage& s : c.stages)
    for (const Weak& w : s.weak)
      if (w.feature < 0 || w.feature >= int(c.features.size())) return false;
  return c.width > 2 && c.height > 2 && !c.stages.empty();
}

// Groups hits whose edges lie within 0.2 x their mean size of each other (and so
// on transitively); a group of more than minNeighbors hits gives its mean box,
// unless it lies inside a stronger group's box widened by a fifth of its size.
inline std::vector<Box> groupHits(const std::vector<Box>& hits, int minNeighbors) {
  const std::size_t n = hits.size();
  std::vector<std::size_t> root(n);
  std::iota(root.begin(), root.end(), std::size_t{0});
  auto find = [&](std::size_t i) {
    while (root[i] != i) i = root[i] = root[root[i]];
    return i;
  };
  auto similar = [](const Box& a, const Box& b) {
    const double d = 0.2 * (std::min(a.width, b.width) + std::min(a.height, b.height)) * 0.5;
    return std::abs(a.x - b.x) <= d && std::abs(a.y - b.y) <= d && std::abs(a.x + a.width - b.x - b.width) <= d &&
           std::abs(a.y + a.height - b.y - b.height) <= d;
  };
  for (std::size_t i = 0; i < n; ++i)
    for (std::size_t j = i + 1; j < n; ++j)
      if (similar(hits[i], hits[j])) root[find(i)] = find(j);
  std::vector<double> sum(4 * n, 0.0);
  std::vector<int> count(n, 0);
  for (std::size_t i = 0; i < n; ++i) {
    const std::size_t r = find(i);
    sum[4 * r] += hits[i].x, sum[4 * r + 1] += hits[i].y, sum[4 * r + 2] += hits[i].width,
        sum[4 * r + 3] += hits[i].height;
    ++count[r];
  }
  std::vector<Box> groups;
  std::vector<int> strength;
  for (std::size_t r = 0; r < n; ++r)
    if (count[r] > minNeighbors) {
      auto mean = [&](int k) { return int(std::lround(sum[4 * r + k] / count[r])); };
      groups.push_back({mean(0), mean(1), mean(2), mean(3)});
      strength.push_back(count[r]);
    }
  std::vector<Box> out;
  for (std::size_t i = 0; i < groups.size(); ++i) {
    const Box& a = groups[i];
    bool inside = false;
    for (std::size_t j = 0; j < groups.size() && !inside; ++j) {
      const Box& b = groups[j];
      const int dx = int(std::lround(b.width * 0.2)), dy = int(std::lround(b.height * 0.2));
      inside = j != i && strength[j] > std::max(3, strength[i]) && a.x >= b.x - dx && a.y >= b.y - dy &&
               a.x + a.width <= b.x + b.width + dx && a.y + a.height <= b.y + b.height + dy;
    }
    if (!inside) out.push_back(a);
  }
  return out;
}

class Detector {
 public:
  explicit Detector(const Cascade& c) : cascade_(c) {
    const float area = float((c.width - 2) * (c.height - 2));
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
        ok_ = false;
      states_.push_back(st);
    }
  }
  ~Detector() {
    for (vnxiHaarClassifier_32f* st : states_)
      if (st) vnxiHaarClassifierFree_32f(st);
  }
  Detector(const Detector&) = delete;
  Detector& operator=(const Detector&) = delete;
  bool ok() const { return ok_; }

  // Faces in a gray photo: layers shrunk by scaleStep^k while the window fits,
  // each made by layer resampling (from the photo, or from the first layer shrunk
  // by 4 or more once the rate would pass 8), hits grouped with minNeighbors.
  std::vector<Box> detect(const vnx8u* px, int step, vnxiSize size, double scaleStep, int minNeighbors) {
    hits_.clear();
    if (!ok_) return {};
    const vnx16s identity[3] = {0, 1, 0};  // no smoothing: plain linear resampling
    std::vector<vnx8u> mid;                // the layer the larger rates start from
    vnxiSize midSize{0, 0};
    double midFactor = 0.0;
    for (double factor = 1.0;; factor *= scaleStep) {
      const bool fromMid = factor > 8.0 && midFactor > 0.0;
      const vnx8u* src = fromMid ? mid.data() : px;
      const int srcStep = fromMid ? midSize.width : step;
      const vnxiSize srcSize = fromMid ? midSize : size;
      const double rate = factor / (fromMid ? midFactor : 1.0);
      vnxiSize layer = srcSize;
      const vnx8u* img = src;
      int imgStep = srcStep;
      if (rate > 1.0001) {
        if (vnxiGetPyramidDownROI(srcSize, &layer, float(rate)) != vnxStatusOk) break;
        if (layer.width < cascade_.width || layer.height < cascade_.height) break;
        layer_.resize(std::size_t(layer.width) * layer.height);
        vnxiPyramidState* down = nullptr;
        if (vnxiPyramidLayerDownInitAlloc_8u_C1R(&down, srcSize, float(rate), identity, 3, 2) != vnxStatusOk) break;
        const vnxStatus st =
            vnxiPyramidLayerDown_8u_C1R(src, srcStep, srcSize, layer_.data(), layer.width, layer, down);
        vnxiPyramidLayerDownFree_8u_C1R(down);
        if (st != vnxStatusOk) break;
        img = layer_.data();
        imgStep = layer.width;
      } else if (layer.width < cascade_.width || layer.height < cascade_.height) {
        break;
      }
      if (factor >= 4.0 && midFactor == 0.0 && img != px) {
        mid.assign(img, img + std::size_t(layer.width) * layer.height);
        midSize = layer;
        midFactor = factor;
      }
      scan(img, imgStep, layer, factor);
    }
    return groupHits(hits_, minNeighbors);
  }
  // The raw hits of the last detect, in photo coordinates.
  const std::vector<Box>& hits() const { return hits_; }

 private:
  // Hits of one layer shrunk by `factor`.
  void scan(const vnx8u* img, int step, vnxiSize size, double factor) {
    const Cascade& c = cascade_;
    const vnxiSize roi{size.width - c.width + 1, size.height - c.height + 1};
    const int cols = size.width + 1;
    sum_.resize(std::size_t(cols) * (size.height + 1));
    sqr_.resize(sum_.size());
    norm_.resize(std::size_t(roi.width) * roi.height);
    mask_.assign(norm_.size(), 0);
    vnxiSqrIntegral_8u32f64f_C1R(img, step, sum_.data(), 4 * cols, sqr_.data(), 8 * cols, size, 0.0f, 0.0);
    vnxiRectStdDev_32f_C1R(sum_.data(), 4 * cols, sqr_.data(), 8 * cols, norm_.data(), 4 * roi.width, roi,
                           {1, 1, c.width - 2, c.height - 2});
    // A flat window has deviation 0: its features compare with the bare thresholds.
    const float flat = 1.0f / float((c.width - 2) * (c.height - 2));
    for (float& n : norm_) n = n > 0.0f ? n : flat;
    const int grid = factor < 2.0 ? 2 : 1;
    for (int y = 0; y < roi.height; y += grid)
      for (int x = 0; x < roi.width; x += grid) mask_[std::size_t(y) * roi.width + x] = 1;
    for (std::size_t s = 0; s < states_.size(); ++s) {
      int positive = 0;
      vnxiApplyHaarClassifier_32f_C1R(sum_.data(), 4 * cols, norm_.data(), 4 * roi.width, mask_.data(), roi.width,
                                      roi, &positive, c.stages[s].threshold - 1e-5f, states_[s]);
      if (positive == 0) return;
    }
    const int w = int(std::lround(c.width * factor)), h = int(std::lround(c.height * factor));
    for (int y = 0; y < roi.height; ++y)
      for (int x = 0; x < roi.width; ++x)
        if (mask_[std::size_t(y) * roi.width + x])
          hits_.push_back({int(std::lround(x * factor)), int(std::lround(y * factor)), w, h});
  }

  const Cascade& cascade_;
  std::vector<vnxiHaarClassifier_32f*> states_;
  bool ok_ = true;
  std::vector<Box> hits_;
  std::vector<vnx8u> layer_, mask_;
  std::vector<vnx32f> sum_, norm_;
  std::vector<vnx64f> sqr_;
};

}  // namespace vnxface
