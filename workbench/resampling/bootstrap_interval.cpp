#include "workbench/resampling/bootstrap_interval.h"

#include <algorithm>
#include <cmath>

#include "host/constants.h"
#include "host/distributions.h"

namespace workbench {
namespace {

bool isValue(double value) { return !std::isnan(value) && !IsSystemMissing(value); }

/// The mean less `origin`, which is near it. The order of the sum does not depend on how the
/// samples were made.
double meanFrom(double origin, const std::vector<double>& ascending) {
  double sum = 0;
  for (const double value : ascending) sum += value - origin;
  return sum / static_cast<double>(ascending.size());
}

double deviationOf(const std::vector<double>& ascending, double mean) {
  double squares = 0;
  for (const double value : ascending) squares += (value - mean) * (value - mean);
  return std::sqrt(squares / static_cast<double>(ascending.size() - 1));
}

/// The share of samples below the statistic, those equal to it counted by half, as a normal
/// deviate.
double medianBias(const std::vector<double>& ascending, double statistic) {
  const auto [from, to] = std::equal_range(ascending.begin(), ascending.end(), statistic);
  const auto below = static_cast<double>(from - ascending.begin());
  const auto equal = static_cast<double>(to - from);
  return MCDistFun::IdfStdNorm((below + equal / 2) / static_cast<double>(ascending.size()));
}

double adjusted(double z0, double z, double a) {
  return MCDistFun::CdfStdNorm(z0 + (z0 + z) / (1 - a * (z0 + z)));
}

}  // namespace

double quantileType6(const std::vector<double>& ascending, double probability) {
  if (ascending.empty()) return kSystemMissing;
  const double position = probability * static_cast<double>(ascending.size() + 1);
  if (!(position > 1)) return ascending.front();
  if (position >= static_cast<double>(ascending.size())) return ascending.back();
  const auto k = static_cast<size_t>(position);
  const double share = position - static_cast<double>(k);
  return ascending[k - 1] + share * (ascending[k] - ascending[k - 1]);
}

double acceleration(const std::vector<LeftOut>& leftOut) {
  double cases = 0, sum = 0;
  for (const LeftOut& one : leftOut) {
    if (!isValue(one.value)) continue;
    cases += one.cases;
    sum += one.cases * one.value;
  }
  if (!(cases > 0)) return 0;
  const double mean = sum / cases;
  double squares = 0, cubes = 0;
  for (const LeftOut& one : leftOut) {
    if (!isValue(one.value)) continue;
    const double d = mean - one.value;
    squares += one.cases * d * d;
    cubes += one.cases * d * d * d;
  }
  const double scale = 6 * squares * std::sqrt(squares);
  return scale > 0 ? cubes / scale : 0;
}

BootstrapSummary summarizeBootstrap(double statistic, std::vector<double> samples,
                                    const std::vector<LeftOut>& leftOut, double level) {
  std::erase_if(samples, [](double value) { return !isValue(value); });
  BootstrapSummary summary;
  summary.statistic = statistic;
  summary.computed = static_cast<int64_t>(samples.size());
  if (!isValue(statistic) || samples.size() < 2) {
    summary.bias = summary.standardError = kSystemMissing;
    summary.percentileLower = summary.percentileUpper = kSystemMissing;
    summary.bcaLower = summary.bcaUpper = kSystemMissing;
    return summary;
  }
  std::sort(samples.begin(), samples.end());
  summary.bias = meanFrom(statistic, samples);
  summary.standardError = deviationOf(samples, statistic + summary.bias);
  const double tail = (1 - level / 100) / 2;
  summary.percentileLower = quantileType6(samples, tail);
  summary.percentileUpper = quantileType6(samples, 1 - tail);
  const double z0 = medianBias(samples, statistic), z = MCDistFun::IdfStdNorm(tail);
  if (!std::isfinite(z0)) {
    summary.bcaLower = summary.bcaUpper = kSystemMissing;
    return summary;
  }
  const double a = acceleration(leftOut);
  summary.bcaLower = quantileType6(samples, adjusted(z0, z, a));
  summary.bcaUpper = quantileType6(samples, adjusted(z0, -z, a));
  return summary;
}

}  // namespace workbench
