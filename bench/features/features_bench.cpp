// Edges and features beside OpenCV at 1920x1080: Canny from 16s derivatives, the
// minimum-eigenvalue corner map, Hough lines on an edge map, and the fast arctangent.
#include <cmath>

#ifndef CV_PI
#define CV_PI 3.1415926535897932384626433832795
#endif

#include "../bench_common.h"

namespace {

using namespace vb;

constexpr std::int64_t kPixels = std::int64_t(kWidth) * kHeight;
const vnxiSize kRoi{kWidth, kHeight};

// A scene with smooth shading, blobs and a few straight bars, plus mild noise.
std::vector<vnx8u> scene() {
  std::vector<vnx8u> v(kPixels);
  std::mt19937 rng(3);
  std::uniform_int_distribution<int> noise(-6, 6);
  for (int y = 0; y < kHeight; ++y)
    for (int x = 0; x < kWidth; ++x) {
      double s = 128 + 60 * std::sin(x / 41.0) * std::cos(y / 27.0);
      if ((x / 160 + y / 120) % 2) s += 40;
      if (std::abs(x - 2 * y + 300) < 3 || std::abs(x + y - 1500) < 3) s = 250;
      v[std::size_t(y) * kWidth + x] = vnx8u(std::min(255.0, std::max(0.0, s + noise(rng))));
    }
  return v;
}

struct Planes {
  std::vector<vnx8u> img = scene(), edges = std::vector<vnx8u>(kPixels);
  std::vector<vnx16s> dx = std::vector<vnx16s>(kPixels), dy = std::vector<vnx16s>(kPixels);
  std::vector<vnx32f> fx = std::vector<vnx32f>(kPixels), fy = std::vector<vnx32f>(kPixels),
                      out = std::vector<vnx32f>(kPixels);
  std::vector<vnx8u> buf = std::vector<vnx8u>(160 << 20);
  std::vector<vnx32f> lines = std::vector<vnx32f>(2 * 4096);
  Planes() {
    vnxiFilterSobelVertBorder_8u16s_C1R(img.data(), kWidth, dx.data(), 2 * kWidth, kRoi, 33, 1, 0, buf.data());
    vnxiFilterSobelHorizBorder_8u16s_C1R(img.data(), kWidth, dy.data(), 2 * kWidth, kRoi, 33, 1, 0, buf.data());
    vnxiCanny_16s8u_C1R(dx.data(), 2 * kWidth, dy.data(), 2 * kWidth, edges.data(), kWidth, kRoi, 80, 240, buf.data());
    for (std::int64_t i = 0; i < kPixels; ++i) fx[i] = dx[i], fy[i] = dy[i];
  }
} f;

#ifdef VNX_HAVE_OPENCV
cv::Mat m8(std::vector<vnx8u>& v) { return cv::Mat(kHeight, kWidth, CV_8UC1, v.data()); }
cv::Mat m16(std::vector<vnx16s>& v) { return cv::Mat(kHeight, kWidth, CV_16SC1, v.data()); }
cv::Mat m32(std::vector<vnx32f>& v) { return cv::Mat(kHeight, kWidth, CV_32FC1, v.data()); }
#define VB_CV(expr) [] { expr; }
#else
#define VB_CV(expr) [] {}
#endif

const bool registered[] = {
    registerPair(
        "Canny_16s8u", 5 * kPixels,
        [] {
          vnxiCanny_16s8u_C1R(f.dx.data(), 2 * kWidth, f.dy.data(), 2 * kWidth, f.edges.data(), kWidth, kRoi, 80, 240,
                              f.buf.data());
        },
        VB_CV(cv::Mat e = m8(f.edges); cv::Canny(m16(f.dx), m16(f.dy), e, 80, 240, false))),
    registerPair(
        "MinEigenVal_Sobel3_Window3", 5 * kPixels,
        [] {
          vnxiMinEigenVal_8u32f_C1R(f.img.data(), kWidth, f.out.data(), 4 * kWidth, kRoi, 0, 3, 3, f.buf.data());
        },
        VB_CV(cv::Mat o = m32(f.out); cv::cornerMinEigenVal(m8(f.img), o, 3, 3, cv::BORDER_REPLICATE))),
    registerPair(
        "HoughLine_8u32f", kPixels,
        [] {
          int n = 0, size = 0;
          vnxiHoughLineGetSize_8u_C1R(kRoi, {1, float(CV_PI / 180)}, 4096, &size);
          vnxiHoughLine_8u32f_C1R(f.edges.data(), kWidth, kRoi, {1, float(CV_PI / 180)}, 300, f.lines.data(), 4096, &n,
                                  f.buf.data());
        },
        VB_CV(std::vector<cv::Vec2f> lines; cv::HoughLines(m8(f.edges), lines, 1, CV_PI / 180, 300))),
    registerPair(
        "FastArctan_32f", 12 * kPixels, [] { vnxibFastArctan_32f(f.fy.data(), f.fx.data(), f.out.data(), int(kPixels)); },
        VB_CV(cv::Mat o = m32(f.out); cv::phase(m32(f.fx), m32(f.fy), o, true))),
};

}  // namespace
