#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "workbench/values/field.h"

namespace workbench {
namespace {

KindSet kindsOf(const std::vector<std::string>& texts) {
  KindSet kinds;
  for (const std::string& text : texts) kinds.add(interpretField(text, FieldRules()));
  return kinds;
}

struct ColumnCase {
  std::vector<std::string> texts;
  FieldKind kind;
};

TEST(ColumnKinds, AreWhatAllValuesAreInAnyOrder) {
  for (auto [texts, kind] : std::initializer_list<ColumnCase>{
           {{}, FieldKind::kNumber},
           {{"", " "}, FieldKind::kNumber},
           {{"NA", ""}, FieldKind::kNumber},
           {{"1", "", "nan", "1e5", "NA"}, FieldKind::kNumber},
           {{"true", "FALSE", "NA"}, FieldKind::kBoolean},
           {{"true", "1"}, FieldKind::kText},
           {{"2024-01-07", ""}, FieldKind::kDate},
           {{"2024-01-07", "2024-01-07 10:00"}, FieldKind::kText},
           {{"10:00", "10:00:01"}, FieldKind::kTime},
           {{"2024-01-07 10:00", "2024-01-07T10:00"}, FieldKind::kDateTime},
           {{"2024-01-07 10:00Z", "2024-01-07 10:00+01"}, FieldKind::kZonedDateTime},
           {{"2024-01-07 10:00Z", "2024-01-07 10:00"}, FieldKind::kText},
           {{"1", "2", "x"}, FieldKind::kText},
           {{"1", "01"}, FieldKind::kText},
           {{"1", "9007199254740993"}, FieldKind::kText},
           {{"1", "9007199254740992"}, FieldKind::kNumber},
           {{"1", "1e999"}, FieldKind::kNumber},
           {{"x", "NA"}, FieldKind::kText},
       }) {
    std::sort(texts.begin(), texts.end());
    do {
      EXPECT_EQ(kindsOf(texts).columnKind(), kind) << testing::PrintToString(texts);
    } while (std::next_permutation(texts.begin(), texts.end()));
    if (texts.empty()) continue;
    KindSet merged = kindsOf({texts.begin() + 1, texts.end()});
    merged.add(kindsOf({texts.front()}));
    EXPECT_EQ(merged.columnKind(), kind);
  }
}

TEST(ColumnKinds, ADictionarysTypeDecides) {
  EXPECT_EQ(kindsOf({"1", "x"}).columnKind(DeclaredType::kInteger), FieldKind::kNumber);
  EXPECT_EQ(kindsOf({"1", "2"}).columnKind(DeclaredType::kString), FieldKind::kText);
  EXPECT_EQ(kindsOf({"0", "1"}).columnKind(DeclaredType::kBoolean), FieldKind::kBoolean);
  EXPECT_EQ(kindsOf({}).columnKind(DeclaredType::kDateTime), FieldKind::kDateTime);
  EXPECT_EQ(kindsOf({"2024-01-07 10:00Z"}).columnKind(DeclaredType::kDateTime),
            FieldKind::kZonedDateTime);
  EXPECT_EQ(kindsOf({"1"}).columnKind(DeclaredType::kNone), FieldKind::kNumber);
}

struct DeclaredCase {
  DeclaredType type;
  const char* text;
  bool fits;
};

TEST(DeclaredTypes, RefuseValuesThatContradictThem) {
  using enum DeclaredType;
  for (const auto& [type, text, fits] : std::initializer_list<DeclaredCase>{
           {kInteger, "5", true},
           {kInteger, "5.0", true},
           {kInteger, "1e3", true},
           {kInteger, "nan", true},
           {kInteger, "", true},
           {kInteger, "NA", true},
           {kInteger, "5.5", false},
           {kInteger, "05", false},
           {kInteger, "inf", false},
           {kInteger, "x", false},
           {kInteger, "true", false},
           {kInteger, "9007199254740993", false},
           {kNumber, "5.5", true},
           {kNumber, "inf", true},
           {kNumber, "05", false},
           {kNumber, "1e999", false},
           {kNumber, "true", false},
           {kNumber, "9007199254740993", false},
           {kBoolean, "true", true},
           {kBoolean, "0", true},
           {kBoolean, "1", true},
           {kBoolean, "2", false},
           {kBoolean, "yes", false},
           {kBoolean, "NA", true},
           {kString, "05", true},
           {kString, "1e999", true},
           {kDate, "2024-01-07", true},
           {kDate, "2024-01-07 10:00", false},
           {kDate, "07.01.2024", false},
           {kTime, "10:00", true},
           {kTime, "25:00", false},
           {kDateTime, "2024-01-07 10:00", true},
           {kDateTime, "2024-01-07", false},
       }) {
    const FieldValue value = interpretField(text, FieldRules());
    KindSet kinds;
    kinds.add(value);
    EXPECT_EQ(contradiction(kinds.columnKind(type), type, value).empty(), fits) << text;
  }
}

TEST(DeclaredTypes, DateTimesWithAndWithoutZoneContradictEachOther) {
  KindSet kinds = kindsOf({"2024-01-07 10:00", "2024-01-07 10:00Z"});
  const FieldKind column = kinds.columnKind(DeclaredType::kDateTime);
  EXPECT_EQ(column, FieldKind::kDateTime);
  EXPECT_EQ(contradiction(column, DeclaredType::kDateTime,
                          interpretField("2024-01-07 10:00Z", FieldRules())),
            "has a zone, which other dates and times of the column lack");
}

TEST(DeclaredTypes, WithoutOneOnlyAnOverflowIsRefused) {
  const FieldValue huge = interpretField("1e999", FieldRules());
  EXPECT_EQ(contradiction(FieldKind::kNumber, DeclaredType::kNone, huge),
            "is beyond the range of numbers");
  EXPECT_EQ(contradiction(FieldKind::kText, DeclaredType::kNone, huge), "");
}

}  // namespace
}  // namespace workbench
