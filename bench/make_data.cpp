// Writes CSV files for the benchmarks; the same bytes for the same arguments.
//
//   make_data ROWS            fifteen columns: id, eight binary variables that hang together (v1 to
//                             v8), a group of two (arm), a measure, an age, two weights (w whole,
//                             wf fractional) and a region of twelve
//   make_data ROWS VARIABLES  v1 to v<VARIABLES>, with proportions from 0.2 to 0.8
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

class Random {
 public:
  uint64_t next() {
    state_ = state_ * 6364136223846793005ull + 1442695040888963407ull;
    return state_ >> 33;
  }
  /// From 0 to below 1.
  double uniform() { return static_cast<double>(next()) / 2147483648.0; }

 private:
  uint64_t state_ = 20261121;
};

std::string header(long variables) {
  std::string names;
  for (long v = 1; v <= variables; ++v) names += (v == 1 ? "v" : ",v") + std::to_string(v);
  return names;
}

/// A case's latent inclination moves all its variables, so that 12 regions hold some 50,000
/// different combinations without repeating too readily.
std::string studyRow(Random& random, long id) {
  constexpr std::array<double, 8> kRates = {.50, .48, .12, .31, .76, .905, .20, .63};
  constexpr double kMissing = 0.03;
  const double inclination = random.uniform() - 0.5;
  std::string row = std::to_string(id);
  for (const double rate : kRates) {
    row += ',';
    const double chance = rate + inclination * 2.0 * rate * (1.0 - rate);
    const bool missing = random.uniform() < kMissing;
    const bool success = random.uniform() < chance;
    if (!missing) row += success ? '1' : '0';
  }
  char numbers[96];
  std::snprintf(numbers, sizeof numbers, ",%llu,%.4f,%llu,%llu,%.3f,region%02llu\n",
                static_cast<unsigned long long>(1 + random.next() % 2),
                50.0 + 20.0 * (random.uniform() + random.uniform() + inclination - 1.0),
                static_cast<unsigned long long>(18 + random.next() % 70),
                static_cast<unsigned long long>(1 + random.next() % 20),
                0.25 + 4.0 * random.uniform(),
                static_cast<unsigned long long>(1 + random.next() % 12));
  return row + numbers;
}

std::string wideRow(Random& random, long variables) {
  std::string row;
  for (long v = 0; v < variables; ++v) {
    const auto percent = static_cast<uint64_t>(20 + v * 60 / variables);
    row += random.next() % 100 < percent ? "1," : "0,";
  }
  row.back() = '\n';
  return row;
}

}  // namespace

int main(int argc, char** argv) {
  const long rows = argc > 1 ? std::atol(argv[1]) : 1000;
  const long variables = argc > 2 ? std::atol(argv[2]) : 0;
  Random random;
  std::string out = variables > 0 ? header(variables) + "\n"
                                  : "id," + header(8) + ",arm,measure,age,w,wf,region\n";
  for (long i = 0; i < rows; ++i) {
    out += variables > 0 ? wideRow(random, variables) : studyRow(random, i + 1);
    if (out.size() > (1 << 20)) {
      std::fwrite(out.data(), 1, out.size(), stdout);
      out.clear();
    }
  }
  std::fwrite(out.data(), 1, out.size(), stdout);
  return 0;
}
