// The border ring: indices under the five rules (lines longer than 2^30 included),
// and ring rows against a plain reference on guard-page images.
#include <cstdint>
#include <vector>

#include "alloc.h"
#include "border.h"
#include "support.h"

namespace {

// Plain reference: the source sample standing for (x, y), or the border value.
template <class T>
T referenceAt(const vt::Image<T>& img, std::int64_t x, std::int64_t y, int c, int rule, T value) {
  auto map = [&](std::int64_t i, std::int64_t n) -> std::int64_t {
    if (i >= 0 && i < n) return i;
    if (rule == vnxBorderConst) return -1;
    if (rule == vnxBorderReplicate) return i < 0 ? 0 : n - 1;
    // walk the reflection or period one step at a time
    while (i < 0 || i >= n) {
      if (rule == vnxBorderWrap) i = i < 0 ? i + n : i - n;
      else if (rule == vnxBorderMirror) i = n == 1 ? 0 : (i < 0 ? -i : 2 * (n - 1) - i);
      else i = i < 0 ? -1 - i : 2 * n - 1 - i;
    }
    return i;
  };
  const std::int64_t sx = map(x, img.width()), sy = map(y, img.height());
  if (sx < 0 || sy < 0) return value;
  return img.at(static_cast<int>(sx), static_cast<int>(sy), c);
}

}  // namespace

TEST(BorderIndex, RulesByTable) {
  const struct { std::int64_t i, n; ownBorder rule; std::int64_t want; } rows[] = {
      {-1, 5, ownBorder::Const, -1},   {5, 5, ownBorder::Const, -1},  {-3, 5, ownBorder::Replicate, 0}, {9, 5, ownBorder::Replicate, 4},
      {-1, 5, ownBorder::Wrap, 4},     {-6, 5, ownBorder::Wrap, 4},   {7, 5, ownBorder::Wrap, 2},       {-1, 5, ownBorder::Mirror, 1},
      {5, 5, ownBorder::Mirror, 3},    {-9, 5, ownBorder::Mirror, 1}, {-2, 1, ownBorder::Mirror, 0},    {-1, 5, ownBorder::MirrorR, 0},
      {5, 5, ownBorder::MirrorR, 4},   {-7, 3, ownBorder::MirrorR, 0}, {3, 5, ownBorder::Mirror, 3},
      // lines longer than 2^30: 2n - 2 and 2n do not fit an int
      {-2, (std::int64_t{1} << 30) + 8, ownBorder::Mirror, 2},
      {(std::int64_t{1} << 30) + 9, (std::int64_t{1} << 30) + 8, ownBorder::Mirror, (std::int64_t{1} << 30) + 5},
      {(std::int64_t{1} << 31) + 2, (std::int64_t{1} << 31), ownBorder::MirrorR, (std::int64_t{1} << 31) - 3},
      {-3, (std::int64_t{1} << 31), ownBorder::Wrap, (std::int64_t{1} << 31) - 3},
  };
  for (const auto& r : rows) EXPECT_EQ(ownBorderIndex(r.i, r.n, r.rule), r.want) << r.i << " of " << r.n;
}

// Every ring row, for every rule, equals the reference, for pads wider than the
// image; the image ends before a protected page, so a read past it faults.
TEST(BorderRing, RowsMatchReferenceUnderEveryRule) {
  std::mt19937 rng(7);
  for (int rule = vnxBorderConst; rule <= vnxBorderMirrorR; ++rule)
    for (vnxiSize roi : {vnxiSize{1, 1}, vnxiSize{3, 2}, vnxiSize{17, 9}})
      for (int channels : {1, 3}) {
        vt::Image<vnx8u> img(roi.width, roi.height, channels, 5);
        vt::fillRandom(img, rng);
        const ownRingShape shape{roi.width, channels, 4, 6, 3, 5, 1, 16};
        ownBlock block(ownMalloc_8u(static_cast<int>(ownBorderRing<vnx8u>::bytes(shape))));
        ASSERT_TRUE(block);
        ownBorderRing<vnx8u> ring(img.ptr(), img.step(), roi, shape, static_cast<ownBorder>(rule), 77,
                                  block.get());
        for (std::int64_t y = -shape.reachUp; y < roi.height + shape.reachDown; ++y) {
          const vnx8u* r = ring.row(y);
          for (std::int64_t x = -shape.padLeft; x < roi.width + shape.padRight; ++x)
            for (int c = 0; c < channels; ++c)
              ASSERT_EQ(r[x * channels + c], referenceAt<vnx8u>(img, x, y, c, rule, 77))
                  << "rule " << rule << " x " << x << " y " << y;
          // the slack after the last synthesised column reads as zeros
          const vnx8u* end = r + (roi.width + shape.padRight) * channels;
          for (int i = 0; i < shape.slackElems; ++i) ASSERT_EQ(end[i], 0);
        }
        EXPECT_TRUE(img.canaryIntact());
      }
}
