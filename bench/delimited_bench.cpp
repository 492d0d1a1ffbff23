// Bytes of CSV a second, by what is wanted of the file.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string>

#include "workbench/delimited/delimited_data.h"

namespace {

using workbench::Counting;

/// 500,000 cases of eight binary variables, a text, a measure and a note in quotes; removed at the
/// end.
class DataFile {
 public:
  DataFile() {
    const int file = mkstemps(path_.data(), 4);
    if (file < 0) throw std::runtime_error("cannot make " + path_);
    close(file);
    std::ofstream out(path_, std::ios::binary);
    out << "v1,v2,v3,v4,v5,v6,v7,v8,region,measure,note\n";
    for (int i = 0; i < 500'000; ++i) out << row();
    bytes_ = static_cast<int64_t>(out.tellp());
  }
  ~DataFile() { unlink(path_.c_str()); }
  DataFile(const DataFile&) = delete;
  DataFile& operator=(const DataFile&) = delete;
  const std::string& path() const { return path_; }
  int64_t bytes() const { return bytes_; }

 private:
  uint64_t random() {
    state_ = state_ * 6364136223846793005ULL + 1442695040888963407ULL;
    return state_ >> 33U;
  }
  std::string row() {
    std::string text;
    for (int v = 0; v < 8; ++v) text += random() % 33 == 0 ? "," : random() % 3 == 0 ? "1," : "0,";
    text += "r" + std::to_string(random() % 12) + "," + std::to_string(random() % 100) + "." +
            std::to_string(random() % 100'000) + ",";
    return text + (random() % 4 == 0 ? "\"one, two\"\n" : "none\n");
  }

  uint64_t state_ = 20261121;
  std::string path_ = "delimited_benchXXXXXX.csv";
  int64_t bytes_ = 0;
};

void read(benchmark::State& state, const std::initializer_list<size_t>& columns,
          Counting counting) {
  static const DataFile file;
  workbench::DelimitedOptions options;
  options.parts = {{file.path(), file.path(), {}}};
  workbench::DelimitedData data(options);
  workbench::DelimitedRequest request;
  for (const size_t column : columns) request.columns.push_back({column, {}, {}});
  request.counting = counting;
  for (auto _ : state) benchmark::DoNotOptimize(data.read(request));
  state.SetBytesProcessed(state.iterations() * file.bytes());
}

BENCHMARK_CAPTURE(read, no_column, {}, Counting::kAuto)->UseRealTime();
BENCHMARK_CAPTURE(read, binary_counted, {0, 1, 2, 3, 4, 5, 6, 7}, Counting::kAuto)->UseRealTime();
BENCHMARK_CAPTURE(read, binary_cases, {0, 1, 2, 3, 4, 5, 6, 7}, Counting::kNever)->UseRealTime();
BENCHMARK_CAPTURE(read, regions, {0, 1, 2, 3, 4, 5, 6, 7, 8}, Counting::kAuto)->UseRealTime();
BENCHMARK_CAPTURE(read, measure, {0, 9}, Counting::kAuto)->UseRealTime();

}  // namespace
