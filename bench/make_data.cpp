// Writes a CSV file of binary variables; the same for the same arguments.
//
//   make_data ROWS            v1 to v8, a group of two (arm) and a region of twelve
//   make_data ROWS VARIABLES  v1 to v<VARIABLES>, with proportions from 0.2 to 0.8
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

class Bits {
 public:
  uint64_t next() {
    state_ = state_ * 6364136223846793005ull + 1442695040888963407ull;
    return state_ >> 33;
  }

 private:
  uint64_t state_ = 20261121;
};

std::string header(long variables) {
  std::string names;
  for (long v = 1; v <= variables; ++v) names += (v == 1 ? "v" : ",v") + std::to_string(v);
  return names;
}

std::string groupedRow(Bits& random) {
  uint64_t bits = random.next();
  std::string row;
  for (int v = 0; v < 8; ++v, bits >>= 1) {
    row += static_cast<char>('0' + (bits & 1));
    row += ',';
  }
  row += static_cast<char>('1' + (bits & 1));
  return row + ",r" + std::to_string(10 + (bits >> 1) % 12) + '\n';
}

std::string wideRow(Bits& random, long variables) {
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
  Bits random;
  std::string out = variables > 0 ? header(variables) + "\n" : header(8) + ",arm,region\n";
  for (long i = 0; i < rows; ++i) {
    out += variables > 0 ? wideRow(random, variables) : groupedRow(random);
    if (out.size() > (1 << 20)) {
      std::fwrite(out.data(), 1, out.size(), stdout);
      out.clear();
    }
  }
  std::fwrite(out.data(), 1, out.size(), stdout);
  return 0;
}
