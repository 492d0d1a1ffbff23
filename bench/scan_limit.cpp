// What the machine can do: reads a file of make_data's fifteen columns, knowing all about it, and
// counts in two threads.
//
//   scan_limit FILE            the combinations of v1 to v8
//   scan_limit FILE weight     with sums of w
//   scan_limit FILE arm        by arm
//   scan_limit FILE region     by region
//   scan_limit FILE measure    measures of at least 50
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string_view>
#include <thread>
#include <vector>

namespace {

constexpr size_t kCombinations = 6561;  // of eight variables: 0, 1 and missing
constexpr size_t kGroups = 16;
enum class Wanted { kPlain, kWeight, kArm, kRegion, kMeasure };

class Scanner {
 public:
  explicit Scanner(Wanted wanted) : wanted_(wanted), counts_(kGroups * kCombinations) {}

  void scan(const char* at, const char* end) {
    while (at < end) at = scanRow(at);
  }
  void add(const Scanner& other) {
    for (size_t i = 0; i < counts_.size(); ++i) counts_[i] += other.counts_[i];
  }
  uint64_t total() const {
    uint64_t sum = 0;
    for (const uint64_t count : counts_) sum += count;
    return sum;
  }

 private:
  const char* scanRow(const char* at) {
    at = behindComma(at);
    size_t combination = 0;
    for (int variable = 0; variable < 8; ++variable) {
      combination *= 3;
      if (*at != ',') combination += static_cast<size_t>(*at++ - '0' + 1);
      ++at;
    }
    size_t group = 0;
    uint64_t weight = 1;
    if (wanted_ == Wanted::kArm) group = static_cast<size_t>(*at - '0');
    if (wanted_ == Wanted::kMeasure) {
      combination = at[2] >= '5' && at[3] != '.' && at[4] == '.' ? 1 : 0;
    }
    if (wanted_ == Wanted::kWeight) {
      at = behindComma(behindComma(behindComma(at)));
      weight = 0;
      for (; *at != ','; ++at) weight = 10 * weight + static_cast<uint64_t>(*at - '0');
    }
    const auto* line = static_cast<const char*>(std::memchr(at, '\n', 200));
    if (wanted_ == Wanted::kRegion) {
      group = static_cast<size_t>(10 * (line[-2] - '0') + line[-1] - '0');
    }
    counts_[group * kCombinations + combination] += weight;
    return line + 1;
  }
  static const char* behindComma(const char* at) {
    while (*at != ',') ++at;
    return at + 1;
  }

  Wanted wanted_;
  std::vector<uint64_t> counts_;
};

Wanted wantedOf(std::string_view name) {
  if (name == "weight") return Wanted::kWeight;
  if (name == "arm") return Wanted::kArm;
  if (name == "region") return Wanted::kRegion;
  return name == "measure" ? Wanted::kMeasure : Wanted::kPlain;
}

}  // namespace

int main(int argc, char** argv) {
  const int file = argc > 1 ? open(argv[1], O_RDONLY) : -1;
  struct stat status {};
  if (file < 0 || fstat(file, &status) != 0) {
    std::fputs("scan_limit FILE [weight|arm|region|measure]\n", stderr);
    return 2;
  }
  const auto size = static_cast<size_t>(status.st_size);
  void* const mapped = mmap(nullptr, size, PROT_READ, MAP_PRIVATE | MAP_POPULATE, file, 0);
  if (mapped == MAP_FAILED) return 1;
  const auto* const begin = static_cast<const char*>(mapped);
  const char* const end = begin + size;
  const char* const first = std::find(begin, end, '\n') + 1;
  const char* const middle = std::find(begin + size / 2, end, '\n') + 1;
  const Wanted wanted = wantedOf(argc > 2 ? argv[2] : "");
  Scanner low(wanted);
  Scanner high(wanted);
  std::thread other([&] { high.scan(middle, end); });
  low.scan(first, middle);
  other.join();
  low.add(high);
  std::printf("%llu\n", static_cast<unsigned long long>(low.total()));
  return 0;
}
