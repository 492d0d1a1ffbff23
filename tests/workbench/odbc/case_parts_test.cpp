#include "workbench/odbc/case_parts.h"

#include <gtest/gtest.h>

namespace workbench {
namespace {

ServerColumn column(const std::string& name, ServerKind kind) {
  ServerColumn made;
  made.name = name;
  made.quoted = "`" + name + "`";
  made.kind = kind;
  return made;
}

const ServerColumn kYes = column("yes", ServerKind::kNumber);
const ServerColumn kWord = column("word", ServerKind::kText);
const Selection kBoth{{{&kYes}, {&kWord, true}}, nullptr};
constexpr const char* kPart =
    "MOD(0 + 1 * COALESCE(CRC32(`yes`), 0) + 3 * COALESCE(CRC32(CONVERT(`word` USING utf8mb4)), "
    "0), 4096)";

std::vector<std::string> texts(const std::vector<PartRange>& ranges) {
  std::vector<std::string> all;
  for (const PartRange& range : ranges) {
    all.push_back(std::to_string(range.first) + "-" + std::to_string(range.last) + ": " +
                  std::to_string(range.cases) + (range.counted ? " counted" : ""));
  }
  return all;
}

using Texts = std::vector<std::string>;

TEST(CaseParts, AreMeasuredByAStatement) {
  EXPECT_EQ(partSizesStatement(dialectOf("MariaDB"), kBoth, "t"),
            std::string("SELECT ") + kPart +
                ", COUNT(*), SUM(0 + COALESCE(OCTET_LENGTH(`yes`), 0) + "
                "COALESCE(OCTET_LENGTH(CONVERT(`word` USING utf8mb4)), 0)) FROM t GROUP BY " +
                kPart);
}

TEST(CaseParts, NeighboursComeTogetherAsFarAsTheyFit) {
  // A row takes 64 + 24 bytes and its texts.
  const std::vector<PartSize> sizes{{0, 10, 120}, {1, 10, 120}, {3, 10, 120}, {9, 1, 0}};
  EXPECT_EQ(texts(partRanges(sizes, 1, 2000)), (Texts{"0-1: 20", "3-9: 11"}));
  EXPECT_EQ(texts(partRanges(sizes, 1, 1000)), (Texts{"0-0: 10", "1-1: 10", "3-3: 10", "9-9: 1"}));
  EXPECT_EQ(texts(partRanges(sizes, 1, 1e9)), (Texts{"0-9: 31"}));
  EXPECT_EQ(texts(partRanges({}, 1, 1e9)), Texts{});
}

TEST(CaseParts, ComeInTheirOrderWhateverTheServers) {
  EXPECT_EQ(texts(partRanges({{7, 1, 0}, {2, 1, 0}, {4095, 1, 0}}, 1, 1e9)), (Texts{"2-4095: 3"}));
}

TEST(CaseParts, OneThatIsTooLargeIsCounted) {
  const std::vector<PartSize> sizes{{0, 1, 0}, {1, 100, 0}, {2, 1, 0}, {3, 1, 0}};
  EXPECT_EQ(texts(partRanges(sizes, 1, 2000)), (Texts{"0-0: 1", "1-1: 100 counted", "2-3: 2"}));
}

TEST(CaseParts, TextsCountByTheirBytes) {
  EXPECT_EQ(texts(partRanges({{0, 1, 900}, {1, 1, 900}}, 1, 1000)), (Texts{"0-0: 1", "1-1: 1"}));
}

TEST(CaseParts, ComeByOneStatementEach) {
  const Dialect& dialect = dialectOf("MariaDB");
  EXPECT_EQ(partStatement(dialect, kBoth, "t", {3, 9, 20, false}),
            std::string("SELECT `yes`, CONVERT(`word` USING utf8mb4) FROM t WHERE ") + kPart +
                " BETWEEN 3 AND 9");
  EXPECT_EQ(
      partStatement(dialect, kBoth, "t", {3, 3, 20, true}),
      std::string("SELECT `yes`, MIN(CONVERT(`word` USING utf8mb4)), COUNT(*) FROM t WHERE ") +
          kPart + " BETWEEN 3 AND 3 GROUP BY `yes`, HEX(CONVERT(`word` USING utf8mb4))");
}

TEST(CaseParts, NeedNoColumn) {
  const Dialect& dialect = dialectOf("MariaDB");
  EXPECT_EQ(partStatement(dialect, {}, "t", {0, 0, 1, true}),
            "SELECT 1, COUNT(*) FROM t WHERE MOD(0, 4096) BETWEEN 0 AND 0 GROUP BY 1");
  EXPECT_EQ(partSizesStatement(dialect, {}, "t"),
            "SELECT MOD(0, 4096), COUNT(*), SUM(0) FROM t GROUP BY MOD(0, 4096)");
}

}  // namespace
}  // namespace workbench
