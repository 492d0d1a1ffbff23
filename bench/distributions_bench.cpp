// Nanoseconds per call of the distribution functions.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>

#include "host/distributions.h"

namespace {

// Counts that move within five standard deviations of the mean.
class Counts {
 public:
  Counts(double n, double p)
      : first_(std::fmax(0, std::floor(n * p - 5 * std::sqrt(n * p * (1 - p))))),
        last_(std::fmin(n, std::ceil(n * p + 5 * std::sqrt(n * p * (1 - p))))),
        next_(first_) {}
  double next() {
    next_ = next_ < last_ ? next_ + 1 : first_;
    return next_;
  }

 private:
  double first_, last_, next_;
};

using BinomialFunction = double (*)(double, double, double, int32_t&);

template <BinomialFunction function>
void binomial(benchmark::State& state) {
  const double n = std::pow(10, static_cast<double>(state.range(0)));
  const double p = static_cast<double>(state.range(1)) / 1000;
  Counts counts(n, p);
  int32_t error = 0;
  for (auto _ : state) benchmark::DoNotOptimize(function(counts.next(), n, p, error));
}
BENCHMARK(binomial<MCDistFun::PdfBin>)->ArgsProduct({{1, 2, 3, 4, 6, 10, 15}, {500, 30}});
BENCHMARK(binomial<MCDistFun::CdfBin>)->ArgsProduct({{1, 2, 3, 4, 6, 10, 15}, {500, 30}});
BENCHMARK(binomial<MCDistFun::CdfBinUpper>)->ArgsProduct({{2, 6, 15}, {500}});

// The one-sided sum of the exact paired test, k = 0 ... n / 2 at p = 1/2; time is per sum.
void pairedExactSum(benchmark::State& state) {
  const double n = static_cast<double>(state.range(0));
  const double last = std::fmin(std::floor(n / 2), 1e6);
  for (auto _ : state) {
    int32_t error = 0;
    double sum = 0;
    for (double k = 0; k <= last; ++k) sum += MCDistFun::PdfBin(k, n, 0.5, error);
    benchmark::DoNotOptimize(sum);
  }
  state.counters["perCall"] = benchmark::Counter(
      last + 1, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK(pairedExactSum)->Arg(100)->Arg(10000)->Arg(2000000)->Arg(10000000000);

void betaQuantile(benchmark::State& state) {
  const double n = std::pow(10, static_cast<double>(state.range(0)));
  const double x = std::floor(n * static_cast<double>(state.range(1)) / 1000);
  for (auto _ : state) benchmark::DoNotOptimize(MCDistFun::IdfBeta(0.025, x + 0.5, n - x + 0.5));
}
BENCHMARK(betaQuantile)->ArgsProduct({{1, 2, 3, 4, 6, 10, 15}, {0, 30, 500, 1000}});

void normalCumulative(benchmark::State& state) {
  double z = -10;
  for (auto _ : state) {
    benchmark::DoNotOptimize(MCDistFun::CdfStdNorm(z));
    z = z > 10 ? -10 : z + 0.013;
  }
}
BENCHMARK(normalCumulative);

void normalQuantile(benchmark::State& state) {
  double p = 0.0001;
  for (auto _ : state) {
    benchmark::DoNotOptimize(MCDistFun::IdfStdNorm(p));
    p = p > 0.999 ? 0.0001 : p + 0.00013;
  }
}
BENCHMARK(normalQuantile);

void noncentrality(benchmark::State& state) {
  for (auto _ : state)
    benchmark::DoNotOptimize(
        MCDistFun::FindNCParamT(static_cast<double>(state.range(0)), 5, 0.975, 1e-6, 1e-12));
}
BENCHMARK(noncentrality)->DenseRange(-4, 2);

}  // namespace

BENCHMARK_MAIN();
