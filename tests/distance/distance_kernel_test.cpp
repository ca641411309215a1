// The vector bodies of the chamfer row stages against their templates, bit for bit,
// at every width up to three vectors + 3 and a large one, every byte offset, with
// the row ending before or starting after a protected page.
#include <cfloat>

#include "core/simd.h"
#include "distance/vncvdistrans.h"
#include "support.h"

namespace {

template <class D>
D randomDistance(std::mt19937& rng) {
  const D far = ownDistanceFar<D>();
  switch (rng() % 4) {
    case 0: return D(0);
    case 1: return far;
    default:
      if constexpr (std::is_same<D, vnx32f>::value) return D((rng() % 100000) / 7.0f);
      return D(rng() % (std::uint32_t(far) + 1));
  }
}

template <class D>
std::vector<ownChamfer<D>> weightSets() {
  const D far = ownDistanceFar<D>();
  std::vector<ownChamfer<D>> w;
  for (int r = 1; r <= 2; ++r)
    for (bool ortho : {false, true}) {
      if (std::is_same<D, vnx32f>::value) {
        w.push_back({far, D(0.955f), D(1.3693f), D(2.1969f), r, ortho});
        w.push_back({far, D(3e38f), D(1e38f), D(FLT_MAX), r, ortho});
      } else {
        w.push_back({far, D(2), D(3), D(5), r, ortho});
        w.push_back({far, far, D(1), D(far / 2 + 1), r, ortho});
      }
    }
  return w;
}

template <class D>
void checkRowKernels(int vectorElems) {
  std::mt19937 rng(5);
  const auto sets = weightSets<D>();
  vt::forKernelShapes(vectorElems, [&](int n, int off, vt::Guard g) {
    vt::Span<vnx8u> src(std::size_t(n), off, g);
    vt::Span<D> near(std::size_t(n), off, g), far2(std::size_t(n), off, g), got(std::size_t(n), off, g);
    std::vector<D> want(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i) {
      src[i] = rng() % 3 ? vnx8u(1 + rng() % 255) : 0;
      near[i] = randomDistance<D>(rng), far2[i] = randomDistance<D>(rng);
    }
    for (const ownChamfer<D>& w : sets)
      for (int form = 0; form < 4; ++form) {  // forward, forward without rows, backward, backward with one row
        const bool forward = form < 2;
        const ownDistNeighbours<D> nb{form == 1 ? nullptr : near.data(), form & 1 ? nullptr : far2.data()};
        for (int i = 0; i < n; ++i) want[i] = got[i] = randomDistance<D>(rng);
        ownDistVerticalRow(forward ? src.data() : nullptr, nb, want.data(), 0, n, n, w);
        ownDistVerticalRow_sse2(forward ? src.data() : nullptr, nb, got.data(), n, w);
        if (forward) {
          ownDistScanForwardRow(want.data(), n, w.a);
          ownDistScanForwardRow_sse2(got.data(), n, w.a);
        } else {
          ownDistScanBackwardRow(want.data(), n, w.a);
          ownDistScanBackwardRow_sse2(got.data(), n, w.a);
        }
        for (int i = 0; i < n; ++i)
          if (std::memcmp(&want[i], &got[i], sizeof(D)) != 0) {
            ADD_FAILURE() << "width " << n << " offset " << off << " form " << form << " radius " << w.radius
                          << " at " << i << ": " << +want[i] << " vs " << +got[i];
            return;
          }
      }
  });
}

TEST(DistanceKernels, EightBitRowStagesMatchTheirTemplates) { checkRowKernels<vnx8u>(16); }
TEST(DistanceKernels, SixteenBitRowStagesMatchTheirTemplates) { checkRowKernels<vnx16u>(8); }
TEST(DistanceKernels, FloatRowStagesMatchTheirTemplates) { checkRowKernels<vnx32f>(4); }

// The float scan runs four stretches and joins them: long rows where a carry runs
// across every join (a single zero at one end) give the chained result.
TEST(DistanceKernels, FloatStretchesJoinLikeOneChain) {
  for (int n : {64, 65, 67, 1000, 4099})
    for (int zeroAt : {0, n - 1, n / 2}) {
      std::vector<float> want(std::size_t(n), FLT_MAX), got;
      want[zeroAt] = 0;
      got = want;
      ownDistScanForwardRow(want.data(), n, 0.955f);
      ownDistScanBackwardRow(want.data(), n, 0.955f);
      ownDistScanForwardRow_sse2(got.data(), n, 0.955f);
      ownDistScanBackwardRow_sse2(got.data(), n, 0.955f);
      VT_EXPECT_SAME_SAMPLES(want, got);
    }
}

}  // namespace
