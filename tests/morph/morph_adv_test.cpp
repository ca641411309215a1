// Composite operations against the reference composed from the reference, on states
// placed right before a guard page; sizes, the check orders and the taller ROI.
#include <random>

#include "morph_reference.h"

namespace {

using mt::Form;
using mt::Mask;

Mask reflected(const Mask& m) {
  Mask r = m;
  std::reverse(r.cells.begin(), r.cells.end());
  r.anchor = {m.w - m.anchor.x - 1, m.h - m.anchor.y - 1};
  return r;
}

// a - b, below 0 set to 0 (8u: exact in float); a NaN difference is the library's one NaN.
template <class T>
T diff(T a, T b) {
  const float v = float(a) - float(b);
  return std::isnan(v) ? T(vt::fromBits(0xFFC00000u)) : v < 0.0f ? T(0) : T(v);
}

enum class Op { Open, Close, Tophat, Blackhat, Gradient };

template <class T>
std::vector<T> composite(Op op, const std::vector<T>& s, int w, int h, int c, const Mask& m) {
  const Mask r = reflected(m);
  auto D = [&](const std::vector<T>& v, const Mask& k) { return mt::reference(v, w, h, c, k, true); };
  auto E = [&](const std::vector<T>& v, const Mask& k) { return mt::reference(v, w, h, c, k, false); };
  auto sub = [](const std::vector<T>& a, const std::vector<T>& b) {
    std::vector<T> o(a.size());
    for (std::size_t i = 0; i < a.size(); ++i) o[i] = diff(a[i], b[i]);
    return o;
  };
  switch (op) {
    case Op::Open: return D(E(s, m), r);
    case Op::Close: return E(D(s, m), r);
    case Op::Tophat: return sub(s, D(E(s, m), r));
    case Op::Blackhat: return sub(E(D(s, m), r), s);
    default: return sub(D(s, m), E(s, m));
  }
}

template <class T>
mt::Composite<T> member(const Form<T>& f, Op op) {
  const mt::Composite<T> all[] = {f.open, f.close, f.tophat, f.blackhat, f.gradient};
  return all[int(op)];
}

// The state in a block of exactly the queried size, its end right before a guard page.
template <class T>
struct AdvState {
  vt::Span<vnx8u> block;
  vnxiMorphAdvState* get() const { return reinterpret_cast<vnxiMorphAdvState*>(block.data()); }
  static int bytes(const Form<T>& f, vnxiSize roi, const Mask& m) {
    int n = 0;
    EXPECT_EQ(f.advGetSize(roi, m.cells.data(), m.size(), &n), vnxStatusOk);
    return n;
  }
  AdvState(const Form<T>& f, vnxiSize roi, Mask m) : block(bytes(f, roi, m)) {
    const auto before = m.cells;
    EXPECT_EQ(f.advInit(get(), roi, m.cells.data(), m.size(), m.anchor), vnxStatusOk);
    EXPECT_EQ(before, m.cells);  // the caller's mask is restored
  }
};

// One operation on a state created for `created`, applied to a random roi: the result
// matches the composed reference and the row padding survives.
template <class T>
void checkComposite(const Form<T>& f, const Mask& m, vnxiSize created, vnxiSize roi, Op op, std::mt19937& rng) {
  AdvState<T> st(f, created, m);
  mt::Images<T> im(roi.width, roi.height, f.c, vt::Guard::After, rng);
  ASSERT_EQ(member(f, op)(im.src.ptr(), im.src.step(), im.dst.ptr(), im.dst.step(), roi, vnxBorderReplicate, st.get()),
            vnxStatusOk);
  SCOPED_TRACE(testing::Message() << f.name << " " << m.name << " op " << int(op) << " h " << roi.height);
  VT_EXPECT_SAME_SAMPLES(composite(op, im.pixels, roi.width, roi.height, f.c, m), im.dst.pixels());
  EXPECT_TRUE(im.dst.canaryIntact());
}

template <class T>
void compositesMatch(const std::vector<Form<T>>& forms) {
  std::mt19937 rng(3);
  const auto all = mt::masks();
  const Mask masks[] = {all[0], all[1], all[2], all[3], all[7], all[8], all[11], all[12], all[14],
                        mt::fromRows("wide31", {"###"}, {0, 0})};
  for (const auto& f : forms)
    for (const Mask& m : masks)
      for (vnxiSize roi : {vnxiSize{1, 1}, vnxiSize{13, 1}, vnxiSize{1, 9}, vnxiSize{21, 17}})
        for (Op op : {Op::Open, Op::Close, Op::Tophat, Op::Blackhat, Op::Gradient})
          checkComposite(f, m, roi, roi, op, rng);
}

TEST(MorphAdv, CompositesMatchComposedReference8u) { compositesMatch(mt::forms8u()); }
TEST(MorphAdv, CompositesMatchComposedReference32f) { compositesMatch(mt::forms32f()); }

TEST(MorphAdv, SizeIsImagePlusTwoStates) {
  for (const Mask& m : {mt::rect(3, 3, {1, 1}), mt::masks()[7], mt::masks()[11]})
    for (int c : {1, 3}) {
      const auto f8 = mt::forms8u()[c == 1 ? 0 : 1];
      int adv = 0, one = 0;
      ASSERT_EQ(f8.advGetSize({50, 7}, m.cells.data(), m.size(), &adv), vnxStatusOk);
      // 8u masks below the run threshold: the run path changes nothing here.
      ASSERT_EQ(f8.getSize(50, m.cells.data(), m.size(), &one), vnxStatusOk);
      const int t = (50 * c + 31) / 32 * 32;
      EXPECT_EQ(adv, t * 7 + 2 * one + 84) << m.name << " c " << c;
    }
}

TEST(MorphAdv, ChecksInOrder) {
  const auto f = mt::forms32f()[0];
  Mask m = mt::rect(3, 3, {1, 1});
  int n = -1;
  EXPECT_EQ(f.advGetSize({0, 0}, nullptr, {0, 0}, nullptr), vnxStatusBadSize);  // height first
  EXPECT_EQ(f.advGetSize({0, 1}, nullptr, {0, 0}, nullptr), vnxStatusNullPtr);  // then pSize
  EXPECT_EQ(f.advGetSize({0, 1}, nullptr, {0, 0}, &n), vnxStatusNullPtr);      // then the mask
  EXPECT_EQ(f.advGetSize({0, 1}, m.cells.data(), {0, 0}, &n), vnxStatusBadSize);
  EXPECT_EQ(f.advGetSize({4, 1}, m.cells.data(), {3, 0}, &n), vnxStatusBadSize);
  EXPECT_EQ(n, -1);
  vnxiMorphAdvState* pp = reinterpret_cast<vnxiMorphAdvState*>(0x1);
  vnx8u block[4096];
  auto* blk = reinterpret_cast<vnxiMorphAdvState*>(block);
  EXPECT_EQ(f.advInit(nullptr, {4, 0}, nullptr, {3, 3}, {1, 1}), vnxStatusBadSize);
  EXPECT_EQ(f.advInit(nullptr, {4, 4}, nullptr, {3, 3}, {1, 1}), vnxStatusNullPtr);
  EXPECT_EQ(f.advInit(blk, {4, 4}, m.cells.data(), {3, 3}, {3, 1}), vnxStatusBadAnchor);
  EXPECT_EQ(f.advInitAlloc(nullptr, {4, 4}, m.cells.data(), {3, 3}, {1, 1}), vnxStatusNullPtr);
  EXPECT_EQ(f.advInitAlloc(&pp, {4, 4}, nullptr, {3, 3}, {1, 1}), vnxStatusNoMemory);  // the size query failed
  EXPECT_EQ(f.advInitAlloc(&pp, {4, 4}, m.cells.data(), {3, 3}, {1, 3}), vnxStatusBadAnchor);
  EXPECT_EQ(pp, reinterpret_cast<vnxiMorphAdvState*>(0x1));
  ASSERT_EQ(f.advInitAlloc(&pp, {8, 6}, m.cells.data(), {3, 3}, {1, 1}), vnxStatusOk);
  vt::Image<vnx32f> s(9, 6), d(9, 6);
  d.fill([](int, int, int) { return 4.0f; });
  struct Row { vnxiSize roi; int ss, ds, border; vnxiMorphAdvState* st; vnxStatus want; };
  const Row rows[] = {
      {{8, 6}, 36, 36, 1, nullptr, vnxStatusNullPtr},   {{0, 6}, 36, 36, 1, pp, vnxStatusBadSize},
      {{8, 6}, 30, 34, 9, pp, vnxStatusBadStep},        {{8, 6}, 34, 36, 9, pp, vnxStatusStepNotMultiple},
      {{9, 6}, 36, 36, 0, pp, vnxStatusBadArg},         {{9, 6}, 36, 36, 1, pp, vnxStatusBadSize},
      {{8, 5}, 36, 36, 1, pp, vnxStatusBadSize},  // one row shorter than the creation height
  };
  for (const Row& r : rows)
    for (Op op : {Op::Open, Op::Close, Op::Tophat, Op::Blackhat, Op::Gradient})
      EXPECT_EQ(member(f, op)(s.ptr(), r.ss, d.ptr(), r.ds, r.roi, r.border, r.st), r.want);
  for (float v : d.pixels()) ASSERT_EQ(v, 4.0f);
  EXPECT_EQ(vnxiMorphAdvFree(pp), vnxStatusOk);
  EXPECT_EQ(vnxiMorphAdvFree(nullptr), vnxStatusNullPtr);
}

// An ROI taller than the creation height passes the size test; it must still be right
// and must not write past the state, whose block ends right before a guard page.
TEST(MorphAdv, TallerRoiIsRightAndStaysInsideTheState) {
  std::mt19937 rng(9);
  for (vnxiSize roi : {vnxiSize{20, 6}, vnxiSize{20, 40}, vnxiSize{11, 40}})
    for (Op op : {Op::Open, Op::Tophat, Op::Gradient}) {
      checkComposite(mt::forms8u()[0], mt::masks()[7], {20, 6}, roi, op, rng);
      checkComposite(mt::forms8u()[2], mt::masks()[7], {20, 6}, roi, op, rng);
      checkComposite(mt::forms32f()[1], mt::masks()[7], {20, 6}, roi, op, rng);
    }
}

}  // namespace
