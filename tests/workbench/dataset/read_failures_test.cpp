#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <thread>

#include "tests/workbench/dataset/data_folder.h"

namespace workbench {
namespace {

using testing::casesOf;
using testing::DataFolder;
using testing::dataOptions;
using testing::refusal;

bool has(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

struct BadFile {
  const char* name;
  std::string bytes;
  const char* message;  // what stands after the path
};

/// Names a file in the list of tests.
void PrintTo(const BadFile& file, std::ostream* out) { *out << file.name; }

class BadFiles : public ::testing::TestWithParam<BadFile> {};

TEST_P(BadFiles, AreRefusedWithTheirPlace) {
  const DataFolder folder;
  const std::string path = folder.write(GetParam().name, GetParam().bytes);
  const std::string message = refusal(path);
  EXPECT_EQ(message.substr(0, path.size()), path);
  EXPECT_TRUE(has(message, GetParam().message)) << message;
}

INSTANTIATE_TEST_SUITE_P(
    Files, BadFiles,
    ::testing::Values(
        BadFile{"a.csv", "", ": the file is empty"},
        BadFile{"a.csv", "\n\n", ": the file is empty"},
        BadFile{"a.csv", "a,b\n1,2\n1,2,3\n", ", line 3: 3 fields where the header has 2"},
        BadFile{"a.csv", "a,b\n1,2\n1\n", ", line 3: 1 field where the header has 2"},
        BadFile{"a.csv", "a,b\n\"x\ny\",2\n1\n", ", line 4: 1 field where"},
        BadFile{"a.csv", "a,b\n1,caf\xE9\n", ", line 2: there are bytes that are not UTF-8"},
        BadFile{"a.csv", "a,b\n1,x\xC3\n", ", line 2: there are bytes that are not UTF-8"},
        BadFile{"a.csv",
                std::string("\xFF\xFE"
                            "a\0",
                            4),
                ", line 1: there are bytes that are not UTF-8"},
        BadFile{"a.csv", std::string("a\nx\0y\n", 6), ", line 2: there is a NUL byte"},
        BadFile{"a.csv", "a,b\n1,\"x\n2,y\n", ", line 2: "},
        BadFile{"a.csv", "a,b,a\n1,2,3\n", ", line 1: columns 1 and 3 are both named a"},
        BadFile{"a.csv", "a,A\n1,2\n", ", line 1: columns 1 and 2 are named a and A, which differ"},
        BadFile{"a.csv", "Straße,x,STRASSE\n1,2,3\n", ", line 1: columns 1 and 3 are named"},
        BadFile{"a.xlsx", "x", ": this ending is not known. Files that are read: .csv"},
        BadFile{"a", "x", ": this ending is not known"},
        BadFile{"a.xlsx", "x", ": this ending is not known"},
        BadFile{"a.parquet", "no parquet", ":"}, BadFile{"a.parquet", "", ": the file is empty"},
        BadFile{"a.json", "{\"a\":", ":"}, BadFile{"a.csv.gz", "no gzip", ":"}));

TEST(BadFiles, MissingFoldersAndForbidden) {
  const DataFolder folder;
  EXPECT_EQ(refusal(folder.path("none.csv")), folder.path("none.csv") + ": there is no such file.");
  mkdir(folder.path("d.csv").c_str(), 0700);
  EXPECT_TRUE(has(refusal(folder.path("d.csv")), ": the folder holds no data file"));
  EXPECT_TRUE(has(refusal("duckdb:" + folder.path("none.db")), "there is no such database file"));
  EXPECT_TRUE(
      has(refusal("duckdb:" + folder.write("no.db", "this is no database at all")), "no.db"));
  if (geteuid() != 0) {
    const std::string path = folder.write("secret.csv", "a\n1\n");
    chmod(path.c_str(), 0);
    EXPECT_TRUE(has(refusal(path), "may not be read"));
  }
}

TEST(BadFiles, FarBeyondTheHead) {
  const DataFolder folder;
  std::string text = "a,b\n";
  for (int i = 0; i < 300000; ++i) text += "1,xy\n";
  const auto failureOf = [&folder](const std::string& bytes) {
    return casesOf(folder.write("a.csv", bytes)).back();
  };
  EXPECT_TRUE(has(failureOf(text + "1,2,3\n"), "line 300002: 3 fields where the header has 2"))
      << failureOf(text + "1,2,3\n");
  EXPECT_TRUE(
      has(failureOf(text + "1,caf\xE9\n"), "line 300002: there are bytes that are not UTF-8"))
      << failureOf(text + "1,caf\xE9\n");
  EXPECT_TRUE(has(failureOf(text + "1,\"x\n"), "line 300002: ")) << failureOf(text + "1,\"x\n");
  EXPECT_TRUE(has(failureOf(text + std::string("1,x\0y\n", 6)), "line 300002: there is a NUL byte"))
      << failureOf(text + std::string("1,x\0y\n", 6));
}

TEST(ReadFailures, StringsMayNotBeWiderThanAVariable) {
  const DataFolder folder;
  const std::string widest(32767, 'x');
  EXPECT_EQ(casesOf(folder.write("a.csv", "s\n" + widest + "\n")).back(), widest + "|1");
  EXPECT_TRUE(
      has(casesOf(folder.write("a.csv", "s\n" + widest + "x\n")).back(), "line 2: s: 'xxx"));
}

TEST(ReadFailures, AFileThatVanishes) {
  const DataFolder folder;
  const std::string path = folder.write("a.csv", "a\n1\n");
  const auto data = openDataset(dataOptions(path));
  std::filesystem::remove(path);
  const std::string failure = casesOf(*data).back();
  EXPECT_TRUE(has(failure, "failed: " + path + ": there is no such file")) << failure;
  data->beginCommand({0});
  EXPECT_TRUE(data->failed()) << "from then on";
}

TEST(ReadFailures, NumbersThatADoubleCannotHoldAreRefused) {
  const DataFolder folder;
  const auto failure = [&](const std::string& value) {
    return casesOf(folder.makeDatabase(
                       "n.db", "CREATE OR REPLACE TABLE t AS SELECT * FROM (VALUES (1), (" + value +
                                   ")) t(x)"))
        .back();
  };
  EXPECT_EQ(failure("9007199254740992::BIGINT"), "9007199254740992|1");
  EXPECT_EQ(failure("18446744073709549568::UBIGINT"), "1.844674407370955e+19|1");
  EXPECT_EQ(failure("0.10::DECIMAL(38,2)"), "0.1|1");
  for (const char* value :
       {"9007199254740993::BIGINT", "-9007199254740993::BIGINT", "9223372036854775807::BIGINT",
        "18446744073709551615::UBIGINT", "170141183460469231731687303715884105727::HUGEINT",
        "12345678901234567.89::DECIMAL(38,2)"}) {
    EXPECT_TRUE(has(failure(value), "case 2: x: ")) << value << ": " << failure(value);
    EXPECT_TRUE(has(failure(value), "cannot be held exactly; cast")) << failure(value);
  }
}

TEST(ReadFailures, MomentsThatAreNoneAreRefused) {
  const DataFolder folder;
  const auto failure = [&](const std::string& value) {
    return casesOf(folder.makeDatabase("m.db",
                                       "CREATE OR REPLACE TABLE t AS SELECT " + value + " AS x"))
        .back();
  };
  for (const char* value :
       {"DATE 'infinity'", "DATE '-infinity'", "TIMESTAMP 'infinity'", "TIMESTAMPTZ '-infinity'"}) {
    EXPECT_TRUE(has(failure(value), "infinity is not a moment")) << failure(value);
  }
  EXPECT_TRUE(
      has(failure("TIMESTAMP_NS '2026-01-31 00:00:00.123456789'"), "is finer than a microsecond"));
  EXPECT_EQ(failure("TIMESTAMP_NS '2026-01-31 00:00:00.123456'"), "2026-01-31 00:00:00.123456|1");
  EXPECT_EQ(failure("TIMETZ '01:30:00+02'"), "23:30:00|1");
  EXPECT_EQ(failure("DATE '5881580-07-10'"), "5881580-07-10|1");
  EXPECT_EQ(failure("TIMESTAMP '12024-01-31 00:00:00.5'"), "12024-01-31 00:00:00.5|1");
  EXPECT_TRUE(has(failure("TIMESTAMP '2500-01-01 00:00:00.000001'"), "cannot be held exactly"));
}

TEST(ReadFailures, AnInterruptStopsTheRead) {
  const DataFolder folder;
  DataOptions options = dataOptions(folder.write("a.csv", "a\n1\n"));
  options.query =
      "SELECT count(*) AS n FROM range(100000000) a, range(100000) b WHERE a.range * b.range % 7 = "
      "3";
  std::atomic<bool> interrupted{false};
  options.interrupted = &interrupted;
  const auto data = openDataset(options);
  std::thread killer([&interrupted] {
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    interrupted = true;
  });
  const std::string failure = casesOf(*data).back();
  killer.join();
  EXPECT_TRUE(has(failure, "failed: The run was interrupted.")) << failure;
}

TEST(ReadFailures, AnInterruptStopsAPass) {
  const DataFolder folder;
  std::string text = "a\n";
  for (int i = 0; i < 100000; ++i) text += "1\n";
  DataOptions options = dataOptions(folder.write("a.csv", text));
  std::atomic<bool> interrupted{false};
  options.interrupted = &interrupted;
  const auto data = openDataset(options);
  data->beginCommand({0});
  ProcDSIterator iterator(data->openFeed());
  ASSERT_NE(iterator.NextCase(), nullptr);
  interrupted = true;
  int more = 0;
  while (iterator.NextCase() != nullptr) ++more;
  EXPECT_LT(more, 99999);
  EXPECT_TRUE(data->failed());
  EXPECT_EQ(data->openFeed(), nullptr);
}

TEST(ReadFailures, AnInterruptStopsOpeningAndWaiting) {
  const DataFolder folder;
  std::atomic<bool> interrupted{false};
  DataOptions options = dataOptions(folder.write("a.csv", "a\n1\n"));
  options.interrupted = &interrupted;
  const auto data = openDataset(options);
  interrupted = true;
  EXPECT_TRUE(has(casesOf(*data).back(), "failed: The run was interrupted."));
  options.data = folder.path("pipe.csv");
  ASSERT_EQ(mkfifo(options.data.c_str(), 0600), 0);
  // Held open at both ends, so that the pipe neither ends nor breaks.
  const int pipe = open(options.data.c_str(), O_RDWR);
  ASSERT_EQ(write(pipe, "a\n", 2), 2);
  EXPECT_EQ(refusal(options), "The run was interrupted.");
  close(pipe);
}

TEST(ReadFailures, AParquetPipeIsReadOnce) {
  const DataFolder folder;
  folder.make("a.parquet", "COPY (SELECT 7 AS x) TO FILE");
  const std::string pipe = folder.path("p.parquet");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  std::thread writer([&] {
    std::ofstream(pipe, std::ios::binary)
        << std::ifstream(folder.path("a.parquet"), std::ios::binary).rdbuf();
  });
  EXPECT_EQ(casesOf(pipe), (std::vector<std::string>{"7|1"}));
  writer.join();
}

TEST(ReadFailures, APipeIsReadOnce) {
  const DataFolder folder;
  const std::string path = folder.path("pipe.csv");
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  std::thread writer([&path] { std::ofstream(path) << "a,b\n1,x\n2,y\n"; });
  const auto data = openDataset(dataOptions(path));
  writer.join();
  EXPECT_EQ(casesOf(*data), (std::vector<std::string>{"1|x|1", "2|y|1"}));
}

class Injections : public ::testing::TestWithParam<const char*> {};

TEST_P(Injections, AreRefused) {
  const DataFolder folder;
  folder.write("other.csv", "a\n1\n");
  std::string sql = GetParam();
  for (size_t at; (at = sql.find("DIR")) != std::string::npos;) {
    sql.replace(at, 3, folder.path("").substr(0, folder.path("").size() - 1));
  }
  for (const std::string& data :
       {folder.write("a.csv", "a\n1\n"),
        folder.makeDatabase("a.duckdb", "CREATE TABLE data AS SELECT 1 AS a")}) {
    DataOptions options = dataOptions(data);
    options.query = sql;
    std::string message = refusal(options);
    if (message.empty()) message = casesOf(options).back();
    EXPECT_TRUE(has(message, "--query") || has(message, "failed: ")) << message;
    EXPECT_FALSE(std::filesystem::exists(folder.path("out.csv")));
    EXPECT_FALSE(std::filesystem::exists(folder.path("out")));
  }
}

INSTANTIATE_TEST_SUITE_P(
    Statements, Injections,
    ::testing::Values(
        "", ";", "SELECT 1 AS a; SELECT 2 AS b", "DROP TABLE data", "COPY data TO 'DIR/out.csv'",
        "COPY (SELECT 1) TO 'DIR/out.csv'", "EXPORT DATABASE 'DIR/out'", "ATTACH 'DIR/out' AS x",
        "INSTALL httpfs", "LOAD 'DIR/out'", "SET enable_external_access = true",
        "SET lock_configuration = false", "PRAGMA database_list", "CREATE TABLE x AS SELECT 1 AS a",
        "UPDATE data SET a = 2", "SELECT 1) UNION ALL (SELECT 2", "SELECT * FROM 'DIR/other.csv'",
        "SELECT * FROM read_csv('DIR/other.csv')", "SELECT content FROM read_text('/etc/passwd')",
        "SELECT file FROM glob('/etc/*')", "SELECT getenv('HOME') AS a", "SELECT * FROM none",
        "SELECT 1 AS a, 2 AS A", "EXPLAIN SELECT 1", "SELEC 1"));

TEST(ReadFailures, AFailedRunLeavesNoFilesBehind) {
  const DataFolder folder;
  setenv("TMPDIR", folder.path("").c_str(), 1);
  std::string text = "a,s\n";
  for (int i = 0; i < 300000; ++i)
    text += std::to_string(i) + ",\"" + std::to_string(i * 7) + "\"\n";
  DataOptions options = dataOptions(folder.write("a.csv", text + "1,2,3\n"));
  options.memoryLimit = 0;
  options.split = {"s"};
  EXPECT_TRUE(has(casesOf(options).back(), "failed: "));
  unsetenv("TMPDIR");
  int entries = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder.path(""))) {
    EXPECT_EQ(entry.path().filename(), "a.csv");
    ++entries;
  }
  EXPECT_EQ(entries, 1);
}

}  // namespace
}  // namespace workbench
