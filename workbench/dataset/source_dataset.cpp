#include "workbench/dataset/source_dataset.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

#include "workbench/dataset/variable.h"
#include "workbench/engine/read_problem.h"
#include "workbench/text/nearest.h"

namespace workbench {

std::unique_ptr<SourceDataset> openDataset(const DataOptions& options) {
  return std::make_unique<SourceDataset>(options);
}

SourceDataset::SourceDataset(const DataOptions& options)
    : separate_(options.separateTables),
      collapse_(options.collapse),
      memoryLimit_(options.memoryLimit) {
  openDictionary(options);
  source_ = openSource({options.data, options.query, options.table, options.interrupted},
                       [this](const std::string& name) -> const std::vector<std::string>& {
                         return dictionary_.missingTexts(name);
                       });
  std::vector<std::string> names;
  for (const SourceColumn& column : source_->columns()) {
    names.push_back(column.name);
    names_.add(column.name);
  }
  dictionary_.refuseUnknown(names);
  for (size_t i = 0; i < names.size(); ++i) {
    source_->setReading(i, dictionary_.reading(source_->columns()[i]));
  }
  declareVariables();
  chooseVariables(options);
  beginCommand({});
}

SourceDataset::~SourceDataset() = default;

void SourceDataset::openDictionary(const DataOptions& options) {
  if (options.schema) {
    dictionary_ = Dictionary(*options.schema);
    return;
  }
  const std::string beside = dictionaryBeside(options.data);
  std::error_code error;
  if (!beside.empty() && std::filesystem::exists(beside, error)) dictionary_ = Dictionary(beside);
}

void SourceDataset::declareVariables() {
  variables_.clear();
  unusable_.clear();
  for (const SourceColumn& column : source_->columns()) {
    variables_.push_back(dictionary_.variable(column));
    const bool usable = column.reading.form != ColumnForm::kUnusable;
    unusable_.push_back(usable ? ""
                               : fmt::format("{} holds lists, structures or bytes; take the part "
                                             "that is wanted with --query",
                                             column.name));
  }
  widthKnown_.assign(variables_.size(), false);
}

VarIndex SourceDataset::findOrRefuse(const std::string& name, const char* option) const {
  const VarIndex index = names_.find(name);
  if (index < 0) {
    const std::string guess = nearest(name, names_.names());
    throw DataError(fmt::format("{}: the data have no variable {}{}", option, name,
                                guess.empty() ? "." : "; did you mean " + guess + "?"));
  }
  const std::string& reason = unusableBecause(index);
  if (!reason.empty()) throw DataError(fmt::format("{}: {}.", option, reason));
  return index;
}

void SourceDataset::chooseVariables(const DataOptions& options) {
  if (options.weight) weight_ = findOrRefuse(*options.weight, "--weight");
  for (const std::string& name : options.split) {
    const VarIndex index = findOrRefuse(name, "--split");
    if (std::find(split_.begin(), split_.end(), index) != split_.end()) {
      throw DataError(fmt::format("--split: {} is named twice.", declaration(index).name));
    }
    if (index == weight_) {
      throw DataError(
          fmt::format("--split: {} is the weight variable, too.", declaration(index).name));
    }
    split_.push_back(index);
  }
}

const std::string& SourceDataset::unusableBecause(VarIndex index) const {
  return unusable_[static_cast<size_t>(index)];
}

const Variable& SourceDataset::declaration(VarIndex index) const {
  return variables_[static_cast<size_t>(index)];
}

bool SourceDataset::isProjected(VarIndex index) const {
  return std::binary_search(projection_.begin(), projection_.end(), index);
}

void SourceDataset::beginCommand(const std::vector<VarIndex>& mentioned) {
  if (mustRestart_) {
    mustRestart_ = false;
    failed_ = false;
    failure_.clear();
    store_.reset();
  }
  std::vector<VarIndex> wanted = split_;
  for (const VarIndex index : mentioned) {
    if (index >= 0 && index < variableCount() && unusableBecause(index).empty()) {
      wanted.push_back(index);
    }
  }
  std::sort(wanted.begin(), wanted.end());
  wanted.erase(std::unique(wanted.begin(), wanted.end()), wanted.end());
  cursor_.reset();
  firstPassCases_ = -1;
  // What was read for the command before serves again when it holds all that is wanted.
  if (store_ != nullptr &&
      std::includes(projection_.begin(), projection_.end(), wanted.begin(), wanted.end())) {
    return;
  }
  store_.reset();
  projection_ = std::move(wanted);
}

CasePlan SourceDataset::plan() const {
  CasePlan plan;
  plan.source = source_.get();
  for (const VarIndex index : projection_) {
    plan.columns.push_back({index, &declaration(index),
                            dictionary_.wholeOnly(declaration(index).name) &&
                                declaration(index).kind == ValueKind::kNumber});
  }
  plan.split = split_;
  plan.weight = weight_;
  if (weight_ >= 0) plan.weightEntry = &declaration(weight_);
  plan.collapse = collapse_;
  plan.memoryLimit = memoryLimit_;
  return plan;
}

bool SourceDataset::readCasesOnce() {
  if (failed_) return false;
  if (store_ != nullptr) return true;
  try {
    store_ = readCases(plan());
    for (size_t i = 0; i < projection_.size(); ++i) {
      const auto index = static_cast<size_t>(projection_[i]);
      if (!variables_[index].isString()) continue;
      variables_[index].width = std::max(1, store_->width(i));
      widthKnown_[index] = true;
    }
  } catch (const std::exception& error) {
    passFailed(error);
  }
  return !failed_;
}

const Variable& SourceDataset::variable(VarIndex index) {
  const auto position = static_cast<size_t>(index);
  if (!variables_[position].isString() || widthKnown_[position] || failed_ ||
      !unusable_[position].empty()) {
    return variables_[position];
  }
  if (!isProjected(index)) {
    if (store_ != nullptr) {
      readWidth(index);
      return variables_[position];
    }
    projection_.insert(std::upper_bound(projection_.begin(), projection_.end(), index), index);
  }
  readCasesOnce();
  return variables_[position];
}

/// For a string variable that the command was not expected to look at.
void SourceDataset::readWidth(VarIndex index) {
  const auto column = static_cast<size_t>(index);
  try {
    Query query(
        source_->database(),
        fmt::format("SELECT CAST(coalesce(max(strlen(rtrim({}, ' '))), 1) AS BIGINT) FROM {}",
                    source_->value(column), source_->relation({column})));
    const Chunk chunk = query.fetch();
    variables_[column].width =
        static_cast<int32_t>(std::clamp<int64_t>(chunk.data<int64_t>(0)[0], 1, 32'767));
    widthKnown_[column] = true;
  } catch (const std::exception& error) {
    passFailed(error);
  }
}

std::unique_ptr<CaseFeed> SourceDataset::openFeed() {
  if (!readCasesOnce()) return nullptr;
  ColumnViews views(variableCount());
  for (VarIndex index = 0; index < variableCount(); ++index) views.showMissing(*this, index);
  cursor_ = std::make_shared<SplitCursor>();
  try {
    return store_->openFeed(std::move(views), cursor_, *this);
  } catch (const std::exception& error) {
    passFailed(error);
    return nullptr;
  }
}

const std::vector<SplitValue>& SourceDataset::currentSplit() const {
  static const std::vector<SplitValue> none;
  return cursor_ == nullptr || cursor_->values == nullptr ? none : *cursor_->values;
}

bool SourceDataset::mayContinue() {
  if (source_->interruptRequested()) fail(Interrupted().what());
  return !failed_;
}

void SourceDataset::passComplete(int64_t cases) {
  if (firstPassCases_ >= 0 && firstPassCases_ != cases) {
    fail(
        fmt::format("{}: the data changed while they were read: {} cases in the first pass, {} in "
                    "the second. Run the command again.",
                    source_->label(), firstPassCases_, cases));
    return;
  }
  firstPassCases_ = cases;
  caseCount_ = cases;
}

void SourceDataset::passFailed(const std::exception& error) {
  if (dynamic_cast<const EngineError*>(&error) == nullptr) {
    fail(error.what());
  } else {
    failByEngine(error.what());
  }
}

void SourceDataset::fail(std::string text) {
  if (failed_) return;
  failed_ = true;
  failure_ = std::move(text);
}

void SourceDataset::failByEngine(const std::string& engineText) {
  const ReadProblem problem = readProblem(engineText, source_->label());
  if (!problem.conversion) return fail(problem.text);
  std::vector<size_t> columns;
  for (const VarIndex index : projection_) columns.push_back(static_cast<size_t>(index));
  if (weight_ >= 0) columns.push_back(static_cast<size_t>(weight_));
  bool changed = false;
  try {
    changed = source_->settle(columns);
  } catch (const EngineError&) {
    // The first complaint is the one to show.
    changed = false;
  } catch (const Interrupted& interrupted) {
    return fail(interrupted.what());
  }
  if (changed) {
    try {
      declareVariables();
    } catch (const DataError& error) {
      return fail(error.what());
    }
    mustRestart_ = true;
    return fail(problem.text);
  }
  const VarIndex index = problem.column.empty() ? -1 : names_.find(problem.column);
  const bool forced = index >= 0 && source_->columns()[static_cast<size_t>(index)].reading.forced;
  fail(forced
           ? fmt::format("{}\nThe dictionary {} gives the type.", problem.text, dictionary_.file())
           : problem.text);
}

}  // namespace workbench
