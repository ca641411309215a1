// Dilation, erosion and opening beside cv::dilate, cv::erode and cv::morphologyEx,
// 1920x1080, replicated border, the same structuring element on both sides.
#include "../bench_common.h"

namespace {

using namespace vb;

constexpr std::int64_t kPixels = std::int64_t(kWidth) * kHeight;
const vnxiSize kRoi{kWidth, kHeight};

struct Planes {
  std::vector<vnx8u> a = randomPlane<vnx8u>(kWidth, kHeight, 1), d8 = std::vector<vnx8u>(kPixels);
  std::vector<vnx32f> fa = randomPlane<vnx32f>(kWidth, kHeight, 2), d32 = std::vector<vnx32f>(kPixels);
} f;

enum class Shape { Rect, Cross, Ellipse };

// The element as a byte mask: a rectangle, a cross, or the ellipse OpenCV draws.
std::vector<vnx8u> element(Shape s, int n) {
  std::vector<vnx8u> m(std::size_t(n) * n, 1);
#ifdef VNX_HAVE_OPENCV
  const int kind = s == Shape::Rect ? cv::MORPH_RECT : s == Shape::Cross ? cv::MORPH_CROSS : cv::MORPH_ELLIPSE;
  const cv::Mat k = cv::getStructuringElement(kind, cv::Size(n, n));
  for (int y = 0; y < n; ++y)
    for (int x = 0; x < n; ++x) m[std::size_t(y) * n + x] = k.at<vnx8u>(y, x);
#else
  if (s != Shape::Rect)
    for (int y = 0; y < n; ++y)
      for (int x = 0; x < n; ++x) m[std::size_t(y) * n + x] = (x == n / 2 || y == n / 2);
#endif
  return m;
}

template <class Init, class State>
State* makeState(Init init, Shape s, int n) {
  std::vector<vnx8u> m = element(s, n);
  State* st = nullptr;
  init(kWidth, m.data(), vnxiSize{n, n}, vnxiPoint{n / 2, n / 2}, &st);
  return st;
}
vnxiMorphState* state8u(Shape s, int n) { return makeState<decltype(&vnxiMorphologyInitAlloc_8u_C1R), vnxiMorphState>(vnxiMorphologyInitAlloc_8u_C1R, s, n); }
vnxiMorphState* state32f(Shape s, int n) { return makeState<decltype(&vnxiMorphologyInitAlloc_32f_C1R), vnxiMorphState>(vnxiMorphologyInitAlloc_32f_C1R, s, n); }
vnxiMorphAdvState* adv8u(Shape s, int n) {
  std::vector<vnx8u> m = element(s, n);
  vnxiMorphAdvState* st = nullptr;
  vnxiMorphAdvInitAlloc_8u_C1R(&st, kRoi, m.data(), {n, n}, {n / 2, n / 2});
  return st;
}

#ifdef VNX_HAVE_OPENCV
cv::Mat m8(std::vector<vnx8u>& v) { return cv::Mat(kHeight, kWidth, CV_8UC1, v.data()); }
cv::Mat m32(std::vector<vnx32f>& v) { return cv::Mat(kHeight, kWidth, CV_32FC1, v.data()); }
cv::Mat kernel(Shape s, int n) {
  std::vector<vnx8u> m = element(s, n);
  return cv::Mat(n, n, CV_8UC1, m.data()).clone();
}
const cv::Mat kRect3 = kernel(Shape::Rect, 3), kRect5 = kernel(Shape::Rect, 5), kCross5 = kernel(Shape::Cross, 5),
              kEllipse7 = kernel(Shape::Ellipse, 7);
#define VB_CV(expr) [] { expr; }
#else
#define VB_CV(expr) [] {}
#endif
constexpr int R = vnxBorderReplicate;

vnxiMorphState* const rect3 = state8u(Shape::Rect, 3);
vnxiMorphState* const rect5 = state8u(Shape::Rect, 5);
vnxiMorphState* const cross5 = state8u(Shape::Cross, 5);
vnxiMorphState* const ellipse7 = state8u(Shape::Ellipse, 7);
vnxiMorphState* const rect3f = state32f(Shape::Rect, 3);
vnxiMorphState* const cross5f = state32f(Shape::Cross, 5);
vnxiMorphAdvState* const open3 = adv8u(Shape::Rect, 3);

const bool registered[] = {
    registerPair(
        "DilateRect3x3_8u", 2 * kPixels,
        [] { vnxiDilateBorderReplicate_8u_C1R(f.a.data(), kWidth, f.d8.data(), kWidth, kRoi, R, rect3); },
        VB_CV(cv::Mat d = m8(f.d8); cv::dilate(m8(f.a), d, kRect3, cv::Point(-1, -1), 1, cv::BORDER_REPLICATE))),
    registerPair(
        "DilateRect5x5_8u", 2 * kPixels,
        [] { vnxiDilateBorderReplicate_8u_C1R(f.a.data(), kWidth, f.d8.data(), kWidth, kRoi, R, rect5); },
        VB_CV(cv::Mat d = m8(f.d8); cv::dilate(m8(f.a), d, kRect5, cv::Point(-1, -1), 1, cv::BORDER_REPLICATE))),
    registerPair(
        "ErodeCross5x5_8u", 2 * kPixels,
        [] { vnxiErodeBorderReplicate_8u_C1R(f.a.data(), kWidth, f.d8.data(), kWidth, kRoi, R, cross5); },
        VB_CV(cv::Mat d = m8(f.d8); cv::erode(m8(f.a), d, kCross5, cv::Point(-1, -1), 1, cv::BORDER_REPLICATE))),
    registerPair(
        "DilateEllipse7x7_8u", 2 * kPixels,
        [] { vnxiDilateBorderReplicate_8u_C1R(f.a.data(), kWidth, f.d8.data(), kWidth, kRoi, R, ellipse7); },
        VB_CV(cv::Mat d = m8(f.d8); cv::dilate(m8(f.a), d, kEllipse7, cv::Point(-1, -1), 1, cv::BORDER_REPLICATE))),
    registerPair(
        "OpenRect3x3_8u", 2 * kPixels,
        [] { vnxiMorphOpenBorder_8u_C1R(f.a.data(), kWidth, f.d8.data(), kWidth, kRoi, R, open3); },
        VB_CV(cv::Mat d = m8(f.d8); cv::morphologyEx(m8(f.a), d, cv::MORPH_OPEN, kRect3, cv::Point(-1, -1), 1, cv::BORDER_REPLICATE))),
    registerPair(
        "DilateRect3x3_32f", 8 * kPixels,
        [] { vnxiDilateBorderReplicate_32f_C1R(f.fa.data(), 4 * kWidth, f.d32.data(), 4 * kWidth, kRoi, R, rect3f); },
        VB_CV(cv::Mat d = m32(f.d32); cv::dilate(m32(f.fa), d, kRect3, cv::Point(-1, -1), 1, cv::BORDER_REPLICATE))),
    registerPair(
        "ErodeCross5x5_32f", 8 * kPixels,
        [] { vnxiErodeBorderReplicate_32f_C1R(f.fa.data(), 4 * kWidth, f.d32.data(), 4 * kWidth, kRoi, R, cross5f); },
        VB_CV(cv::Mat d = m32(f.d32); cv::erode(m32(f.fa), d, kCross5, cv::Point(-1, -1), 1, cv::BORDER_REPLICATE))),
};

}  // namespace
