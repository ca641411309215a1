// Flood fills against a breadth-first region written from the membership rules, on
// guard-page images and work buffers of exactly the reported size that end right
// before a protected page; the early return, the record, the check order.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <deque>
#include <functional>
#include <string>
#include <tuple>

#include "support.h"

namespace {

enum class Rule { Plain, Range, Grad };

template <class T>
using FillFn = std::function<vnxStatus(T*, int, vnxiSize, vnxiPoint, const T*, const T*, const T*, vnxiFillRegion*,
                                       vnx8u*)>;

// One fill member; its rule and connectivity come from its name.
template <class T>
struct FillMember { std::string name; int channels; Rule rule; bool eight; FillFn<T> call; };
// Binds a fill by its signature and its name: after the seed come the new value and,
// for the Range and Grad rules, the two deltas (one channel: values, three: pointers).
template <class T, class... P>
FillMember<T> fill(const char* name, vnxStatus (*f)(T*, int, vnxiSize, vnxiPoint, P...)) {
  const std::string n(name);
  auto call = [f](T* p, int s, vnxiSize r, vnxiPoint sd, const T* v, const T* lo, const T* hi, vnxiFillRegion* g,
                  vnx8u* b) {
    const T* vals[] = {v, lo, hi};
    int i = 0;
    auto arg = [&](auto* tag) -> typename std::remove_pointer<decltype(tag)>::type {
      using A = typename std::remove_pointer<decltype(tag)>::type;
      if constexpr (std::is_same<A, vnxiFillRegion*>::value) return g;
      else if constexpr (std::is_same<A, vnx8u*>::value) return b;
      else if constexpr (std::is_pointer<A>::value) return vals[i++];
      else return *vals[i++];
    };
    return std::apply(f, std::tuple<T*, int, vnxiSize, vnxiPoint, P...>{p, s, r, sd, arg(static_cast<P*>(nullptr))...});
  };
  const Rule rule = n.find("Range") != std::string::npos ? Rule::Range
                    : n.find("Grad") != std::string::npos ? Rule::Grad : Rule::Plain;
  return {n, n.find("C3") != std::string::npos ? 3 : 1, rule, n.find("8Con") != std::string::npos, call};
}

#define VT_FORMS(kind, ty) fill(#kind "_" #ty "_C1", vnxiFloodFill_##kind##_##ty##_C1IR), \
                           fill(#kind "_" #ty "_C3", vnxiFloodFill_##kind##_##ty##_C3IR)
#define VT_FILLS(ty) VT_FORMS(4Con, ty), VT_FORMS(8Con, ty), VT_FORMS(Range4Con, ty), VT_FORMS(Range8Con, ty), \
                     VT_FORMS(Grad4Con, ty), VT_FORMS(Grad8Con, ty)
template <class T>
std::vector<FillMember<T>> fillMembers();
template <>
std::vector<FillMember<vnx8u>> fillMembers() { return {VT_FILLS(8u)}; }
template <>
std::vector<FillMember<vnx32f>> fillMembers() { return {VT_FILLS(32f)}; }
#undef VT_FILLS
#undef VT_FORMS

// The fill by breadth-first search on pre-fill values: the seed, then every neighbour
// that passes (plain: equal to the seed's colour; Range: inside the seed's bounds;
// Grad: inside the bounds around the neighbour it is reached from). Paints `want` and
// describes the region in `record`; a seed that already has the new value changes neither.
template <class T>
void referenceFill(const vt::Image<T>& img, vnxiPoint seed, Rule rule, bool eight, const T* nv, const T* lo,
                   const T* hi, std::vector<T>& want, vnxiFillRegion& record) {
  const int w = img.width(), h = img.height(), c = img.channels();
  if (std::equal(nv, nv + c, &img.at(seed.x, seed.y))) return;
  auto passes = [&](int qx, int qy, int x, int y) {
    for (int k = 0; k < c; ++k) {
      const double p = img.at(x, y, k), s = img.at(seed.x, seed.y, k), base = rule == Rule::Range ? s : img.at(qx, qy, k);
      double a = base - lo[k], b = base + hi[k];  // 8u bounds may leave 0 .. 255: the same test as clamped ones
      if (std::is_same<T, vnx32f>::value) a = float(float(base) - float(lo[k])), b = float(float(base) + float(hi[k]));
      if (rule == Rule::Plain ? !(p == s) : !(a <= p && p <= b)) return false;
    }
    return true;
  };
  std::vector<char> in(std::size_t(w) * h, 0);
  std::deque<vnxiPoint> queue{seed};
  in[std::size_t(seed.y) * w + seed.x] = 1;
  int x0 = seed.x, y0 = seed.y, x1 = seed.x, y1 = seed.y;
  record = {0, {double(nv[0]), c == 3 ? double(nv[1]) : 0, c == 3 ? double(nv[2]) : 0}, {}};
  for (; !queue.empty(); queue.pop_front()) {
    const vnxiPoint q = queue.front();
    for (int k = 0; k < c; ++k) want[(std::size_t(q.y) * w + q.x) * c + k] = nv[k];
    record.area += 1, x0 = std::min(x0, q.x), y0 = std::min(y0, q.y), x1 = std::max(x1, q.x), y1 = std::max(y1, q.y);
    for (int dy = -1; dy <= 1; ++dy)
      for (int dx = -1; dx <= 1; ++dx) {
        const int x = q.x + dx, y = q.y + dy;
        if ((!dx && !dy) || (!eight && dx && dy) || x < 0 || y < 0 || x >= w || y >= h) continue;
        char& mark = in[std::size_t(y) * w + x];
        if (!mark && passes(q.x, q.y, x, y)) mark = 1, queue.push_back({x, y});
      }
  }
  record.rect = {x0, y0, x1 - x0 + 1, y1 - y0 + 1};
}

enum class Pattern { Checker, Comb, Bars, Spiral, Noise2, Noise4, Noise16, Ramp };

template <class T>
void paint(vt::Image<T>& img, Pattern p, unsigned seed) {
  std::mt19937 rng(seed);
  img.fill([&](int x, int y, int k) -> double {
    switch (p) {
      case Pattern::Checker: return (x + y) % 2 ? 10 : 20;
      case Pattern::Comb: return (y % 4 == 0 || x % 2 == 0) ? 10 : 30 + k;
      case Pattern::Bars: return (y % 2 == 1 || x % 2 == 0) ? 10 : 30 + k;  // teeth on both sides of a row
      case Pattern::Spiral: {  // rings of a square spiral wall
        const int r = std::min(std::min(x, y), std::min(img.width() - 1 - x, img.height() - 1 - y));
        return (r % 2 == 0 && !(x == r && y == r + 1)) ? 10 : 40;
      }
      case Pattern::Noise2: return 10 + 10 * (rng() % 2);
      case Pattern::Noise4: return 10 + 10 * (rng() % 4);
      case Pattern::Noise16: return 10 + (rng() % 16);
      case Pattern::Ramp: return (x * 3 + y * 5 + k) % 23 + (rng() % 3);
    }
    return 0;
  });
}

// A seed that already has the new value returns at once: nothing painted, the record
// untouched. Otherwise the region is painted and the record describes it. The work
// buffer has exactly the reported size and ends right before a protected page.
template <class T>
void checkFill(const FillMember<T>& mb, vnxiSize roi, Pattern p, vnxiPoint seed, int bufOffset, vt::Guard g, T newBase) {
  SCOPED_TRACE(testing::Message() << mb.name << " " << roi.width << "x" << roi.height << " pattern " << int(p) << " seed "
                                  << seed.x << "," << seed.y << " new " << double(newBase));
  vt::Image<T> img(roi.width, roi.height, mb.channels, 3 * sizeof(T), g);
  paint(img, p, unsigned(roi.width * 7 + roi.height));
  const T nv[3] = {newBase, T(newBase - 1), T(newBase - 2)}, lo[3] = {3, 2, 4}, hi[3] = {5, 6, 2};
  int size = 0;
  ASSERT_EQ(vnxStatusOk, (mb.rule == Rule::Grad ? vnxiFloodFillGetSize_Grad : vnxiFloodFillGetSize)(roi, &size));
  EXPECT_EQ(size, (mb.rule == Rule::Grad ? (roi.width + 2) * (roi.height + 2) : 0) + 24 * roi.width * roi.height / 4 + 32);
  vt::Span<vnx8u> buf(std::size_t(size), bufOffset, vt::Guard::After);
  std::vector<T> want = img.pixels();
  vnxiFillRegion r, record;
  std::memset(&r, 0x5A, sizeof r), std::memcpy(&record, &r, sizeof r);
  referenceFill(img, seed, mb.rule, mb.eight, nv, lo, hi, want, record);
  ASSERT_EQ(vnxStatusOk, mb.call(img.ptr(), img.step(), roi, seed, nv, lo, hi, &r, buf.data()));
  VT_EXPECT_SAME_SAMPLES(want, img.pixels());
  EXPECT_TRUE(img.canaryIntact());
  EXPECT_EQ(0, std::memcmp(&record, &r, sizeof r)) << "area " << r.area << " box at " << r.rect.x << "," << r.rect.y;
}

// Every member, size, pattern and seed, the buffer at every alignment in turn. Sizes
// up to 256 x 5 and 101 x 97 with the checker, comb and bar patterns push the most
// stack entries at once. Every fifth fill paints 14: inside the Range fills' range
// (painted pixels still pass, so the fill must know which pixels it took), and now
// and then the seed's own value.
template <class T>
void runFillTable() {
  const std::vector<vnxiSize> sizes = {{1, 1},  {9, 1},  {1, 7},    {8, 3},     {17, 15},
                                       {33, 7}, {64, 48}, {31, 3}, {255, 3}, {256, 5}, {101, 97}};
  int n = 0;
  for (const auto& mb : fillMembers<T>())
    for (vnxiSize roi : sizes)
      for (int p = 0; p <= int(Pattern::Ramp); ++p) {
        const vnxiPoint seeds[] = {{0, 0}, {roi.width - 1, roi.height - 1}, {roi.width / 2, roi.height / 2},
                                   {roi.width / 3, roi.height - 1}};
        for (vnxiPoint s : seeds)
          checkFill(mb, roi, Pattern(p), s, n % 8, n % 3 ? vt::Guard::After : vt::Guard::Before, T(n % 5 ? 99 : 14)), ++n;
      }
}

TEST(FloodFill, EveryMemberFillsTheBreadthFirstRegion) {
  runFillTable<vnx8u>();
  runFillTable<vnx32f>();
}

// One fault (or a pair) a row; on an error the image and the record keep their bytes.
TEST(FloodFill, StatusesInCheckOrder) {
  vt::Image<vnx32f> img(4, 3, 3);
  img.fill([](int, int, int) { return 1; });
  std::vector<vnx8u> buf(4096);
  vnxiFillRegion r{};
  const vnx32f v[3] = {2, 2, 2}, d[3] = {1, 1, 1}, neg[3] = {1, -1, 1};
  const vnxiSize roi{4, 3};
  struct Row { const char* what; vnx32f* p; int step; vnxiSize roi; vnxiPoint seed; const vnx32f* lo; vnx8u* b; vnxStatus want; };
  const Row rows[] = {
      {"null image", nullptr, 48, roi, {0, 0}, d, buf.data(), vnxStatusNullPtr},
      {"null delta before size", img.ptr(), 48, {0, 0}, {0, 0}, nullptr, buf.data(), vnxStatusNullPtr},
      {"null buffer", img.ptr(), 48, roi, {0, 0}, d, nullptr, vnxStatusNullPtr},
      {"size before step", img.ptr(), 1, {4, 0}, {0, 0}, d, buf.data(), vnxStatusBadSize},
      {"step below width x 4", img.ptr(), 15, roi, {0, 0}, d, buf.data(), vnxStatusBadStep},
      {"step not a multiple", img.ptr(), 18, roi, {0, 0}, d, buf.data(), vnxStatusStepNotMultiple},
      {"seed.x = width after step", img.ptr(), 15, roi, {4, 0}, d, buf.data(), vnxStatusBadStep},
      {"seed.x = width", img.ptr(), 48, roi, {4, 0}, d, buf.data(), vnxStatusOutOfRange},
      {"seed.y < 0", img.ptr(), 48, roi, {0, -1}, d, buf.data(), vnxStatusOutOfRange},
      {"negative delta", img.ptr(), 48, roi, {0, 0}, neg, buf.data(), vnxStatusOutOfRange},
      {"C3 bound is width x 4", img.ptr(), 16, roi, {0, 0}, d, buf.data(), vnxStatusOk},
  };
  vt::expectStatuses(rows, {{img.ptr(), 3 * 48}, {&r, sizeof r}}, [&](const Row& row) {
    return vnxiFloodFill_Grad4Con_32f_C3IR(row.p, row.step, row.roi, row.seed, v, row.lo, d, &r, row.b);
  });
  vnx32f one[1] = {1};
  EXPECT_EQ(vnxStatusOutOfRange, vnxiFloodFill_Range8Con_32f_C1IR(one, 4, {1, 1}, {0, 0}, 2, 0, -0.5f, &r, buf.data()));
  EXPECT_EQ(vnxStatusOutOfRange, vnxiFloodFill_Grad4Con_32f_C1IR(one, 4, {1, 1}, {0, 0}, 2, NAN, 1, &r, buf.data()));
  EXPECT_EQ(1.0f, one[0]);
  int size = 7;  // the sizes themselves: every fill above
  EXPECT_EQ(vnxStatusNullPtr, vnxiFloodFillGetSize({0, 0}, nullptr));
  EXPECT_EQ(vnxStatusBadSize, vnxiFloodFillGetSize({0, 5}, &size));
  EXPECT_EQ(vnxStatusBadSize, vnxiFloodFillGetSize_Grad({20000, 20000}, &size));
  EXPECT_EQ(7, size);
}

}  // namespace
