#include "workbench/engine/database.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "workbench/engine/temp_folder.h"
#include "workbench/values/data_error.h"

namespace workbench {
namespace {

TEST(DuckdbLibrary, SaysWhatWasLookedForAndWhatToDo) {
  try {
    loadDuckdb({"/nowhere/libduckdb.so", "/neither/libduckdb.so"});
    FAIL() << "nothing was thrown";
  } catch (const DataError& error) {
    const std::string text = error.what();
    EXPECT_NE(text.find("/nowhere/libduckdb.so and /neither/libduckdb.so"), std::string::npos);
    EXPECT_NE(text.find("make setup build"), std::string::npos);
  }
}

TEST(DuckdbLibrary, RefusesWhatIsNotTheEngine) {
  const TempFolder folder;
  const std::string file = folder.path() + "/libduckdb.so";
  std::ofstream(file) << "no library";
  EXPECT_THROW(loadDuckdb({file}), DataError);
}

TEST(Database, StreamsResultsInOrder) {
  Database database("", {});
  Query query(database, "SELECT range FROM range(100000)");
  int64_t expected = 0;
  while (const Chunk chunk = query.fetch()) {
    const auto* values = chunk.data<int64_t>(0);
    for (size_t row = 0; row < chunk.size(); ++row) ASSERT_EQ(values[row], expected++);
  }
  EXPECT_EQ(expected, 100000);
  EXPECT_FALSE(query.fetch());
}

TEST(Database, ReportsErrors) {
  Database database("", {});
  EXPECT_THROW(database.execute("nonsense"), EngineError);
  EXPECT_THROW(Query(database, "SELECT * FROM nowhere"), EngineError);
  EXPECT_THROW(
      {
        Query query(
            database,
            "SELECT CASE WHEN range < 50000 THEN 1 ELSE error('late') END FROM range(100000)");
        while (query.fetch()) {
        }
      },
      EngineError);
  EXPECT_THROW(Database("", {{"no_such_setting", "1"}}), EngineError);
}

TEST(Database, StopsForEver) {
  Database database("", {});
  const std::atomic<bool> interrupted{true};
  database.watch(&interrupted);
  EXPECT_THROW(Query(database, "SELECT 1"), Interrupted);
}

TEST(Statement, TakesOneSelectOnly) {
  Database database("", {});
  EXPECT_EQ(Statement::selectOnly(database, "SELECT 1 AS a, 'x' AS b; ").columnCount(), 2U);
  EXPECT_THROW(Statement::selectOnly(database, ""), std::invalid_argument);
  EXPECT_THROW(Statement::selectOnly(database, "SELECT 1; SELECT 2"), std::invalid_argument);
  EXPECT_THROW(Statement::selectOnly(database, "CREATE TABLE t (a INT)"), std::invalid_argument);
  EXPECT_THROW(Statement::selectOnly(database, "SELEC 1"), EngineError);
}

TEST(Quoting, DoublesQuotes) {
  EXPECT_EQ(quotedName("a\"b"), "\"a\"\"b\"");
  EXPECT_EQ(quotedText("it's"), "'it''s'");
}

TEST(TempFolder, GoesWithItsContents) {
  std::string path;
  {
    const TempFolder folder;
    path = folder.path();
    std::ofstream(path + "/x") << "x";
    EXPECT_TRUE(std::filesystem::exists(path));
  }
  EXPECT_FALSE(std::filesystem::exists(path));
}

TEST(TempFolder, NeedsAFolderThatCanBeWrittenTo) {
  setenv("TMPDIR", "/no/such/folder", 1);
  EXPECT_THROW(TempFolder(), DataError);
  unsetenv("TMPDIR");
}

}  // namespace
}  // namespace workbench
