// Runs a fuzz target without a fuzzer: every file of some folders, then mutations of them.
//
//   replay MUTATIONS FOLDER...
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <vector>

#include "tests/fuzz/target.h"

namespace {

using Bytes = std::vector<uint8_t>;

#ifndef FUZZ_LONGEST
#define FUZZ_LONGEST 4096
#endif
constexpr size_t kLongest = FUZZ_LONGEST;

std::vector<Bytes> readInputs(int count, char** folders) {
  std::vector<std::filesystem::path> files;
  for (int i = 0; i < count; ++i) {
    if (!std::filesystem::is_directory(folders[i])) continue;  // no regressions yet
    for (const auto& entry : std::filesystem::directory_iterator(folders[i])) {
      files.push_back(entry.path());
    }
  }
  std::sort(files.begin(), files.end());
  std::vector<Bytes> inputs;
  for (const auto& file : files) {
    std::ifstream stream(file, std::ios::binary);
    inputs.emplace_back(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
  }
  return inputs;
}

/// One input changed in a few places, some of them with pieces of another one. The same seed gives
/// the same mutations everywhere.
class Mutator {
 public:
  explicit Mutator(const std::vector<Bytes>& inputs) : inputs_(inputs) {}

  Bytes next() {
    Bytes bytes = inputs_[below(inputs_.size())];
    for (size_t changes = 1 + below(6); changes > 0; --changes) change(bytes);
    if (bytes.size() > kLongest) bytes.resize(kLongest);
    return bytes;
  }

 private:
  size_t below(size_t count) { return static_cast<size_t>(random_() % count); }

  void change(Bytes& bytes) {
    const size_t at = below(bytes.size() + 1);
    const auto place = bytes.begin() + static_cast<ptrdiff_t>(at);
    const auto length =
        static_cast<ptrdiff_t>(std::min(bytes.size() - at, static_cast<size_t>(1 + below(16))));
    switch (below(6)) {
      case 0:
        bytes.insert(place, static_cast<uint8_t>(random_()));
        return;
      case 1:
        bytes.erase(place, place + length);
        return;
      case 2:
        if (at < bytes.size()) bytes[at] = static_cast<uint8_t>(random_());
        return;
      case 3: {
        const Bytes piece(place, place + length);
        bytes.insert(bytes.begin() + static_cast<ptrdiff_t>(below(bytes.size() + 1)), piece.begin(),
                     piece.end());
        return;
      }
      case 4: {
        // A count or a length that is not to be believed.
        constexpr uint8_t kExtremes[] = {0x00, 0x01, 0x7F, 0x80, 0xFF};
        std::fill(place, place + length, kExtremes[below(std::size(kExtremes))]);
        return;
      }
      default: {
        const Bytes& other = inputs_[below(inputs_.size())];
        const size_t from = below(other.size() + 1);
        const size_t count = std::min(other.size() - from, static_cast<size_t>(1 + below(32)));
        const auto start = other.begin() + static_cast<ptrdiff_t>(from);
        bytes.insert(place, start, start + static_cast<ptrdiff_t>(count));
      }
    }
  }

  const std::vector<Bytes>& inputs_;
  std::mt19937_64 random_{20261121};
};

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fputs("usage: replay MUTATIONS FOLDER...\n", stderr);
    return 2;
  }
  const std::vector<Bytes> inputs = readInputs(argc - 2, argv + 2);
  if (inputs.empty()) {
    std::fputs("there are no inputs to replay\n", stderr);
    return 1;
  }
  for (const Bytes& input : inputs) LLVMFuzzerTestOneInput(input.data(), input.size());
  Mutator mutator(inputs);
  const long mutations = std::strtol(argv[1], nullptr, 10);
  for (long i = 0; i < mutations; ++i) {
    const Bytes input = mutator.next();
    LLVMFuzzerTestOneInput(input.data(), input.size());
  }
  std::printf("%zu inputs and %ld mutations kept every promise\n", inputs.size(), mutations);
  return 0;
}
