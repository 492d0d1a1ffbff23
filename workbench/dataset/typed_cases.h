/// Sources whose values have types of their own.
#pragma once

#include <memory>
#include <vector>

#include "workbench/dataset/case_source.h"
#include "workbench/dataset/typed_blocks.h"
#include "workbench/values/field.h"

namespace workbench {

/// What such sources share: how rows become cases.
class TypedCases : public CaseSource {
 public:
  const std::vector<SourceVariable>& variables() const final { return variables_; }
  CodedCases read(const CaseRequest& request) final;
  void forEachBlock(const CaseRequest& request,
                    const std::function<void(const CaseBlock&)>& take) final;

 protected:
  explicit TypedCases(FieldRules rules);
  void add(TypedColumnFacts facts, SourceVariable variable);
  const std::vector<TypedColumnFacts>& columns() const { return columns_; }

  virtual std::unique_ptr<TypedRows> openRows(const CaseRequest& request) = 0;

 private:
  TypedBlocks openBlocks(const CaseRequest& request);

  FieldRules rules_;
  std::vector<TypedColumnFacts> columns_;
  std::vector<SourceVariable> variables_;
  std::vector<SpelledColumn> understood_;  // of the last read
};

}  // namespace workbench
