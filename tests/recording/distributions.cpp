// Distribution functions straight from Boost.Math: good to the digits that tests of the procedure
// compare, with none of the host's own care for extreme arguments. A script makes them fail.
#include "host/distributions.h"

#include <boost/math/distributions/non_central_t.hpp>
#include <boost/math/special_functions/beta.hpp>
#include <boost/math/special_functions/erf.hpp>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "host/constants.h"
#include "tests/recording/host.h"

namespace {

using recording::Call;
namespace policies = boost::math::policies;
using Quietly = policies::policy<policies::domain_error<policies::ignore_error>,
                                 policies::pole_error<policies::ignore_error>,
                                 policies::overflow_error<policies::ignore_error>,
                                 policies::evaluation_error<policies::ignore_error>>;

double nanAsMissing(double value) { return std::isnan(value) ? kSystemMissing : value; }

double scripted(const std::string& answer) {
  return answer == "missing" || answer == "error" ? kSystemMissing
                                                  : std::strtod(answer.c_str(), nullptr);
}

/// What the search for a quantile finds. It throws for some enormous counts, whatever the policy:
/// its root finder has one of its own. The host's functions never throw.
template <typename Search>
double quantile(const Search& search) {
  try {
    return search();
  } catch (const boost::math::evaluation_error&) {
    return kSystemMissing;
  }
}

/// Ends a call that has no error flag.
double finish(Call& call, double value) {
  return call.gives(call.answer() == nullptr ? nanAsMissing(value) : scripted(*call.answer()));
}

/// Ends a binomial call. A failure leaves its mark in `error`; success leaves `error` alone.
double finish(Call& call, double value, bool refused, int32_t& error) {
  if (call.answer() != nullptr) {
    if (*call.answer() == "error") error = 1;
    return call.gives(scripted(*call.answer()));
  }
  if (refused) {
    error = 1;
    return call.gives(kSystemMissing);
  }
  return call.gives(value);
}

bool refused(double k, double n, double p) {
  return std::isnan(k) || !(n >= 0 && p >= 0 && p <= 1);
}

double upperTail(double k, double n, double p) {
  if (k < 0) return 1;
  if (k >= n) return 0;
  return boost::math::ibeta(k + 1, n - k, p, Quietly());
}

double lowerTail(double k, double n, double p) {
  if (k < 0) return 0;
  if (k >= n) return 1;
  return boost::math::ibetac(k + 1, n - k, p, Quietly());
}

double mass(double k, double n, double p) {
  if (k < 0 || k > n || k != std::floor(k)) return 0;
  if (p == 0) return k == 0 ? 1 : 0;
  if (p == 1) return k == n ? 1 : 0;
  return boost::math::ibeta_derivative(k + 1, n - k + 1, p, Quietly()) / (n + 1);
}

/// Bisection on the noncentrality, on which the distribution function falls.
double noncentrality(double t, double df, double p, double step, double tolerance) {
  if (!(df > 0 && p > 0 && p < 1 && step > 0 && tolerance > 0) || !std::isfinite(t)) {
    return kSystemMissing;
  }
  const auto above = [&](double d) {
    return boost::math::cdf(boost::math::non_central_t_distribution<double, Quietly>(df, d), t) > p;
  };
  double low = t - step;
  double high = t + step;
  for (double width = step; !above(low); width *= 2) low -= width;
  for (double width = step; above(high); width *= 2) high += width;
  while (high - low > tolerance) {
    const double middle = 0.5 * (low + high);
    if (middle == low || middle == high) break;
    (above(middle) ? low : high) = middle;
  }
  return 0.5 * (low + high);
}

}  // namespace

double MCMV::Missing() { return kSystemMissing; }

double MCDistFun::CdfBin(double k, double n, double p, int32_t& error) {
  Call call("MCDistFun.CdfBin", Call::May::kNotThrow, k, n, p);
  const bool bad = refused(k, n, p);
  return finish(call, bad ? 0 : lowerTail(k, n, p), bad, error);
}

double MCDistFun::CdfBinUpper(double k, double n, double p, int32_t& error) {
  Call call("MCDistFun.CdfBinUpper", Call::May::kNotThrow, k, n, p);
  const bool bad = refused(k, n, p);
  return finish(call, bad ? 0 : upperTail(k, n, p), bad, error);
}

double MCDistFun::PdfBin(double k, double n, double p, int32_t& error) {
  Call call("MCDistFun.PdfBin", Call::May::kNotThrow, k, n, p);
  const bool bad = refused(k, n, p);
  return finish(call, bad ? 0 : mass(k, n, p), bad, error);
}

double MCDistFun::IdfBeta(const double& q, const double& a, const double& b) {
  Call call("MCDistFun.IdfBeta", Call::May::kNotThrow, q, a, b);
  if (!(q >= 0 && q <= 1 && a > 0 && b > 0)) return finish(call, kSystemMissing);
  return finish(call, quantile([&] { return boost::math::ibeta_inv(a, b, q, Quietly()); }));
}

double MCDistFun::IdfBetaUpper(const double& q, const double& a, const double& b) {
  Call call("MCDistFun.IdfBetaUpper", Call::May::kNotThrow, q, a, b);
  if (!(q >= 0 && q <= 1 && a > 0 && b > 0)) return finish(call, kSystemMissing);
  return finish(call, quantile([&] { return boost::math::ibetac_inv(a, b, q, Quietly()); }));
}

double MCDistFun::CdfStdNorm(double z) {
  Call call("MCDistFun.CdfStdNorm", Call::May::kNotThrow, z);
  if (z == kSystemMissing || std::isnan(z)) return finish(call, kSystemMissing);
  return finish(call, 0.5 * std::erfc(-z / std::sqrt(2.0)));
}

double MCDistFun::IdfStdNorm(double p) {
  Call call("MCDistFun.IdfStdNorm", Call::May::kNotThrow, p);
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  if (!(p >= 0 && p <= 1)) return finish(call, kSystemMissing);
  if (p == 0 || p == 1) return finish(call, p == 0 ? -kInfinity : kInfinity);
  return finish(call, -std::sqrt(2.0) * boost::math::erfc_inv(2 * p, Quietly()));
}

double MCDistFun::FindNCParamT(double t, double df, double p, double step, double tolerance) {
  Call call("MCDistFun.FindNCParamT", Call::May::kNotThrow, t, df, p, step, tolerance);
  return finish(call, noncentrality(t, df, p, step, tolerance));
}
