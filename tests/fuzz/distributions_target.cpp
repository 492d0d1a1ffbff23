// Any numbers as arguments of the distribution functions.
#include <cmath>
#include <cstring>

#include "host/distributions.h"
#include "tests/fuzz/target.h"

namespace {

using fuzz::Choices;
using fuzz::promise;

double anyBits(Choices& choices) {
  uint64_t bits = 0;
  for (int i = 0; i < 8; ++i) bits = bits << 8 | choices.byte();
  double value = 0;
  std::memcpy(&value, &bits, sizeof value);
  return value;
}

/// Mostly what a run can pass, sometimes anything at all.
double count(Choices& choices) {
  const size_t kind = choices.below(8);
  if (kind == 0) return anyBits(choices);
  const double digits = choices.byte() * 256.0 + choices.byte();
  return kind < 5 ? digits : std::floor(digits * std::pow(10.0, static_cast<double>(kind * 2 - 8)));
}

double probability(Choices& choices) {
  const size_t kind = choices.below(8);
  if (kind == 0) return anyBits(choices);
  const double part = (choices.byte() * 256.0 + choices.byte()) / 65535.0;
  if (kind < 4) return part;
  const double small = part * std::pow(10.0, -static_cast<double>(choices.byte()));
  return kind < 7 ? small : 1 - small;
}

bool isProbability(double value) { return value >= 0 && value <= 1; }
bool isMissing(double value) { return value == MCMV::Missing(); }

void binomial(Choices& choices) {
  const double n = count(choices), p = probability(choices);
  const double k = choices.flag() ? count(choices) : std::floor(n * p) + count(choices) - 32768;
  int32_t error = 0;
  const double mass = MCDistFun::PdfBin(k, n, p, error);
  const double lower = MCDistFun::CdfBin(k, n, p, error);
  const double upper = MCDistFun::CdfBinUpper(k, n, p, error);
  if (error != 0) {
    promise(isMissing(mass) || isMissing(lower) || isMissing(upper), "an error has no value");
    return;
  }
  promise(isProbability(mass) && isProbability(lower) && isProbability(upper), "binomial values");
  promise(mass <= lower * (1 + 1e-9) || k != std::floor(k), "a term is part of its sum");
}

void normal(Choices& choices) {
  const double z = choices.flag() ? anyBits(choices) : (count(choices) - 32768) / 900;
  const double below = MCDistFun::CdfStdNorm(z);
  if (std::isnan(z) || isMissing(z)) {
    promise(isMissing(below), "no number, no value");
    return;
  }
  promise(isProbability(below), "a normal probability");
  if (std::fabs(z) > 5) return;
  promise(std::fabs(MCDistFun::IdfStdNorm(below) - z) < 1e-9, "the quantile is the inverse");
}

void quantiles(Choices& choices) {
  const double q = probability(choices), a = count(choices) + 0.5 * choices.flag();
  const double b = count(choices) + 0.5 * choices.flag();
  const double x = MCDistFun::IdfBeta(q, a, b);
  promise(isMissing(x) || isProbability(x), "a beta quantile");
  const double z = MCDistFun::IdfStdNorm(q);
  promise(isMissing(z) || !std::isnan(z), "a normal quantile");
}

void noncentrality(Choices& choices) {
  const double t = choices.flag() ? anyBits(choices) : (count(choices) - 32768) / 3000;
  const double df = choices.flag() ? anyBits(choices) : choices.byte();
  const double found = MCDistFun::FindNCParamT(t, df, probability(choices), 1e-6, 1e-12);
  promise(!std::isnan(found), "a noncentrality or the missing value");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  Choices choices(bytes, size);
  switch (choices.below(4)) {
    case 0:
      binomial(choices);
      break;
    case 1:
      normal(choices);
      break;
    case 2:
      quantiles(choices);
      break;
    default:
      noncentrality(choices);
  }
  return 0;
}
