// Image statistics beside cv::meanStdDev, cv::minMaxLoc and cv::norm with a
// mask, 1920x1080, on the same planes and thread count.
#include "../bench_common.h"

namespace {

using namespace vb;

constexpr std::int64_t kPixels = std::int64_t(kWidth) * kHeight;
const vnxiSize kRoi{kWidth, kHeight};

struct Planes {
  std::vector<vnx8u> a = randomPlane<vnx8u>(kWidth, kHeight, 11), b = randomPlane<vnx8u>(kWidth, kHeight, 12),
                     mask = randomMask(kWidth, kHeight, 13);
  std::vector<vnx32f> fa = randomPlane<vnx32f>(kWidth, kHeight, 14), fb = randomPlane<vnx32f>(kWidth, kHeight, 15);
} p;

double sink;  // results go somewhere the optimiser cannot drop

#ifdef VNX_HAVE_OPENCV
cv::Mat m8(std::vector<vnx8u>& v) { return cv::Mat(kHeight, kWidth, CV_8UC1, v.data()); }
cv::Mat m32(std::vector<vnx32f>& v) { return cv::Mat(kHeight, kWidth, CV_32FC1, v.data()); }
#define VS_CV(...) [] { __VA_ARGS__; }
#else
#define VS_CV(...) [] {}
#endif

void meanStdDev8u() {
  double m, s;
  vnxiMean_StdDev_8u_C1R(p.a.data(), kWidth, kRoi, &m, &s);
  sink = m + s;
}
void meanStdDev8uMasked() {
  double m, s;
  vnxiMean_StdDev_8u_C1MR(p.a.data(), kWidth, p.mask.data(), kWidth, kRoi, &m, &s);
  sink = m + s;
}
void meanStdDev32f() {
  double m, s;
  vnxiMean_StdDev_32f_C1R(p.fa.data(), 4 * kWidth, kRoi, &m, &s);
  sink = m + s;
}
void minMax8u(bool masked) {
  float lo, hi;
  vnxiPoint a, b;
  if (masked)
    vnxiMinMaxIndx_8u_C1MR(p.a.data(), kWidth, p.mask.data(), kWidth, kRoi, &lo, &hi, &a, &b);
  else
    vnxiMinMaxIndx_8u_C1R(p.a.data(), kWidth, kRoi, &lo, &hi, &a, &b);
  sink = lo + hi + a.x + b.y;
}

const bool registered[] = {
    registerPair("MeanStdDev_8u", kPixels, meanStdDev8u, VS_CV(cv::Scalar m, s; cv::meanStdDev(m8(p.a), m, s);
                                                                sink = m[0] + s[0])),
    registerPair("MeanStdDev_8u_masked", 2 * kPixels, meanStdDev8uMasked,
                 VS_CV(cv::Scalar m, s; cv::meanStdDev(m8(p.a), m, s, m8(p.mask)); sink = m[0] + s[0])),
    registerPair("MeanStdDev_32f", 4 * kPixels, meanStdDev32f, VS_CV(cv::Scalar m, s; cv::meanStdDev(m32(p.fa), m, s);
                                                                      sink = m[0] + s[0])),
    registerPair("MinMaxIndx_8u", kPixels, [] { minMax8u(false); },
                 VS_CV(double lo, hi; cv::Point a, b; cv::minMaxLoc(m8(p.a), &lo, &hi, &a, &b); sink = lo + hi + a.x)),
    registerPair("MinMaxIndx_8u_masked", 2 * kPixels, [] { minMax8u(true); },
                 VS_CV(double lo, hi; cv::Point a, b; cv::minMaxLoc(m8(p.a), &lo, &hi, &a, &b, m8(p.mask));
                       sink = lo + hi + a.x)),
    registerPair("Norm_Inf_8u_masked", 2 * kPixels,
                 [] { vnxiNorm_Inf_8u_C1MR(p.a.data(), kWidth, p.mask.data(), kWidth, kRoi, &sink); },
                 VS_CV(sink = cv::norm(m8(p.a), cv::NORM_INF, m8(p.mask)))),
    registerPair("Norm_L1_8u_masked", 2 * kPixels,
                 [] { vnxiNorm_L1_8u_C1MR(p.a.data(), kWidth, p.mask.data(), kWidth, kRoi, &sink); },
                 VS_CV(sink = cv::norm(m8(p.a), cv::NORM_L1, m8(p.mask)))),
    registerPair("Norm_L2_8u_masked", 2 * kPixels,
                 [] { vnxiNorm_L2_8u_C1MR(p.a.data(), kWidth, p.mask.data(), kWidth, kRoi, &sink); },
                 VS_CV(sink = cv::norm(m8(p.a), cv::NORM_L2, m8(p.mask)))),
    registerPair("Norm_L2_32f_masked", 5 * kPixels,
                 [] { vnxiNorm_L2_32f_C1MR(p.fa.data(), 4 * kWidth, p.mask.data(), kWidth, kRoi, &sink); },
                 VS_CV(sink = cv::norm(m32(p.fa), cv::NORM_L2, m8(p.mask)))),
    registerPair("NormDiff_Inf_8u_masked", 3 * kPixels,
                 [] {
                   vnxiNormDiff_Inf_8u_C1MR(p.a.data(), kWidth, p.b.data(), kWidth, p.mask.data(), kWidth, kRoi, &sink);
                 },
                 VS_CV(sink = cv::norm(m8(p.a), m8(p.b), cv::NORM_INF, m8(p.mask)))),
    registerPair("NormDiff_L1_8u_masked", 3 * kPixels,
                 [] {
                   vnxiNormDiff_L1_8u_C1MR(p.a.data(), kWidth, p.b.data(), kWidth, p.mask.data(), kWidth, kRoi, &sink);
                 },
                 VS_CV(sink = cv::norm(m8(p.a), m8(p.b), cv::NORM_L1, m8(p.mask)))),
    registerPair("NormDiff_L2_8u_masked", 3 * kPixels,
                 [] {
                   vnxiNormDiff_L2_8u_C1MR(p.a.data(), kWidth, p.b.data(), kWidth, p.mask.data(), kWidth, kRoi, &sink);
                 },
                 VS_CV(sink = cv::norm(m8(p.a), m8(p.b), cv::NORM_L2, m8(p.mask)))),
    registerPair("NormDiff_L2_32f_masked", 9 * kPixels,
                 [] {
                   vnxiNormDiff_L2_32f_C1MR(p.fa.data(), 4 * kWidth, p.fb.data(), 4 * kWidth, p.mask.data(), kWidth,
                                            kRoi, &sink);
                 },
                 VS_CV(sink = cv::norm(m32(p.fa), m32(p.fb), cv::NORM_L2, m8(p.mask)))),
};

}  // namespace
