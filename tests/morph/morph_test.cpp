// Dilation, erosion and the rectangular filters against the reference, on guard-page
// images, every path, form, size and thread count; classification, state sizes and
// the check orders by table.
#include <random>

#include "morph/vncvmorph.h"
#include "morph_reference.h"

namespace {

using mt::Form;
using mt::Mask;

const std::vector<vnxiSize>& sizes() {
  static const std::vector<vnxiSize> s = {{1, 1}, {1, 19}, {19, 1}, {16, 16}, {17, 15}, {33, 7}, {66, 4}, {70, 5}};
  return s;
}

int kindOf(const vnxiMorphState* s) { return reinterpret_cast<const ownMorphState*>(s)->kind; }

// Runs dilation and erosion of one form with one mask on one image, at each thread
// count, and compares with the reference.
template <class T>
void checkApply(const Form<T>& f, const Mask& m, vnxiSize roi, vt::Guard g, std::mt19937& rng,
                const std::vector<int>& threads = {1}) {
  vnxiMorphState* st = nullptr;
  ASSERT_EQ(f.initAlloc(roi.width, m.cells.data(), m.size(), m.anchor, &st), vnxStatusOk);
  for (bool isMax : {true, false}) {
    mt::Images<T> im(roi.width, roi.height, f.c, g, rng);
    const auto expect = mt::reference(im.pixels, roi.width, roi.height, f.c, m, isMax);
    for (int n : threads) {
      vt::Threads t(n);
      im.dst.fill([](int, int, int) { return T(3); });
      ASSERT_EQ((isMax ? f.dilate : f.erode)(im.src.ptr(), im.src.step(), im.dst.ptr(), im.dst.step(), roi,
                                              vnxBorderReplicate, st),
                vnxStatusOk);
      SCOPED_TRACE(testing::Message() << f.name << " " << m.name << (isMax ? " dilate " : " erode ") << roi.width
                                      << "x" << roi.height << " kind " << kindOf(st) << " threads " << n);
      VT_EXPECT_SAME_SAMPLES(expect, im.dst.pixels());
      EXPECT_TRUE(im.dst.canaryIntact());
    }
  }
  vnxiMorphologyFree(st);
}

template <class T>
void allPaths(const std::vector<Form<T>>& forms) {
  std::mt19937 rng(7);
  for (const auto& f : forms)
    for (const Mask& m : mt::masks())
      for (vnxiSize roi : sizes())
        for (vt::Guard g : {vt::Guard::After, vt::Guard::Before}) checkApply(f, m, roi, g, rng);
}

TEST(MorphApply, EveryPathMatchesReference8u) { allPaths(mt::forms8u()); }
TEST(MorphApply, EveryPathMatchesReference32f) { allPaths(mt::forms32f()); }

// The parallel bands give the serial result for every thread count (7 bands of 16384
// pixels and 16 rows fit).
TEST(MorphApply, BandsGiveTheSerialResult) {
  std::mt19937 rng(11);
  for (const Mask& m : {mt::rect(3, 3, {1, 1}), mt::rect(5, 5, {1, 3}), mt::rect(5, 4, {0, 3}), mt::masks()[7],
                        mt::masks()[8], mt::ellipse(7)}) {
    checkApply(mt::forms8u()[0], m, {301, 390}, vt::Guard::After, rng, vt::threadCounts());
    checkApply(mt::forms8u()[2], m, {301, 390}, vt::Guard::Before, rng, vt::threadCounts());
    checkApply(mt::forms32f()[1], m, {301, 390}, vt::Guard::After, rng, vt::threadCounts());
  }
}

// Rectangular filters: any rectangle and anchor (inside, on the edge, far outside).
template <class T>
void filtersMatchReference(const Form<T>& f) {
  std::mt19937 rng(5);
  const vnxiSize masks[] = {{1, 1}, {3, 3}, {2, 5}, {9, 1}, {17, 3}, {40, 2}};
  const vnxiPoint anchors[] = {{0, 0}, {1, 1}, {-3, 2}, {12, -4}, {-100, 50}};
  for (vnxiSize roi : {vnxiSize{1, 1}, vnxiSize{23, 9}, vnxiSize{5, 31}, vnxiSize{70, 6}})
    for (vnxiSize ms : masks)
      for (vnxiPoint a : anchors)
        for (bool isMax : {true, false}) {
          int bytes = 0;
          ASSERT_EQ((isMax ? f.maxSize : f.minSize)(roi.width, ms, &bytes), vnxStatusOk);
          vt::Span<vnx8u> buf(bytes);
          mt::Images<T> im(roi.width, roi.height, f.c, vt::Guard::Before, rng);
          const auto e = mt::reference(im.pixels, roi.width, roi.height, f.c, ms.width, ms.height, a,
                                       [](int, int) { return true; }, isMax);
          ASSERT_EQ((isMax ? f.filterMax : f.filterMin)(im.src.ptr(), im.src.step(), im.dst.ptr(), im.dst.step(),
                                                         roi, ms, a, buf.data()),
                    vnxStatusOk);
          SCOPED_TRACE(testing::Message() << f.name << " mask " << ms.width << "x" << ms.height << " anchor " << a.x);
          VT_EXPECT_SAME_SAMPLES(e, im.dst.pixels());
          EXPECT_TRUE(im.dst.canaryIntact());
        }
}
TEST(MorphFilter, MaxAndMinMatchReferenceForAnyAnchor) {
  for (const auto& f : mt::forms8u()) filtersMatchReference(f);
  for (const auto& f : mt::forms32f()) filtersMatchReference(f);
}

// The sliding window (direct and doubling) against the folded row, every width and offset.
TEST(MorphKernel, WindowRowMatchesTemplate) {
  for (int k : {1, 2, 3, 8, 9, 16, 31}) {
    vt::forKernelShapes(16, [&](int w, int off, vt::Guard g) {
      if (off % 4) return;
      const std::size_t n = std::size_t(w) + k - 1;
      vt::Span<vnx8u> src(n, off, g);
      std::mt19937 rng(w * 31 + k);
      for (std::size_t i = 0; i < n; ++i) src[i] = vnx8u(rng());
      std::vector<vnx8u> out(w + 1, 9), temp(n + 1), expect(w + 1, 9);
      std::vector<const vnx8u*> ptrs(std::max(k, 2));
      for (int x = 0; x < w; ++x) expect[x] = *std::max_element(src.data() + x, src.data() + x + k);
      ownWindowRow<ownMorphOp::Max>(src.data(), 1, k, out.data(), w, temp.data(), ptrs.data(), ownMorphStore::Final);
      ASSERT_EQ(expect, out) << "k " << k << " width " << w;
    });
  }
}

// Classification and sizes, 8u C1 and 32f C1 at roiWidth 100 (M = area rounded to 16).
TEST(MorphState, KindsAndSizesFollowTheTable) {
  struct Row { Mask m; int kind8u, kind32f; };
  const auto ms = mt::masks();
  const Row rows[] = {
      {mt::rect(3, 3, {1, 1}), 0, 1},   // area 9 < 13: general for 8u
      {mt::rect(4, 4, {1, 1}), 1, 1},   // area 16
      {ms[7], 0, 2},                    // cross 5x5: area 25 < 35
      {mt::fromRows("cross7", {"...#...", "...#...", "...#...", "#######", "...#...", "...#...", "...#..."}, {3, 3}), 2, 2},
      {ms[8], 0, 0},                    // ring: two runs in a row
      {ms[11], 3, 3},                   // empty
      {ms[12], 1, 1},                   // a rectangle with the anchor outside it (area 35)
      {mt::fromRows("runsAnchorOff", {"#######", "..###..", "#######", ".......", ".......", "......."}, {0, 0}), 0, 0},
      {mt::fromRows("sameLenTwoOffsets", {"###....", ".###...", "#######", "......."}, {2, 1}), 0, 0},
      {mt::rect(3, 300, {1, 100}), 0, 0},  // 256 rows or more: general
  };
  for (const Row& r : rows) {
    for (bool f32 : {false, true}) {
      vnxiMorphState* st = nullptr;
      auto ia = f32 ? vnxiMorphologyInitAlloc_32f_C1R : vnxiMorphologyInitAlloc_8u_C1R;
      ASSERT_EQ(ia(100, r.m.cells.data(), r.m.size(), r.m.anchor, &st), vnxStatusOk);
      const auto* s = reinterpret_cast<const ownMorphState*>(st);
      const int want = f32 ? r.kind32f : r.kind8u;
      EXPECT_EQ(s->kind, want) << r.m.name << (f32 ? " 32f" : " 8u");
      const std::int64_t area = std::int64_t(r.m.w) * r.m.h, m = (area + 15) / 16 * 16;
      const int e = f32 ? 4 : 1;
      if (s->kind == 3) { EXPECT_EQ(s->totalBytes, 80 + m); }
      if (s->kind == 0) {
        const std::int64_t w = ((100 + r.m.w) * e + 15) / 16 * 16;
        EXPECT_EQ(s->workBytes, w);
        EXPECT_EQ(s->totalBytes, 96 + m + area * (f32 ? 32 : 16) + std::max<std::int64_t>(e * r.m.h, 2 * r.m.h * w));
      }
      if (s->kind == 1 || s->kind == 2) {
        const auto* runs = reinterpret_cast<const ownMorphRuns*>(reinterpret_cast<const char*>(s) + s->runOffset);
        EXPECT_EQ(s->totalBytes, 128 + m + 8 * (runs->rows + runs->distinct) + s->workBytes);
      }
      vnxiMorphologyFree(st);
    }
  }
}

TEST(MorphState, CreationChecksInOrder) {
  const vnx8u mask[6] = {1, 1, 1, 1, 1, 1};
  vnxiMorphState* st = reinterpret_cast<vnxiMorphState*>(0x1);
  int size = -1;
  struct Row { const vnx8u* m; int roiW; vnxiSize ms; vnxiPoint a; bool nullOut; vnxStatus want; };
  const Row rows[] = {
      {nullptr, 0, {0, 0}, {-1, -1}, true, vnxStatusNullPtr},  // mask null first
      {mask, 0, {0, 0}, {-1, -1}, true, vnxStatusBadSize},     // then width
      {mask, 5, {0, 2}, {-1, -1}, true, vnxStatusBadSize},     // mask width
      {mask, 5, {3, 0}, {-1, -1}, true, vnxStatusBadSize},     // mask height
      {mask, 5, {3, 2}, {3, 0}, true, vnxStatusBadAnchor},     // anchor before the output pointer
      {mask, 5, {3, 2}, {0, -1}, false, vnxStatusBadAnchor},
      {mask, 5, {3, 2}, {2, 1}, true, vnxStatusNullPtr},
  };
  for (const Row& r : rows) {
    vnxiMorphState** pp = r.nullOut ? nullptr : &st;
    EXPECT_EQ(vnxiMorphologyInitAlloc_8u_C1R(r.roiW, r.m, r.ms, r.a, pp), r.want);
    EXPECT_EQ(vnxiMorphologyInit_32f_C3R(r.roiW, r.m, r.ms, r.a, r.nullOut ? nullptr : reinterpret_cast<vnxiMorphState*>(&size)), r.want);
    EXPECT_EQ(st, reinterpret_cast<vnxiMorphState*>(0x1));
  }
  // The size query has no anchor to check.
  EXPECT_EQ(vnxiMorphologyGetSize_8u_C4R(5, mask, {3, 2}, nullptr), vnxStatusNullPtr);
  EXPECT_EQ(vnxiMorphologyGetSize_8u_C4R(0, nullptr, {3, 2}, &size), vnxStatusNullPtr);
  EXPECT_EQ(vnxiMorphologyGetSize_8u_C4R(0, mask, {3, 2}, nullptr), vnxStatusBadSize);
  EXPECT_EQ(vnxiMorphologyGetSize_8u_C1R(1 << 30, mask, {3, 2}, &size), vnxStatusBadSize);  // beyond INT_MAX
  EXPECT_EQ(size, -1);
  EXPECT_EQ(vnxiMorphologyFree(nullptr), vnxStatusNullPtr);
}

TEST(MorphApply, ChecksInOrderAndNothingWritten) {
  const vnx8u mask[9] = {1, 1, 1, 1, 1, 1, 1, 1, 1};
  vnxiMorphState* st = nullptr;
  ASSERT_EQ(vnxiMorphologyInitAlloc_32f_C1R(8, mask, {3, 3}, {1, 1}, &st), vnxStatusOk);
  vt::Image<vnx32f> src(9, 4), dst(9, 4, 1, 8);
  dst.fill([](int, int, int) { return 5.0f; });
  const vnx32f* s = src.ptr();
  vnx32f* d = dst.ptr();
  struct Row { const vnx32f* s; int ss; vnx32f* d; int ds; vnxiSize roi; int border; vnxiMorphState* st;
               vnxStatus want; };
  const Row rows[] = {
      {nullptr, 0, d, 0, {0, 0}, 7, st, vnxStatusNullPtr},
      {s, 32, d, 32, {8, 4}, 1, nullptr, vnxStatusNullPtr},
      {s, 0, d, 0, {0, 4}, 7, st, vnxStatusBadSize},
      {s, 31, d, 30, {8, 4}, 7, st, vnxStatusBadStep},
      {s, 34, d, 30, {8, 4}, 7, st, vnxStatusBadStep},  // row bytes of both before multiples
      {s, 34, d, 32, {8, 4}, 7, st, vnxStatusStepNotMultiple},
      {s, 32, d, 32, {8, 4}, 0, st, vnxStatusBadArg},
      {s, 36, d, 36, {9, 4}, 2, st, vnxStatusBadArg},  // border before the width limit
      {s, 36, d, 36, {9, 4}, 1, st, vnxStatusBadSize},
  };
  for (const Row& r : rows) {
    EXPECT_EQ(vnxiDilateBorderReplicate_32f_C1R(r.s, r.ss, r.d, r.ds, r.roi, r.border, r.st), r.want);
    EXPECT_EQ(vnxiErodeBorderReplicate_32f_C1R(r.s, r.ss, r.d, r.ds, r.roi, r.border, r.st), r.want);
  }
  vnxiMorphologyFree(st);
  // Filters: the mask size after the steps.
  vnx8u buf[4096];
  EXPECT_EQ(vnxiFilterMaxBorderReplicate_32f_C1R(s, 36, d, 36, {9, 4}, {0, 3}, {0, 0}, nullptr), vnxStatusNullPtr);
  EXPECT_EQ(vnxiFilterMaxBorderReplicate_32f_C1R(s, 34, d, 36, {9, 4}, {0, 3}, {0, 0}, buf), vnxStatusBadStep);
  EXPECT_EQ(vnxiFilterMinBorderReplicate_32f_C1R(s, 38, d, 36, {8, 4}, {0, 3}, {0, 0}, buf), vnxStatusStepNotMultiple);
  EXPECT_EQ(vnxiFilterMinBorderReplicate_32f_C1R(s, 36, d, 36, {9, 4}, {2, 0}, {0, 0}, buf), vnxStatusBadSize);
  int bytes = -1;
  EXPECT_EQ(vnxiFilterMaxGetBufferSize_8u_C1R(0, {3, 3}, nullptr), vnxStatusNullPtr);  // pointer before size
  EXPECT_EQ(vnxiFilterMinGetBufferSize_8u_C1R(4, {3, 0}, &bytes), vnxStatusBadSize);
  EXPECT_EQ(vnxiFilterMinGetBufferSize_32f_C4R(1 << 28, {1, 9}, &bytes), vnxStatusBadSize);
  EXPECT_EQ(bytes, -1);
  for (float v : dst.pixels()) ASSERT_EQ(v, 5.0f);
}

// A failed scratch allocation for a further band returns -9 with nothing written.
TEST(MorphApply, FailedBandScratchWritesNothing) {
  const Mask m = mt::masks()[8];  // a ring: the general path with scratch rows
  vnxiMorphState* st = nullptr;
  ASSERT_EQ(vnxiMorphologyInitAlloc_8u_C1R(300, m.cells.data(), m.size(), m.anchor, &st), vnxStatusOk);
  vt::Image<vnx8u> src(300, 300), dst(300, 300);
  dst.fill([](int, int, int) { return 9; });
  vt::Threads t(4);
  ownSetHeap([](std::size_t) -> void* { return nullptr; }, nullptr);
  const vnxStatus s = vnxiDilateBorderReplicate_8u_C1R(src.ptr(), src.step(), dst.ptr(), dst.step(), {300, 300}, 1, st);
  ownSetHeap(nullptr, nullptr);
  EXPECT_EQ(s, vnxStatusNoMemory);
  for (vnx8u v : dst.pixels()) ASSERT_EQ(v, 9);
  vnxiMorphologyFree(st);
}

}  // namespace
