// What queries, and views that lie in a database, may not do.
#include <gtest/gtest.h>

#include "tests/workbench/dataset/data_folder.h"

namespace workbench {
namespace {

using testing::casesOf;
using testing::DataFolder;
using testing::dataOptions;
using testing::refusal;

constexpr const char* kForeign[] = {
    "SELECT * FROM enable_logging(level='trace', storage='stdout')",
    "SELECT x FROM t, enable_logging(level='trace')",
    "SELECT (SELECT count(*) FROM truncate_duckdb_logs()) AS x FROM t",
    "WITH c AS (SELECT * FROM duckdb_settings()) SELECT count(*) AS x FROM c",
    "SELECT * FROM query('SELECT * FROM enable_logging()')",
    "SELECT * FROM checkpoint()"};

TEST(Confinement, QueriesOnlyRead) {
  const DataFolder folder;
  DataOptions options = dataOptions(folder.makeDatabase("a.db", "CREATE TABLE t AS SELECT 1 AS x"));
  for (const char* query : kForeign) {
    options.query = query;
    EXPECT_NE(refusal(options).find("may only read the data that were named"), std::string::npos)
        << query << ": " << refusal(options);
  }
  options.query =
      "WITH RECURSIVE r(x) AS (SELECT 1 UNION ALL SELECT x + 1 FROM r WHERE x < 4) SELECT x, "
      "row_number() OVER (ORDER BY x DESC) AS n FROM r JOIN generate_series(2, 3) g(i) ON x = i";
  EXPECT_EQ(casesOf(options).size(), 2U);
}

TEST(Confinement, ViewsAndMacrosOnlyRead) {
  const DataFolder folder;
  DataOptions options = dataOptions(folder.makeDatabase(
      "a.db",
      "CREATE TABLE t AS SELECT 1 AS x; CREATE VIEW v AS SELECT * FROM enable_logging(); "
      "CREATE MACRO m() AS TABLE SELECT * FROM enable_logging(); CREATE VIEW w AS FROM m();"));
  for (const char* view : {"v", "w"}) {
    options.table = view;
    EXPECT_NE(refusal(options).find("may only read the data that were named"), std::string::npos)
        << view << ": " << refusal(options);
  }
  options.table = "t";
  EXPECT_EQ(refusal(options), "");
}

TEST(Confinement, SettingsAndOtherFilesAreOutOfReach) {
  const DataFolder folder;
  const std::string other = folder.write("other.csv", "x\n1\n");
  for (const std::string& data : {folder.makeDatabase("a.db", "CREATE TABLE t AS SELECT 1 AS x"),
                                  folder.write("a.csv", "x\n1\n"),
                                  folder.make("a.parquet", "COPY (SELECT 1 AS x) TO FILE")}) {
    DataOptions options = dataOptions(data);
    for (const std::string& query :
         {"SELECT * FROM read_csv('" + other + "')", std::string("SELECT * FROM glob('/*')"),
          std::string("SET memory_limit = '9GB'"), std::string("INSTALL httpfs"),
          "ATTACH '" + folder.path("new.db") + "'", "SELECT * FROM '" + other + "'"}) {
      options.query = query;
      EXPECT_NE(refusal(options), "") << query;
    }
  }
}

}  // namespace
}  // namespace workbench
