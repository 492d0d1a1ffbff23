/// Distribution functions of the host. All are pure: no state is kept between calls, none throws,
/// none blocks, and every argument, NaN and infinities included, is answered.
#pragma once

#include <cstdint>

#pragma GCC visibility push(default)

/// The marker for "no value".
struct MCMV {
  /// The system-missing value, bit for bit the lowest finite double (-1.7976931348623157e+308).
  static double Missing();
};

/// Probability and quantile functions. Probabilities are in [0, 1]; counts are whole numbers held
/// in doubles.
struct MCDistFun {
  /// P(X <= k) for X binomial(n, p). k below 0 gives 0 and k at or above n gives 1, both without an
  /// error. `error` becomes nonzero when the arguments admit no answer (n negative, p outside [0,
  /// 1], any NaN); the result is then the missing value. A call that succeeds leaves `error` as it
  /// was.
  static double CdfBin(double k, double n, double p, int32_t& error);

  /// P(X > k) for X binomial(n, p), to the relative accuracy of CdfBin where 1 - CdfBin would
  /// cancel. k below 0 gives 1 and k at or above n gives 0. Errors as for CdfBin.
  static double CdfBinUpper(double k, double n, double p, int32_t& error);

  /// P(X = k) for X binomial(n, p), 0 for k outside 0..n. PdfBin(0, 0, p) is 1. Errors as for
  /// CdfBin.
  static double PdfBin(double k, double n, double p, int32_t& error);

  /// The quantile at probability q of the beta distribution with shapes a and b, both positive.
  /// The missing value when the arguments admit no answer.
  static double IdfBeta(const double& q, const double& a, const double& b);

  /// The place that a beta variable with shapes a and b exceeds with probability q: the quantile at
  /// 1 - q, to the relative accuracy of IdfBeta where the difference 1 - q would lose the digits of
  /// a small q, or be 1. The missing value as for IdfBeta.
  static double IdfBetaUpper(const double& q, const double& a, const double& b);

  /// The standard normal distribution function, with full relative accuracy in the lower tail.
  /// Infinities give 0 and 1, a NaN or the missing value gives the missing value.
  static double CdfStdNorm(double z);

  /// The standard normal quantile: 0 at p = 0.5, -infinity at 0, +infinity at 1; the missing value
  /// for p outside [0, 1] or NaN.
  static double IdfStdNorm(double p);

  /// The noncentrality d for which a noncentral t variable with `df` degrees of freedom does not
  /// exceed `t` with probability `p`, found to `tolerance` from the bracket that starts with width
  /// `step`; the missing value when there is none.
  static double FindNCParamT(double t, double df, double p, double step, double tolerance);
};

#pragma GCC visibility pop
