// What a data set tells of its reading and of the passes over its cases.
#include <gtest/gtest.h>

#include <mutex>
#include <string>
#include <vector>

#include "tests/workbench/dataset/data_folder.h"

namespace workbench {
namespace {

using testing::DataFolder;
using testing::dataOptions;

constexpr int kCases = 200'000;

struct Told {
  Phase phase;
  double percent;
  int64_t done;
};

class Progress : public ::testing::Test {
 protected:
  /// Reads a file of many cases and passes over them `passes` times.
  void run(const DataOptions& given, int passes) {
    DataOptions options = given;
    options.progress = [this](Phase phase, double percent, int64_t done) {
      const std::lock_guard lock(telling_);
      told_.push_back({phase, percent, done});
    };
    const auto dataset = openDataset(options);
    dataset->beginCommand(testing::allVariables(*dataset));
    for (int pass = 0; pass < passes; ++pass) {
      const auto feed = dataset->openFeed();
      ASSERT_NE(feed, nullptr) << dataset->failure();
      while (feed->NextChunk() != nullptr) {
      }
    }
    EXPECT_FALSE(dataset->failed()) << dataset->failure();
  }

  /// In the order in which they began.
  std::vector<Phase> phases() const {
    std::vector<Phase> all;
    for (const Told& each : told_) {
      if (all.empty() || all.back() != each.phase) all.push_back(each.phase);
    }
    return all;
  }

  void expectRising(Phase phase, double last) const {
    double before = 0.0;
    for (const Told& each : told_) {
      if (each.phase != phase) continue;
      EXPECT_GE(each.percent, before);
      EXPECT_LE(each.percent, 100.0);
      before = each.percent;
    }
    EXPECT_GE(before, last);
  }

  static std::string manyCases() {
    std::string text = "a,g,x\n";
    for (int i = 0; i < kCases; ++i) {
      text +=
          std::to_string(i % 2) + "," + (i % 3 == 0 ? "b" : "c") + "," + std::to_string(i) + "\n";
    }
    return text;
  }

  DataFolder folder_;
  std::mutex telling_;
  std::vector<Told> told_;
};

TEST_F(Progress, NamesReadingAndEachPass) {
  run(dataOptions(folder_.write("a.csv", manyCases())), 4);
  EXPECT_EQ(phases(), (std::vector{Phase::kReading, Phase::kFirstPass, Phase::kSecondPass,
                                   Phase::kFurtherPass}));
  expectRising(Phase::kReading, 90.0);
  expectRising(Phase::kFirstPass, 60.0);
  expectRising(Phase::kSecondPass, 60.0);
}

TEST_F(Progress, NamesWhatCasesBeyondMemoryCost) {
  DataOptions options = dataOptions(folder_.write("a.csv", manyCases()));
  options.memoryLimit = 0;
  options.split = {"g"};
  run(options, 2);
  EXPECT_EQ(phases(), (std::vector{Phase::kReading, Phase::kKeeping, Phase::kSorting,
                                   Phase::kFirstPass, Phase::kSecondPass}));
  expectRising(Phase::kKeeping, 90.0);
  expectRising(Phase::kFirstPass, 60.0);
}

TEST_F(Progress, PassesAreNamedAnewForEachCommand) {
  const std::string path = folder_.write("a.csv", "a\n1\n0\n");
  run(dataOptions(path), 1);
  run(dataOptions(path), 1);
  EXPECT_EQ(phases(),
            (std::vector{Phase::kReading, Phase::kFirstPass, Phase::kReading, Phase::kFirstPass}));
}

TEST_F(Progress, QueriesOverFilesTellOfTheFile) {
  DataOptions options = dataOptions(folder_.write("a.csv", manyCases()));
  options.query = "SELECT a FROM data";
  run(options, 1);
  ASSERT_FALSE(told_.empty());
  EXPECT_EQ(told_.front().phase, Phase::kReading);
  EXPECT_EQ(phases().back(), Phase::kFirstPass);
  expectRising(Phase::kFirstPass, 60.0);
}

TEST_F(Progress, RecordsAreReadForTheirNamesFirst) {
  std::string text;
  for (int i = 0; i < 5000; ++i) text += "{\"a\":" + std::to_string(i % 2) + "}\n";
  run(dataOptions(folder_.write("a.jsonl", text)), 1);
  EXPECT_EQ(phases(), (std::vector{Phase::kNames, Phase::kReading, Phase::kFirstPass}));
}

TEST_F(Progress, EveryFormatTellsOfItsReading) {
  const std::string rows = "SELECT range % 2 AS a, range AS x FROM range(300000)";
  run(dataOptions(folder_.make("a.parquet", "COPY (" + rows + ") TO FILE")), 2);
  EXPECT_EQ(phases().back(), Phase::kSecondPass);
  expectRising(Phase::kSecondPass, 60.0);
}

}  // namespace
}  // namespace workbench
