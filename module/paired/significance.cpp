#include "module/paired/significance.h"

#include <algorithm>
#include <cmath>

#include "host/distributions.h"
#include "module/math/binomial.h"

namespace proportions {
namespace {

constexpr double kNoDifference = 1e-12;
/// Up to here every whole number is a double.
constexpr double kAllWhole = 9007199254740992.0;

/// The sum below for counts that would take millions of terms, or whose terms the whole numbers of
/// doubles can no longer tell apart.
double lowerTail(double last, double n, double lastWeight) {
  const double all = atMost(last, n, 0.5), term = exactly(last, n, 0.5);
  if (isMissing(all) || isMissing(term)) return kSystemMissing;
  return all - (1.0 - lastWeight) * term;
}

/// P(X <= last) for X binomial(n, 1/2), the last term weighed by `lastWeight`, summed term by term;
/// missing as soon as a term fails. The sum is kept in extended precision, so that neither its
/// order nor the terms left out show.
double lowerSum(double last, double n, double lastWeight) {
  const double first = firstTermThatCounts(last, n);
  if (last - first >= kMostTerms || last >= kAllWhole) return lowerTail(last, n, lastWeight);
  int32_t error = 0;
  long double sum = 0.0L;
  for (double k = first; k <= last; ++k) {
    const double term = MCDistFun::PdfBin(k, n, 0.5, error);
    if (error != 0 || isMissing(term)) return kSystemMissing;
    sum += static_cast<long double>(k == last ? lastWeight * term : term);
  }
  return static_cast<double>(sum);
}

TestResult summedTest(const PairedCounts& counts, double lastWeight) {
  const double last = std::trunc(std::min(counts.b, counts.c) + 0.5);
  const double sum = lowerSum(last, counts.b + counts.c, lastWeight);
  return isMissing(sum) ? missingTest() : binomialTest(sum);
}

/// b - c drawn towards 0 by 1, not by 1/2, on purpose; only a difference of 0 gives Z = 0 outright.
TestResult correctedTest(const PairedCounts& counts, double variance) {
  const double difference = counts.b - counts.c;
  if (std::fabs(difference) < kNoDifference) return normalTest(0.0);
  if (!(variance > 0.0)) return missingTest();
  const double drawn = difference > 0.0 ? difference - 1.0 : difference + 1.0;
  return normalTest(drawn / std::sqrt(variance));
}

TestResult plainTest(const PairedCounts& counts, double variance) {
  if (!(variance > 0.0)) return missingTest();
  return normalTest((counts.b - counts.c) / std::sqrt(variance));
}

/// b + c - (b - c)² / N
double waldVariance(const PairedCounts& counts) {
  return discordantSpread(counts.a + counts.d, counts.b, counts.c) * counts.total();
}

}  // namespace

/// With g = n - 2·last and t terms between k and `last`, ln P(X = k) / P(X = last) is at most
/// -2·t·(g + t) / (n + 1), because ln(j / (n + 1 - j)) <= -2·(n + 1 - 2j) / (n + 1) for j <= (n +
/// 1) / 2; and below k each term is less than exp(-2·(g + 2t) / (n + 1)) times the one above it,
/// where g + 2t >= 2·sqrt(t·(g + t)). The geometric series of the terms left out is therefore less
/// than 2^-66 of the last term.
double firstTermThatCounts(double last, double n) {
  if (last < kFullSumTerms) return 0.0;
  const double bits = 66.0 * std::log(2.0);
  const double bound = bits + std::log(1.0 + std::sqrt((n + 1.0) / (8.0 * bits)));
  const double g = n - 2.0 * last;
  const double t = 0.5 * (std::sqrt(g * g + 2.0 * (n + 1.0) * bound) - g);
  return std::max(0.0, std::floor(last - t));
}

/// The exact conditional test: given the discordant pairs, either kind is as likely as the other
/// (Cochran 1950).
TestResult exactPaired(const PairedCounts& counts) { return summedTest(counts, 1.0); }

/// The same with half the probability of the count itself (Lancaster 1961; Fagerland, Lydersen &
/// Laake 2013).
TestResult midPPaired(const PairedCounts& counts) { return summedTest(counts, 0.5); }

/// McNemar (1947).
TestResult mcNemar(const PairedCounts& counts) { return plainTest(counts, counts.b + counts.c); }

/// Edwards (1948).
TestResult mcNemarCorrected(const PairedCounts& counts) {
  return correctedTest(counts, counts.b + counts.c);
}

TestResult waldPairedTest(const PairedCounts& counts) {
  return plainTest(counts, waldVariance(counts));
}

TestResult waldPairedTestCorrected(const PairedCounts& counts) {
  return correctedTest(counts, waldVariance(counts));
}

}  // namespace proportions
