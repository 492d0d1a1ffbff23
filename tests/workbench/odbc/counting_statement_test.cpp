#include "workbench/odbc/counting_statement.h"

#include <gtest/gtest.h>

namespace workbench {
namespace {

ServerColumn column(const std::string& name, ServerKind kind, bool floating = false) {
  ServerColumn made;
  made.name = name;
  made.quoted = "\"" + name + "\"";
  made.kind = kind;
  made.floating = floating;
  return made;
}

const ServerColumn kYes = column("yes", ServerKind::kNumber);
const ServerColumn kWord = column("word", ServerKind::kText);
const ServerColumn kWeight = column("w", ServerKind::kNumber, true);

std::string counting(const char* server, const Selection& selection) {
  return countingStatement(dialectOf(server), selection, "t").value_or("none");
}

TEST(CountingStatement, GroupsByTheValues) {
  EXPECT_EQ(counting("PostgreSQL", {{{&kYes}, {&kWord}}, nullptr}),
            "SELECT \"yes\", \"word\", COUNT(*) FROM t GROUP BY \"yes\", \"word\" LIMIT 200001");
  EXPECT_EQ(counting("PostgreSQL", {}), "SELECT COUNT(*) FROM t");
}

TEST(CountingStatement, RoundsTheWeight) {
  const std::string sql = counting("MariaDB", {{{&kYes}}, &kWeight});
  const std::string rounded = "CASE WHEN \"w\" >= 0.5 THEN FLOOR(\"w\" + 0.5) END";
  EXPECT_NE(sql.find("SELECT \"yes\", " + rounded + ", COUNT(*), SUM("), std::string::npos) << sql;
  EXPECT_NE(sql.find("GROUP BY \"yes\", " + rounded), std::string::npos) << sql;
}

TEST(CountingStatement, KeepsTextsApartByteForByte) {
  const Selection words{{{&kWord, true}}, nullptr};
  EXPECT_EQ(counting("MariaDB", words),
            "SELECT MIN(CONVERT(\"word\" USING utf8mb4)), COUNT(*) FROM t GROUP BY "
            "HEX(CONVERT(\"word\" USING utf8mb4)) LIMIT 200001");
  EXPECT_NE(counting("SQLite", words).find("GROUP BY \"word\" COLLATE BINARY"), std::string::npos);
  ServerColumn odd = kWord;
  odd.plainText = false;
  EXPECT_NE(counting("PostgreSQL", {{{&odd, true}}, nullptr}).find("COLLATE \"C\""),
            std::string::npos);
}

TEST(CountingStatement, OfAnUnknownServerHasNoTexts) {
  EXPECT_EQ(counting("Anything", {{{&kYes}, {&kWord, true}}, nullptr}), "none");
  EXPECT_EQ(counting("Anything", {{{&kYes}}, nullptr}),
            "SELECT \"yes\", COUNT(*) FROM t GROUP BY \"yes\"");
}

TEST(CasesStatement, HasARowForEachCase) {
  EXPECT_EQ(casesStatement(dialectOf("PostgreSQL"), {{{&kYes}, {&kWord, true}}, nullptr}, "t"),
            "SELECT \"yes\", \"word\" FROM t");
  EXPECT_EQ(casesStatement(dialectOf("PostgreSQL"), {}, "t"), "SELECT 1 FROM t");
}

}  // namespace
}  // namespace workbench
