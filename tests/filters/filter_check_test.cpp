// The check orders of the linear filters, once, as tables: one row per fault and pairs
// of faults for precedence. The exports' own tests confirm that each calls its helper
// (one fault per check, nothing written).
#include "check.h"
#include "support.h"

namespace {

const int kBuf = 0;
const void* const ok = &kBuf;

TEST(FilterChecks, FixedFilterOrder) {
  struct Case { const char* what; const void* src; vnxiSize roi; int srcStep, dstStep, border;
                ownDivisorArg divisor; int mask; vnxStatus want; };
  const auto none = ownDivisorArg::none();
  const Case cases[] = {
      {"fine", ok, {8, 4}, 8, 16, 4, none, 55, vnxStatusOk},
      {"null wins over size", nullptr, {0, 4}, 8, 16, 1, none, 33, vnxStatusNullPtr},
      {"zero width", ok, {0, 4}, 8, 16, 9, ownDivisorArg::of(0), 3, vnxStatusBadSize},
      {"zero height wins over steps", ok, {8, 0}, -8, 16, 1, none, 33, vnxStatusBadSize},
      {"short source step", ok, {8, 4}, 7, 16, 9, ownDivisorArg::of(0), 3, vnxStatusBadStep},
      {"short step wins over multiple", ok, {8, 4}, 8, 15, 1, none, 33, vnxStatusBadStep},
      {"odd 16s step", ok, {8, 4}, 8, 17, 9, none, 3, vnxStatusStepNotMultiple},
      {"border 5 wins over divisor and mask", ok, {8, 4}, 8, 16, 5, ownDivisorArg::of(0), 3, vnxStatusBadArg},
      {"border -1", ok, {8, 4}, 8, 16, -1, none, 33, vnxStatusBadArg},
      {"divisor 0 wins over mask", ok, {8, 4}, 8, 16, 0, ownDivisorArg::of(0), 3, vnxStatusBadArg},
      {"no divisor argument", ok, {8, 4}, 8, 16, 0, none, 33, vnxStatusOk},
      {"mask 3", ok, {8, 4}, 8, 16, 0, ownDivisorArg::of(-2), 3, vnxStatusBadMaskSize},
  };
  for (const Case& c : cases)
    EXPECT_EQ(ownCheckFixedFilter({ok, c.src, ok}, c.roi,
                                  {ownImg<vnx8u>(c.srcStep, c.roi.width), ownImg<vnx16s>(c.dstStep, c.roi.width)},
                                  c.border, c.divisor, c.mask),
              c.want)
        << c.what;
}

TEST(FilterChecks, RowPassOrder) {
  const void* rows[3] = {ok, ok, ok};
  const void* holed[3] = {ok, ok, nullptr};
  struct Case { const char* what; const void* kern; vnxiSize roi; int k, anchor, step, border, divisor;
                const void* const* rows; vnxStatus want; };
  const Case cases[] = {
      {"fine, anchor k - 1", ok, {8, 3}, 3, 2, 16, 4, 1, rows, vnxStatusOk},
      {"null kernel wins over size", nullptr, {0, 3}, 3, 1, 16, 1, 1, rows, vnxStatusNullPtr},
      {"height before width", ok, {0, 0}, 3, 1, 16, 1, 1, rows, vnxStatusBadSize},
      {"kernel size 0", ok, {8, 3}, 0, 0, 16, 1, 1, rows, vnxStatusBadSize},
      {"anchor k wins over step", ok, {8, 3}, 3, 3, 3, 1, 1, rows, vnxStatusBadAnchor},
      {"anchor -1", ok, {8, 3}, 3, -1, 16, 1, 1, rows, vnxStatusBadAnchor},
      {"short step wins over border", ok, {8, 3}, 3, 1, 15, 5, 1, rows, vnxStatusBadStep},
      {"odd step", ok, {8, 3}, 3, 1, 17, 5, 1, rows, vnxStatusStepNotMultiple},
      {"border 5 wins over divisor", ok, {8, 3}, 3, 1, 16, 5, 0, rows, vnxStatusBadArg},
      {"divisor 0 wins over rows", ok, {8, 3}, 3, 1, 16, 1, 0, holed, vnxStatusBadArg},
      {"null row pointer last", ok, {8, 3}, 3, 1, 16, 1, 1, holed, vnxStatusNullPtr},
  };
  for (const Case& c : cases)
    EXPECT_EQ(ownCheckRowPass({ok, ok, c.kern, ok}, c.roi, c.k, c.anchor, ownImg<vnx16s>(c.step, c.roi.width),
                              c.border, c.divisor, c.rows, c.roi.height),
              c.want)
        << c.what;
}

TEST(FilterChecks, ColumnPassTestsTheBufferAfterTheSteps) {
  const void* rows[6] = {ok, ok, ok, ok, ok, ok};
  const void* holed[6] = {ok, ok, ok, ok, ok, nullptr};
  struct Case { const char* what; const void* dst; vnxiSize roi; int k, step; const void* buffer;
                const void* const* rows; int divisor; vnxStatus want; };
  const Case cases[] = {
      {"fine", ok, {4, 4}, 3, 16, ok, rows, 1, vnxStatusOk},
      {"null destination wins over size", nullptr, {0, 4}, 3, 16, ok, rows, 1, vnxStatusNullPtr},
      {"kernel size 0", ok, {4, 4}, 0, 16, ok, rows, 1, vnxStatusBadSize},
      {"short step wins over null buffer", ok, {4, 4}, 3, 12, nullptr, rows, 1, vnxStatusBadStep},
      {"misaligned step wins over null buffer", ok, {4, 4}, 3, 18, nullptr, rows, 1, vnxStatusStepNotMultiple},
      {"null buffer wins over rows", ok, {4, 4}, 3, 16, nullptr, holed, 1, vnxStatusNullPtr},
      {"row h + k - 2 is read", ok, {4, 4}, 3, 16, ok, holed, 1, vnxStatusNullPtr},
      {"row h + k - 1 is not", ok, {4, 3}, 3, 16, ok, holed, 1, vnxStatusOk},
      {"divisor last", ok, {4, 3}, 3, 16, ok, holed, 0, vnxStatusBadArg},
  };
  for (const Case& c : cases)
    EXPECT_EQ(ownCheckColumnPass({ok, c.dst, ok}, c.roi, c.k, ownImg<vnx32f>(c.step, c.roi.width), c.buffer, c.rows,
                                 std::int64_t{c.roi.height} + c.k - 1, c.divisor),
              c.want)
        << c.what;
}

// The fixed queries' order runs on every export in filter_fixed_test.
TEST(FilterChecks, PipelineQueryOrder) {
  int v = 7;
  EXPECT_EQ(ownCheckPipelineQuery(nullptr, {0, 0}, 0), vnxStatusNullPtr);
  EXPECT_EQ(ownCheckPipelineQuery(&v, {0, 1}, 1), vnxStatusBadSize);
  EXPECT_EQ(ownCheckPipelineQuery(&v, {1, 0}, 1), vnxStatusBadSize);
  EXPECT_EQ(ownCheckPipelineQuery(&v, {1, 1}, 0), vnxStatusBadSize);
}

}  // namespace
