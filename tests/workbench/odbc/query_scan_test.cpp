#include "workbench/odbc/query_scan.h"

#include <gtest/gtest.h>

#include "workbench/odbc/dialect.h"
#include "workbench/values/data_error.h"

namespace workbench {
namespace {

const ScanRules& postgres() { return dialectOf("PostgreSQL").scan; }
const ScanRules& maria() { return dialectOf("MariaDB").scan; }
const ScanRules& sqlite() { return dialectOf("SQLite").scan; }
const ScanRules& unknown() { return dialectOf("Anything").scan; }

bool passes(const std::string& query, const ScanRules& rules) {
  try {
    scannedQuery(query, rules);
    return true;
  } catch (const DataError&) {
    return false;
  }
}

TEST(ScannedQuery, LosesWhatStandsBehindIt) {
  EXPECT_EQ(scannedQuery("SELECT 1 ; \n -- done\n", postgres()), "SELECT 1");
  EXPECT_EQ(scannedQuery("/* a */ select ')' as \"a;(\"", sqlite()),
            "/* a */ select ')' as \"a;(\"");
}

TEST(ScannedQuery, IsOneThatSelectsEverywhere) {
  for (const ScanRules* rules : {&postgres(), &maria(), &sqlite(), &unknown()}) {
    for (const char* query : {"SELECT 1", "(select 1)", "WITH a AS (SELECT 1) SELECT * FROM a",
                              "VALUES (1)", "-- why\nSELECT 'a''b;'", "SELECT \"a\"\";\" FROM t"}) {
      EXPECT_TRUE(passes(query, *rules)) << query;
    }
    for (const char* query :
         {"", ";", "-- nothing", "DELETE FROM t", "SELECT 1; DROP TABLE t", "SELECT 1) x; --",
          "SELECT (1", "SELECT 'a", "SELECT /* a", "SELECT 1;;SELECT 2", "SELECT \"a",
          "EXPLAIN SELECT 1", "'SELECT' 1"}) {
      EXPECT_FALSE(passes(query, *rules)) << query;
    }
  }
}

TEST(ScannedQuery, ReadsQuotesAndCommentsAsTheServerDoes) {
  EXPECT_TRUE(passes("SELECT $a$;)$$;$a$", postgres()));
  EXPECT_FALSE(passes("SELECT $a$;)$$;", postgres()));
  EXPECT_FALSE(passes("SELECT a$1$; DROP TABLE t; SELECT $1$", postgres()));
  EXPECT_TRUE(passes("SELECT 1 /* /* ; */ ; */", postgres()));
  EXPECT_FALSE(passes("SELECT 1 /* /* ; */ ) */", sqlite()));
  EXPECT_TRUE(passes("SELECT E'\\';'", postgres()));
  EXPECT_FALSE(passes("SELECT '\\'; DROP TABLE t; --'", postgres()));
  EXPECT_FALSE(passes("SELECT name'\\'; DROP TABLE t; --'", postgres()));
  EXPECT_TRUE(passes("SELECT '\\';'", maria()));
  EXPECT_TRUE(passes("SELECT 1 # ;)", maria()));
  EXPECT_FALSE(passes("SELECT 1 # ;)", postgres()));
  EXPECT_FALSE(passes("SELECT 1--1; DROP TABLE t", maria()));
  EXPECT_TRUE(passes("SELECT 1--1; no statement", sqlite()));
  EXPECT_FALSE(passes("SELECT 1 /*! ) */", maria()));
  EXPECT_FALSE(passes("SELECT 1 /*M! ) */", maria()));
}

TEST(ScannedQuery, IsRefusedWhereAnUnknownServerMightReadItOtherwise) {
  for (const char* query : {"SELECT 'a\\'", "SELECT $1", "SELECT `a`", "SELECT 1 # a",
                            "SELECT 1--1", "SELECT 1 /* /* */ */", "SELECT 1 /*! a */"}) {
    EXPECT_FALSE(passes(query, unknown())) << query;
  }
}

}  // namespace
}  // namespace workbench
