// Pyramid steps and pyramidal flow beside cv::pyrDown, cv::pyrUp and
// cv::buildOpticalFlowPyramid + cv::calcOpticalFlowPyrLK, 1920x1080.
#include "../bench_common.h"

#include <cmath>

#ifdef VNX_HAVE_OPENCV
#include <opencv2/video/tracking.hpp>
#endif

namespace {

using namespace vb;

constexpr std::int64_t kPixels = std::int64_t(kWidth) * kHeight;
const vnxiSize kRoi{kWidth, kHeight};

struct Planes {
  std::vector<vnx8u> a = randomPlane<vnx8u>(kWidth, kHeight, 1), d8 = std::vector<vnx8u>(4 * kPixels);
  std::vector<vnx32f> fa = randomPlane<vnx32f>(kWidth, kHeight, 2), d32 = std::vector<vnx32f>(kPixels);
  std::vector<vnx8u> buf = std::vector<vnx8u>(1 << 20);
} f;

#ifdef VNX_HAVE_OPENCV
cv::Mat m8(std::vector<vnx8u>& v, int w = kWidth, int h = kHeight) { return cv::Mat(h, w, CV_8UC1, v.data()); }
cv::Mat m32(std::vector<vnx32f>& v, int w = kWidth, int h = kHeight) { return cv::Mat(h, w, CV_32FC1, v.data()); }
#define VB_CV(expr) [] { expr; }
#else
#define VB_CV(expr) [] {}
#endif

const bool registered[] = {
    registerPair(
        "PyrDown_8u", kPixels * 5 / 4,
        [] { vnxiPyrDown_Gauss5x5_8u_C1R(f.a.data(), kWidth, f.d8.data(), kWidth / 2, kRoi, f.buf.data()); },
        VB_CV(cv::Mat d = m8(f.d8, kWidth / 2, kHeight / 2); cv::pyrDown(m8(f.a), d))),
    registerPair(
        "PyrDown_32f", kPixels * 5,
        [] { vnxiPyrDown_Gauss5x5_32f_C1R(f.fa.data(), 4 * kWidth, f.d32.data(), 2 * kWidth, kRoi, f.buf.data()); },
        VB_CV(cv::Mat d = m32(f.d32, kWidth / 2, kHeight / 2); cv::pyrDown(m32(f.fa), d))),
    registerPair(
        "PyrUp_8u", kPixels * 5,
        [] { vnxiPyrUp_Gauss5x5_8u_C1R(f.a.data(), kWidth, f.d8.data(), 2 * kWidth, kRoi, f.buf.data()); },
        VB_CV(cv::Mat d = m8(f.d8, 2 * kWidth, 2 * kHeight); cv::pyrUp(m8(f.a), d))),
};

}  // namespace

namespace {

// 500 points tracked with 21 x 21 windows over 3 levels (levels 0..2), pyramids built
// inside the timed call: ours with the 5x5 down step into records, OpenCV's with
// cv::buildOpticalFlowPyramid (no derivative levels, as ours).
struct Flow {
  std::vector<vnx8u> img1 = std::vector<vnx8u>(kPixels), img2 = std::vector<vnx8u>(kPixels);
  std::vector<vnx8u> lv1[2], lv2[2];
  std::vector<vnxiPoint32f> prev, next;
  std::vector<vnx8u> status = std::vector<vnx8u>(500);
  std::vector<vnx32f> err = std::vector<vnx32f>(500);
  vnxiPyramid *p1 = nullptr, *p2 = nullptr;
  vnxiOptFlowPyrLKState* st = nullptr;
  Flow() {
    for (int y = 0; y < kHeight; ++y)
      for (int x = 0; x < kWidth; ++x) {
        auto tex = [](double u, double v) {
          return 128 + 60 * std::sin(u * 0.21 + v * 0.08) + 50 * std::cos(v * 0.17 - u * 0.05) + 15 * std::sin(u * v * 0.001);
        };
        img1[size_t(y) * kWidth + x] = vnx8u(std::lround(tex(x, y)));
        img2[size_t(y) * kWidth + x] = vnx8u(std::lround(tex(x - 1.7, y + 0.9)));
      }
    std::mt19937 rng(4);
    for (int i = 0; i < 500; ++i) prev.push_back({float(40 + rng() % (kWidth - 80)), float(40 + rng() % (kHeight - 80))});
    vnxiPyramidInitAlloc(&p1, 2, kRoi, 2.0f);
    vnxiPyramidInitAlloc(&p2, 2, kRoi, 2.0f);
    for (int k = 0; k < 2; ++k) {
      lv1[k].resize(size_t(p1->pRoi[k + 1].width) * p1->pRoi[k + 1].height);
      lv2[k].resize(lv1[k].size());
    }
    vnxiOpticalFlowPyrLKInitAlloc_8u_C1R(&st, kRoi, 21, 0);
  }
  void build(vnxiPyramid* p, std::vector<vnx8u>& base, std::vector<vnx8u>* lv) {
    p->pImage[0] = base.data();
    p->pStep[0] = kWidth;
    for (int k = 1; k <= 2; ++k) {
      p->pImage[k] = lv[k - 1].data();
      p->pStep[k] = p->pRoi[k].width;
      vnxiPyrDown_Gauss5x5_8u_C1R(static_cast<vnx8u*>(p->pImage[k - 1]), p->pStep[k - 1], lv[k - 1].data(),
                                  p->pStep[k], p->pRoi[k - 1], f.buf.data());
    }
  }
  void ours() {
    build(p1, img1, lv1);
    build(p2, img2, lv2);
    next = prev;
    vnxiOpticalFlowPyrLK_8u_C1R(p1, p2, prev.data(), next.data(), status.data(), err.data(), 500, 21, 2, 30, 0.0001f, st);
  }
} flow;

}  // namespace

namespace {
#ifdef VNX_HAVE_OPENCV
void cvFlow() {
  static std::vector<cv::Point2f> prev, next;
  static std::vector<uchar> status;
  static std::vector<float> err;
  if (prev.empty())
    for (const vnxiPoint32f& p : flow.prev) prev.push_back({p.x, p.y});
  std::vector<cv::Mat> a, b;
  const cv::Size win(21, 21);
  cv::buildOpticalFlowPyramid(m8(flow.img1), a, win, 2, false);
  cv::buildOpticalFlowPyramid(m8(flow.img2), b, win, 2, false);
  cv::calcOpticalFlowPyrLK(a, b, prev, next, status, err, win, 2,
                           cv::TermCriteria(cv::TermCriteria::COUNT | cv::TermCriteria::EPS, 30, 0.01));
}
#endif
const bool flowRegistered = registerPair("FlowPyrLK_500pts_21x21_3levels", 500, [] { flow.ours(); },
#ifdef VNX_HAVE_OPENCV
                                         cvFlow
#else
                                         [] {}
#endif
);
}  // namespace
