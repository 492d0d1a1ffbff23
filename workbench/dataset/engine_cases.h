/// Cases that the data engine reads.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "workbench/dataset/case_source.h"
#include "workbench/engine/source.h"

namespace workbench {

class EngineCases final : public CaseSource {
 public:
  explicit EngineCases(std::unique_ptr<Source> source);

  Source& source() { return *source_; }
  /// To be called when the source's columns are to be read differently.
  void declareVariables();

  const std::string& label() const override { return source_->label(); }
  const std::vector<SourceVariable>& variables() const override { return variables_; }
  CodedCases read(const CaseRequest& request) override;
  void forEachBlock(const CaseRequest& request,
                    const std::function<void(const CaseBlock&)>& take) override;
  void requestInterrupt() override { source_->requestInterrupt(); }
  bool interruptRequested() const override { return source_->interruptRequested(); }
  void setProgress(ProgressCallback callback) override {
    source_->setProgress(std::move(callback));
  }

 private:
  template <typename Run>
  auto translated(const CaseRequest& request, Run&& run);
  std::string typeGivenBy(const std::string& name) const;
  std::vector<ValueKind> kindsOf(const CaseRequest& request) const;

  std::unique_ptr<Source> source_;
  std::vector<SourceVariable> variables_;
};

}  // namespace workbench
