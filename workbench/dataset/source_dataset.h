/// The active data set over files, standard input or a database.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "workbench/dataset/active_dataset.h"
#include "workbench/dataset/case_source.h"
#include "workbench/dataset/case_store.h"
#include "workbench/dataset/dictionary.h"
#include "workbench/dataset/name_index.h"
#include "workbench/dataset/open_source.h"
#include "workbench/engine/engine_holder.h"
#include "workbench/session/progress.h"
#include "workbench/values/data_error.h"

namespace workbench {

struct DataOptions {
  std::string data;  ///< a file, a folder, a pattern, "-", "duckdb:FILE" or "odbc:..."
  std::optional<std::string> query;
  std::optional<std::string> table;
  /// The dictionary, or "none"; else the one beside the data, if any.
  std::optional<std::string> schema;
  /// Texts for missing values; else those that FieldRules begins with.
  std::optional<std::vector<std::string>> missingTexts;
  char decimal = '.';
  TextLayout layout;
  /// Which of --delimiter, --decimal and --encoding were given; refused where they say nothing.
  std::vector<std::string> textOptions;
  std::optional<std::string> weight;
  /// Outermost first; each a variable, or several with commas between them.
  std::vector<std::string> split;
  bool separateTables = false;
  ServerPassword password;                             ///< of "odbc:..."
  std::function<void(const std::string& file)> reads;  ///< as in ServerOptions
  CollapseMode collapse = CollapseMode::kAuto;
  size_t memoryLimit = size_t{400} << 20;  ///< bytes of cases that are held in memory
  /// Set from outside (by a signal handler, say) to make all reading fail; may be null, else it
  /// outlives the data set.
  const std::atomic<bool>* interrupted = nullptr;
  /// Told how far reading and passing over the cases is; may be empty. Called from any thread, one
  /// at a time.
  ProgressCallback progress;
};

/// Reads the cases of a command when they are first needed, and only its variables.
class SourceDataset final : public ActiveDataset, private FeedObserver {
 public:
  /// Reads names and types, and the dictionary. Throws DataError.
  explicit SourceDataset(const DataOptions& options);
  ~SourceDataset() override;

  void beginCommand(const std::vector<VarIndex>& mentioned) override;

  /// A list or a structure, say.
  std::string unusableBecause(VarIndex index) const override;

  /// The statements that reading the variables of the command begun would run elsewhere.
  std::vector<std::string> statements() const { return source_->statements(plan().request); }
  std::string cost() const override { return source_->cost(); }
  /// How many variables of a few cases can be read at a time in little memory.
  size_t mostVariables() const { return source_->mostColumns(); }
  /// Begins a command that looks at the variables and reads its cases, unless they do not fit into
  /// memory: false then. A failure shows as always.
  bool fitInMemory(const std::vector<VarIndex>& variables);

  int32_t variableCount() const override { return static_cast<int32_t>(variables_.size()); }
  const Variable& variable(VarIndex index) override;
  const Variable& declaration(VarIndex index) const override;
  VarIndex find(std::string_view name) const override { return names_.find(name); }
  const std::vector<VarIndex>& splitVariables() const override { return split_; }
  VarIndex weightVariable() const override { return weight_; }
  bool separateSplitLayout() const override { return separate_; }
  std::unique_ptr<CaseFeed> openFeed() override;
  const std::vector<SplitValue>& currentSplit() const override;
  const OddText* oddText(VarIndex index) const override;
  bool failed() const override { return failed_; }
  const std::string& failure() const override { return failure_; }
  int64_t caseCount() const override { return caseCount_; }

 private:
  bool mayContinue() override;
  void passComplete(int64_t cases) override;
  void passFailed(const std::exception& error) override;

  void openDictionary(const DataOptions& options, const std::string& beside);
  void declareVariables();
  void declare(VarIndex index);
  void chooseVariables(const DataOptions& options);
  std::vector<std::string> namesIn(const std::string& list) const;
  VarIndex splitVariable(const std::string& name) const;
  VarIndex findOrRefuse(const std::string& name, const char* option) const;
  bool isProjected(VarIndex index) const;
  /// False after a failure, or when the cases would have to be spilled and must not.
  bool readCasesOnce(bool spilling = true);
  CaseRequest request(const std::vector<VarIndex>& variables) const;
  CasePlan plan() const;
  void settle(VarIndex index, int32_t width);
  void readAlone(VarIndex index);
  void fail(std::string text);

  /// For those who read: what of it is being done.
  ProgressCallback tellReading();

  ProgressCallback progress_;
  Phase reading_ = Phase::kReading;  // what a read is for
  int passes_ = 0;                   // over the cases of the command
  Dictionary dictionary_;
  std::unique_ptr<CaseSource> source_;
  EngineHolder workspace_;  // for cases that do not fit into memory
  std::vector<ColumnType> types_;
  std::vector<Variable> variables_;
  std::vector<std::string> unusable_;  // by variable
  std::vector<bool> settled_;          // by variable: kind and width are known
  NameIndex names_;
  VarIndex weight_ = -1;
  std::vector<VarIndex> split_;
  bool separate_ = false;
  CollapseMode collapse_;
  size_t memoryLimit_;

  std::vector<VarIndex> projection_;  // ascending
  std::unique_ptr<CaseStore> store_;
  std::shared_ptr<SplitCursor> cursor_;
  int64_t caseCount_ = -1;
  int64_t firstPassCases_ = -1;
  bool failed_ = false;
  std::string failure_;
};

/// Opens the data. Throws DataError.
std::unique_ptr<SourceDataset> openDataset(const DataOptions& options);

}  // namespace workbench
