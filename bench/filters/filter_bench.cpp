// Fixed-kernel filters and the pipeline passes beside cv::Sobel, cv::Scharr,
// cv::Laplacian, cv::boxFilter and cv::sepFilter2D, 1920x1080, replicated border.
#include "../bench_common.h"

namespace {

using namespace vb;

constexpr std::int64_t kPixels = std::int64_t(kWidth) * kHeight;
const vnxiSize kRoi{kWidth, kHeight};

struct Planes {
  std::vector<vnx8u> a = randomPlane<vnx8u>(kWidth, kHeight, 1), d8 = std::vector<vnx8u>(kPixels);
  std::vector<vnx16s> d16 = std::vector<vnx16s>(kPixels), mid = std::vector<vnx16s>(kPixels + 4 * kWidth);
  std::vector<vnx32f> fa = randomPlane<vnx32f>(kWidth, kHeight, 2), d32 = std::vector<vnx32f>(kPixels);
  std::vector<vnx8u> buf = std::vector<vnx8u>(64 << 20);
} f;

#ifdef VNX_HAVE_OPENCV
cv::Mat m8(std::vector<vnx8u>& v) { return cv::Mat(kHeight, kWidth, CV_8UC1, v.data()); }
cv::Mat m16(std::vector<vnx16s>& v) { return cv::Mat(kHeight, kWidth, CV_16SC1, v.data()); }
cv::Mat m32(std::vector<vnx32f>& v) { return cv::Mat(kHeight, kWidth, CV_32FC1, v.data()); }
#define VB_CV(expr) [] { expr; }
#else
#define VB_CV(expr) [] {}
#endif
constexpr int R = vnxBorderReplicate;

// The pipeline passes by hand: rows (with replicated top and bottom rows) then columns.
void pipeline3x3() {
  static const vnx16s k[3] = {1, 2, 1};
  std::vector<vnx16s*> rows(kHeight + 2);
  for (int i = 0; i < kHeight; ++i) rows[i + 1] = f.mid.data() + std::size_t(i + 1) * kWidth;
  vnxiFilterRowBorderPipeline_8u16s_C1R(f.a.data(), kWidth, rows.data() + 1, kRoi, k, 3, 1, R, 0, 1, f.buf.data());
  rows[0] = rows[1];
  rows[kHeight + 1] = rows[kHeight];
  vnxiFilterColumnPipeline_16s_C1R(rows.data(), f.d16.data(), 2 * kWidth, kRoi, k, 3, f.buf.data());
}

const bool registered[] = {
    registerPair(
        "SobelVert3x3_8u16s", 3 * kPixels,
        [] { vnxiFilterSobelVertBorder_8u16s_C1R(f.a.data(), kWidth, f.d16.data(), 2 * kWidth, kRoi, 33, R, 0, f.buf.data()); },
        VB_CV(cv::Mat d = m16(f.d16); cv::Sobel(m8(f.a), d, CV_16S, 1, 0, 3, 1, 0, cv::BORDER_REPLICATE))),
    registerPair(
        "SobelHoriz3x3_8u16s", 3 * kPixels,
        [] { vnxiFilterSobelHorizBorder_8u16s_C1R(f.a.data(), kWidth, f.d16.data(), 2 * kWidth, kRoi, 33, R, 0, f.buf.data()); },
        VB_CV(cv::Mat d = m16(f.d16); cv::Sobel(m8(f.a), d, CV_16S, 0, 1, 3, -1, 0, cv::BORDER_REPLICATE))),
    registerPair(
        "SobelVert5x5_8u16s", 3 * kPixels,
        [] { vnxiFilterSobelVertBorder_8u16s_C1R(f.a.data(), kWidth, f.d16.data(), 2 * kWidth, kRoi, 55, R, 0, f.buf.data()); },
        VB_CV(cv::Mat d = m16(f.d16); cv::Sobel(m8(f.a), d, CV_16S, 1, 0, 5, 1, 0, cv::BORDER_REPLICATE))),
    registerPair(
        "SobelVert3x3_32f", 8 * kPixels,
        [] { vnxiFilterSobelVertBorder_32f_C1R(f.fa.data(), 4 * kWidth, f.d32.data(), 4 * kWidth, kRoi, 33, R, 0, f.buf.data()); },
        VB_CV(cv::Mat d = m32(f.d32); cv::Sobel(m32(f.fa), d, CV_32F, 1, 0, 3, 1, 0, cv::BORDER_REPLICATE))),
    registerPair(
        "SobelVert5x5_32f", 8 * kPixels,
        [] { vnxiFilterSobelVertBorder_32f_C1R(f.fa.data(), 4 * kWidth, f.d32.data(), 4 * kWidth, kRoi, 55, R, 0, f.buf.data()); },
        VB_CV(cv::Mat d = m32(f.d32); cv::Sobel(m32(f.fa), d, CV_32F, 1, 0, 5, 1, 0, cv::BORDER_REPLICATE))),
    registerPair(
        "ScharrVert_8u16s", 3 * kPixels,
        [] { vnxiFilterScharrVertBorder_8u16s_C1R(f.a.data(), kWidth, f.d16.data(), 2 * kWidth, kRoi, R, 0, f.buf.data()); },
        VB_CV(cv::Mat d = m16(f.d16); cv::Scharr(m8(f.a), d, CV_16S, 1, 0, 1, 0, cv::BORDER_REPLICATE))),
    registerPair(
        "ScharrVert_32f", 8 * kPixels,
        [] { vnxiFilterScharrVertBorder_32f_C1R(f.fa.data(), 4 * kWidth, f.d32.data(), 4 * kWidth, kRoi, R, 0, f.buf.data()); },
        VB_CV(cv::Mat d = m32(f.d32); cv::Scharr(m32(f.fa), d, CV_32F, 1, 0, 1, 0, cv::BORDER_REPLICATE))),
    registerPair(
        "Laplacian3x3_8u16s", 3 * kPixels,
        [] { vnxiFilterLaplacianBorder_8u16s_C1R(f.a.data(), kWidth, f.d16.data(), 2 * kWidth, kRoi, 33, R, 0, f.buf.data()); },
        VB_CV(cv::Mat d = m16(f.d16); cv::Laplacian(m8(f.a), d, CV_16S, 3, 1, 0, cv::BORDER_REPLICATE))),
    registerPair(
        "Laplacian5x5_8u16s", 3 * kPixels,
        [] { vnxiFilterLaplacianBorder_8u16s_C1R(f.a.data(), kWidth, f.d16.data(), 2 * kWidth, kRoi, 55, R, 0, f.buf.data()); },
        VB_CV(cv::Mat d = m16(f.d16); cv::Laplacian(m8(f.a), d, CV_16S, 5, 1, 0, cv::BORDER_REPLICATE))),
    registerPair(
        "Lowpass3x3_8u", 2 * kPixels,
        [] { vnxiFilterLowpassBorder_8u_C1R(f.a.data(), kWidth, f.d8.data(), kWidth, kRoi, 33, R, 0, f.buf.data()); },
        VB_CV(cv::Mat d = m8(f.d8); cv::boxFilter(m8(f.a), d, -1, cv::Size(3, 3), cv::Point(-1, -1), true, cv::BORDER_REPLICATE))),
    registerPair(
        "Lowpass5x5_8u", 2 * kPixels,
        [] { vnxiFilterLowpassBorder_8u_C1R(f.a.data(), kWidth, f.d8.data(), kWidth, kRoi, 55, R, 0, f.buf.data()); },
        VB_CV(cv::Mat d = m8(f.d8); cv::boxFilter(m8(f.a), d, -1, cv::Size(5, 5), cv::Point(-1, -1), true, cv::BORDER_REPLICATE))),
    registerPair(
        "Lowpass5x5_32f", 8 * kPixels,
        [] { vnxiFilterLowpassBorder_32f_C1R(f.fa.data(), 4 * kWidth, f.d32.data(), 4 * kWidth, kRoi, 55, R, 0, f.buf.data()); },
        VB_CV(cv::Mat d = m32(f.d32); cv::boxFilter(m32(f.fa), d, -1, cv::Size(5, 5), cv::Point(-1, -1), true, cv::BORDER_REPLICATE))),
    registerPair(
        "RowColumnPipeline3x3_8u16s", 3 * kPixels, pipeline3x3,
        VB_CV(cv::Mat d = m16(f.d16); cv::Mat k = (cv::Mat_<float>(1, 3) << 1, 2, 1);
              cv::sepFilter2D(m8(f.a), d, CV_16S, k, k, cv::Point(-1, -1), 0, cv::BORDER_REPLICATE))),
};

}  // namespace
