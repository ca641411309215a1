// The statistics' check orders, one row per fault and pairs of faults for
// precedence: means, deviations and extrema (ownCheckStat), and the masked norms
// (ownCheckMaskedNorm), whose mask step comes after the sources' multiples.
#include <climits>

#include "check.h"
#include "support.h"

namespace {

const char kByte = 0;
const void* const P = &kByte;
const vnx8u* const M = reinterpret_cast<const vnx8u*>(&kByte);

// A 16u image 5 pixels wide: row bytes 10 (one channel) or 30 (three); mask step 5.
// `result`: a result pointer the operation requires.
struct StatCase { const char* what; const void* src; int srcStep; ownMaskForm form; const vnx8u* mask; int maskStep;
                  const void* result; vnxiSize roi; int channels, coi; vnxStatus expected; };

TEST(CheckStat, FaultsInTheirOrder) {
  const auto U = ownMaskForm::Unmasked, K = ownMaskForm::Masked;
  const StatCase cases[] = {
      {"valid one channel", P, 10, U, nullptr, 0, P, {5, 3}, 1, 0, vnxStatusOk},
      {"valid masked channel", P, 30, K, M, 5, P, {5, 3}, 3, 3, vnxStatusOk},
      {"unmasked ignores the mask step", P, 10, U, nullptr, -1, P, {5, 3}, 1, 1, vnxStatusOk},
      {"null source", nullptr, 10, U, nullptr, 0, P, {5, 3}, 1, 1, vnxStatusNullPtr},
      {"null mask", P, 10, K, nullptr, 5, P, {5, 3}, 1, 1, vnxStatusNullPtr},
      {"null result", P, 10, K, M, 5, nullptr, {5, 3}, 1, 1, vnxStatusNullPtr},
      {"zero width", P, 10, U, nullptr, 0, P, {0, 3}, 1, 1, vnxStatusBadSize},
      {"short source step", P, 9, U, nullptr, 0, P, {5, 3}, 1, 1, vnxStatusBadStep},
      {"short channel step", P, 28, U, nullptr, 0, P, {5, 3}, 3, 1, vnxStatusBadStep},
      {"short mask step", P, 10, K, M, 4, P, {5, 3}, 1, 1, vnxStatusBadStep},
      {"odd source step", P, 11, U, nullptr, 0, P, {5, 3}, 1, 1, vnxStatusStepNotMultiple},
      {"coi 0", P, 30, U, nullptr, 0, P, {5, 3}, 3, 0, vnxStatusBadCoi},
      {"coi 4", P, 30, U, nullptr, 0, P, {5, 3}, 3, 4, vnxStatusBadCoi},
      {"coi INT_MIN", P, 30, U, nullptr, 0, P, {5, 3}, 3, INT_MIN, vnxStatusBadCoi},
      {"one channel ignores coi", P, 10, U, nullptr, 0, P, {5, 3}, 1, INT_MIN, vnxStatusOk},
      // precedence
      {"null source before zero width", nullptr, 10, U, nullptr, 0, P, {0, 3}, 1, 1, vnxStatusNullPtr},
      {"null result before zero width", P, 10, U, nullptr, 0, nullptr, {0, 3}, 1, 1, vnxStatusNullPtr},
      {"zero height before short step", P, -1, U, nullptr, 0, P, {5, 0}, 1, 1, vnxStatusBadSize},
      {"short mask step before odd source step", P, 11, K, M, 4, P, {5, 3}, 1, 1, vnxStatusBadStep},
      {"odd source step before coi", P, 31, U, nullptr, 0, P, {5, 3}, 3, 0, vnxStatusStepNotMultiple},
      {"short step before coi", P, 29, U, nullptr, 0, P, {5, 3}, 3, 9, vnxStatusBadStep},
  };
  for (const StatCase& c : cases)
    EXPECT_EQ(ownCheckStat<vnx16u>(c.roi, c.src, c.srcStep, c.form, c.mask, c.maskStep, c.channels, c.coi, {c.result}),
              c.expected)
        << c.what;
}

// Two 32f sources 5 pixels wide (row bytes 20, or 60 for three channels); mask step 5.
struct NormCase { const char* what; const void *src1, *src2; int step1, step2; const vnx8u* mask; int maskStep;
                  const void* result; vnxiSize roi; int channels, coi; vnxStatus expected; };

TEST(CheckMaskedNorm, FaultsInTheirOrder) {
  const NormCase cases[] = {
      {"valid", P, P, 20, 20, M, 5, P, {5, 2}, 1, 0, vnxStatusOk},
      {"valid channel", P, P, 60, 64, M, 5, P, {5, 2}, 3, 2, vnxStatusOk},
      {"null first source", nullptr, P, 20, 20, M, 5, P, {5, 2}, 1, 1, vnxStatusNullPtr},
      {"null second source", P, nullptr, 20, 20, M, 5, P, {5, 2}, 1, 1, vnxStatusNullPtr},
      {"null mask", P, P, 20, 20, nullptr, 5, P, {5, 2}, 1, 1, vnxStatusNullPtr},
      {"null result", P, P, 20, 20, M, 5, nullptr, {5, 2}, 1, 1, vnxStatusNullPtr},
      {"zero height", P, P, 20, 20, M, 5, P, {5, 0}, 1, 1, vnxStatusBadSize},
      {"short first step", P, P, 16, 20, M, 5, P, {5, 2}, 1, 1, vnxStatusBadStep},
      {"short second step", P, P, 20, 19, M, 5, P, {5, 2}, 1, 1, vnxStatusBadStep},
      {"short mask step", P, P, 20, 20, M, 4, P, {5, 2}, 1, 1, vnxStatusBadStep},
      {"odd second step", P, P, 20, 22, M, 5, P, {5, 2}, 1, 1, vnxStatusStepNotMultiple},
      {"coi INT_MIN", P, P, 60, 60, M, 5, P, {5, 2}, 3, INT_MIN, vnxStatusBadCoi},
      // precedence
      {"null result before zero width", P, P, 20, 20, M, 5, nullptr, {0, 2}, 1, 1, vnxStatusNullPtr},
      {"zero width before short steps", P, P, 1, 1, M, 1, P, {0, 2}, 1, 1, vnxStatusBadSize},
      {"short second step before odd first step", P, P, 21, 19, M, 5, P, {5, 2}, 1, 1, vnxStatusBadStep},
      {"odd first step before short mask step", P, P, 21, 20, M, 4, P, {5, 2}, 1, 1, vnxStatusStepNotMultiple},
      {"short mask step before coi", P, P, 60, 60, M, 4, P, {5, 2}, 3, 0, vnxStatusBadStep},
  };
  for (const NormCase& c : cases)
    EXPECT_EQ(ownCheckMaskedNorm<vnx32f>(c.roi, {{c.src1, c.step1}, {c.src2, c.step2}}, c.mask, c.maskStep, c.result,
                                         c.channels, c.coi),
              c.expected)
        << c.what;
  // one source: the same order without a second image
  EXPECT_EQ(ownCheckMaskedNorm<vnx32f>({5, 2}, {{P, 21}}, M, 4, P, 1, 1), vnxStatusStepNotMultiple);
  EXPECT_EQ(ownCheckMaskedNorm<vnx32f>({5, 2}, {{P, 20}}, M, 4, P, 1, 1), vnxStatusBadStep);
}

}  // namespace
