// Writes a CSV file of eight binary variables, a group of two and a region of twelve; the same for
// the same number of rows.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

int main(int argc, char** argv) {
  const long rows = argc > 1 ? std::atol(argv[1]) : 1000;
  uint64_t state = 20261121;
  std::string out = "v1,v2,v3,v4,v5,v6,v7,v8,arm,region\n";
  for (long i = 0; i < rows; ++i) {
    state = state * 6364136223846793005ull + 1442695040888963407ull;
    uint64_t bits = state >> 33;
    for (int v = 0; v < 8; ++v, bits >>= 1) {
      out += static_cast<char>('0' + (bits & 1));
      out += ',';
    }
    out += static_cast<char>('1' + (bits & 1));
    out += ",r" + std::to_string(10 + (bits >> 1) % 12) + '\n';
    if (out.size() > (1 << 20) || i + 1 == rows) {
      std::fwrite(out.data(), 1, out.size(), stdout);
      out.clear();
    }
  }
  return 0;
}
