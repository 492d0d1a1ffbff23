#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "host/data_source.h"
#include "tests/memory/memory_dataset.h"
#include "workbench/session/session.h"

namespace workbench {
namespace {

class HostDataSource : public ::testing::Test {
 protected:
  HostDataSource() {
    Variable number;
    number.name = "size";
    number.label = "Size of it";
    number.missingNumbers = {9, 99};
    number.missingLow = 1000;
    number.missingHigh = HUGE_VAL;
    number.numberLabels = {{1, "small"}};
    data_.addNumbers(number, {1, 9, 2});
    Variable text;
    text.name = "Größe";
    text.missingStrings = {"NA"};
    text.stringLabels = {{"x", "ex"}};
    data_.addStrings(text, {"x", "NA", "123456789"});
    Variable date;
    date.name = "day";
    date.kind = ValueKind::kDate;
    data_.addNumbers(date, {0, 1, 2});
    data_.addStrings("empty", {"", "", ""});
    session_.dataset = &data_;
    scope_ = std::make_unique<SessionScope>(session_);
    source_ = std::make_unique<ProcedureDataSource>();
  }

  MemoryDataset data_;
  Session session_;
  std::unique_ptr<SessionScope> scope_;
  std::unique_ptr<ProcedureDataSource> source_;
};

TEST_F(HostDataSource, ShowsVariables) {
  EXPECT_EQ(source_->GetVariableCount(), 4);
  const ZELK_Variable& size = source_->GetVariable(0);
  EXPECT_EQ(size.GetType(), 0);
  EXPECT_TRUE(size.GetName() == "size");
  EXPECT_TRUE(size.GetUpName() == "SIZE");
  EXPECT_EQ(size.GetLabel(), "Size of it");
  EXPECT_EQ(&size, &source_->GetVariable(0));
  EXPECT_TRUE(source_->GetVariable(1).GetUpName() == "GRÖSSE");
  EXPECT_EQ(source_->GetVariable(1).GetType(), 9);
  EXPECT_EQ(source_->GetVariable(3).GetType(), 1) << "a string variable is one even when empty";
  EXPECT_EQ(source_->FindVariable("SIZE"), 0);
  EXPECT_LT(source_->FindVariable("sizes"), 0);
}

TEST_F(HostDataSource, FormatsTellStringsFromNumbers) {
  EXPECT_EQ(source_->GetVariable(0).GetFormatEx().type, 0);
  EXPECT_EQ(source_->GetVariable(1).GetFormatEx().type, kStringFormatType);
  EXPECT_GT(source_->GetVariable(2).GetFormatEx().type, 2);
  EXPECT_EQ(source_->GetVariable(3).GetFormat().type, kStringFormatType);
}

TEST_F(HostDataSource, TellsMissingNumbers) {
  const ZELK_Variable& size = source_->GetVariable(0);
  for (const double missing : {kSystemMissing, 9.0, 99.0, 1000.0, 1e6, HUGE_VAL}) {
    EXPECT_TRUE(size.IsMissing(&missing)) << missing;
  }
  for (const double valid : {1.0, 0.0, 999.0, -HUGE_VAL}) {
    EXPECT_FALSE(size.IsMissing(&valid)) << valid;
  }
}

TEST_F(HostDataSource, TellsMissingStrings) {
  const ZELK_Variable& text = source_->GetVariable(1);
  EXPECT_TRUE(text.IsMissing("                "));
  EXPECT_TRUE(text.IsMissing("NA              "));
  EXPECT_FALSE(text.IsMissing(" NA             "));
  EXPECT_FALSE(text.IsMissing("NAN             "));
}

TEST_F(HostDataSource, FindsValueLabels) {
  ASSERT_NE(source_->GetVariable(0).GetValueLabels().Find(1.0), nullptr);
  EXPECT_EQ(*source_->GetVariable(0).GetValueLabels().Find(1.0), "small");
  EXPECT_EQ(source_->GetVariable(0).GetValueLabels().Find(2.0), nullptr);
  EXPECT_EQ(*source_->GetVariable(1).GetValueLabels().Find("x"), "ex");
}

TEST_F(HostDataSource, MakesIteratorsAndKeys) {
  const std::unique_ptr<ZELK_InputCaseIterator> iterator(source_->MakeIterator(nullptr));
  ASSERT_NE(dynamic_cast<ProcDSIterator*>(iterator.get()), nullptr);
  int cases = 0;
  while (iterator->NextCase() != nullptr) ++cases;
  EXPECT_EQ(cases, 3);
  EXPECT_EQ(ObsVecMap::MakeKeySpec(*source_, {0, 1, 3}), (std::vector<int32_t>{1, 2, 1}));
}

TEST_F(HostDataSource, ShowsSplitAndWeight) {
  EXPECT_EQ(source_->GetNSplitVars(), 0);
  EXPECT_LT(source_->GetWeightVarIndex(), 0);
  EXPECT_FALSE(source_->SplitLayoutSeparate());
  data_.setSplit({2, 1});
  data_.setWeight(0);
  data_.setSeparateSplitLayout(true);
  EXPECT_EQ(source_->GetNSplitVars(), 2);
  EXPECT_EQ(source_->GetSplitVarIndex(0), 2);
  EXPECT_EQ(source_->GetSplitVarIndex(1), 1);
  EXPECT_EQ(source_->GetWeightVarIndex(), 0);
  EXPECT_TRUE(source_->SplitLayoutSeparate());
}

TEST_F(HostDataSource, ReadErrorsAreFatalForEver) {
  EXPECT_FALSE(source_->FatalError());
  data_.setChunkSize(1);
  data_.failAfter(1, "gone");
  const std::unique_ptr<ZELK_InputCaseIterator> iterator(source_->MakeIterator());
  EXPECT_NE(iterator->NextCase(), nullptr);
  EXPECT_EQ(iterator->NextCase(), nullptr);
  EXPECT_EQ(iterator->NextCase(), nullptr);
  EXPECT_TRUE(source_->FatalError());
  EXPECT_EQ(source_->MakeIterator(), nullptr);
}

TEST(HostDataSourceAlone, NeedsASession) { EXPECT_THROW(ProcedureDataSource(), std::logic_error); }

}  // namespace
}  // namespace workbench
