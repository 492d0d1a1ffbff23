#include "workbench/dataset/source_dataset.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <system_error>
#include <utility>

#include "workbench/dataset/pass_progress.h"
#include "workbench/engine/read_problem.h"
#include "workbench/text/nearest.h"
#include "workbench/text/text_fold.h"
#include "workbench/values/excerpt.h"

namespace workbench {

std::unique_ptr<SourceDataset> openDataset(const DataOptions& options) {
  return std::make_unique<SourceDataset>(options);
}

SourceDataset::SourceDataset(const DataOptions& options)
    : progress_(options.progress),
      separate_(options.separateTables),
      collapse_(options.collapse),
      memoryLimit_(options.memoryLimit) {
  SourceOptions from{options.data,        options.query,       options.table,    FieldRules(),
                     options.layout,      options.textOptions, options.password, options.reads,
                     options.interrupted, tellReading()};
  from.rules.decimal = options.decimal;
  if (options.missingTexts) {
    from.rules.missingTexts = *options.missingTexts;
    from.rules.missingGiven = true;
  }
  OpenedSource opened = openSource(from);
  source_ = std::move(opened.source);
  workspace_.watch(options.interrupted);
  workspace_.setProgress([this](Phase, double percent, int64_t rows) {
    if (progress_ && reading_ == Phase::kKeeping) progress_(Phase::kSorting, percent, rows);
  });
  openDictionary(options, opened.dictionary);
  declareVariables();
  chooseVariables(options);
  beginCommand({});
}

SourceDataset::~SourceDataset() = default;

ProgressCallback SourceDataset::tellReading() {
  if (!progress_) return {};
  return [this](Phase phase, double percent, int64_t cases) {
    progress_(phase == Phase::kReading ? reading_ : phase, percent, cases);
  };
}

/// A dictionary that is given must match; one that is found says what it has to say.
void SourceDataset::openDictionary(const DataOptions& options, const std::string& beside) {
  if (options.schema == "none") return;
  if (options.schema) {
    dictionary_ = Dictionary(*options.schema, options.decimal);
    std::vector<std::string> names;
    for (const SourceVariable& column : source_->variables()) names.push_back(column.variable.name);
    dictionary_.refuseUnknown(names);
    return;
  }
  std::error_code error;
  if (!beside.empty() && std::filesystem::exists(beside, error))
    dictionary_ = Dictionary(beside, options.decimal);
}

namespace {

/// What a column will be, as far as that is known before it is read.
ValueKind plannedKind(const SourceVariable& column, const ColumnType& type) {
  using Name = ColumnType::Name;
  if (!type.codes.empty()) return ValueKind::kNumber;
  switch (type.name) {
    case Name::kString:
      return ValueKind::kString;
    case Name::kNumber:
    case Name::kInteger:
      return ValueKind::kNumber;
    case Name::kBoolean:
      return ValueKind::kBoolean;
    case Name::kDate:
      return ValueKind::kDate;
    case Name::kTime:
      return ValueKind::kTime;
    case Name::kDateTime:
      return ValueKind::kDateTime;
    case Name::kDetected:
      break;
  }
  return column.variable.kind;
}

/// A variable's width goes with the kind that it has in the end, not with that of the source.
void setWidth(Variable& variable, int32_t widest) {
  variable.width = variable.isString() ? std::max(1, widest) : 0;
}

}  // namespace

void SourceDataset::declareVariables() {
  const std::vector<SourceVariable>& columns = source_->variables();
  variables_.resize(columns.size());
  for (const SourceVariable& column : columns) {
    names_.add(column.variable.name);
    types_.push_back(dictionary_.type(column));
    unusable_.push_back(column.unusable);
    Variable planned = column.variable;
    planned.kind = plannedKind(column, types_.back());
    const size_t position = types_.size() - 1;
    // Value labels of a kind that may still turn out to be another are left for later.
    const bool known = column.kindKnown || types_.back().name != ColumnType::Name::kDetected ||
                       !types_.back().codes.empty();
    setWidth(planned, 1);
    variables_[position] =
        known ? dictionary_.variable(planned, types_.back()) : dictionary_.titled(planned);
    settled_.push_back(!column.unusable.empty() || (known && !planned.isString()));
  }
}

/// With the kind that the read has shown.
void SourceDataset::declare(VarIndex index) {
  const auto position = static_cast<size_t>(index);
  variables_[position] =
      dictionary_.variable(source_->variables()[position].variable, types_[position]);
}

namespace {

/// The names that begin with the text, else all of them; of many the first ones.
std::string namesLike(const std::string& start, const std::vector<std::string>& names) {
  constexpr size_t kShown = 10;
  const std::string folded = foldCase(start);
  std::vector<std::string> listed;
  for (const std::string& name : names) {
    if (foldCase(name).starts_with(folded)) listed.push_back(excerpt(name));
  }
  const bool isPart = !listed.empty();
  if (!isPart) {
    for (const std::string& name : names) listed.push_back(excerpt(name));
  }
  const size_t more = listed.size() - std::min(listed.size(), kShown);
  listed.resize(listed.size() - more);
  return fmt::format("{}{}", fmt::join(listed, ", "),
                     more > 0 ? fmt::format(" and {} more", more) : "");
}

/// Seconds since some day are no numbers of cases.
void refuseMomentsAsWeight(const Variable& weight) {
  const char* what = weight.kind == ValueKind::kDate       ? "dates"
                     : weight.kind == ValueKind::kTime     ? "times"
                     : weight.kind == ValueKind::kDateTime ? "dates and times"
                                                           : nullptr;
  if (what == nullptr) return;
  throw DataError(
      fmt::format("--weight: {} holds {}; a weight is a number of cases. Name another "
                  "variable, or make a number of it with --query.",
                  excerpt(weight.name), what));
}

}  // namespace

VarIndex SourceDataset::findOrRefuse(const std::string& name, const char* option) const {
  const VarIndex index = names_.find(name);
  if (index < 0) {
    const std::string guess = nearest(name, names_.names());
    throw DataError(fmt::format("{}: the data have no variable {}; {}", option, name,
                                guess.empty() ? "they have " + namesLike(name, names_.names()) + "."
                                              : "did you mean " + guess + "?"));
  }
  const std::string reason = unusableBecause(index);
  if (!reason.empty()) throw DataError(fmt::format("{}: {}.", option, reason));
  return index;
}

void SourceDataset::chooseVariables(const DataOptions& options) {
  if (options.weight) weight_ = findOrRefuse(*options.weight, "--weight");
  for (const std::string& list : options.split) {
    for (const std::string& name : namesIn(list)) split_.push_back(splitVariable(name));
  }
}

/// Variables with commas between them, or a single one with commas in its name.
std::vector<std::string> SourceDataset::namesIn(const std::string& list) const {
  if (names_.find(list) >= 0) return {list};
  std::vector<std::string> names(1);
  for (const char c : list) {
    if (c == ',') {
      names.emplace_back();
    } else {
      names.back() += c;
    }
  }
  const auto empty = std::find(names.begin(), names.end(), "");
  if (empty == names.end()) return names;
  if (names.size() == 1) {
    throw DataError("--split: the name is empty. Name a variable, or leave the option out.");
  }
  throw DataError(fmt::format(
      "--split: the name of place {} in '{}' is empty. Put one comma between two names.",
      empty - names.begin() + 1, excerpt(list)));
}

VarIndex SourceDataset::splitVariable(const std::string& name) const {
  const VarIndex index = findOrRefuse(name, "--split");
  if (std::find(split_.begin(), split_.end(), index) != split_.end()) {
    throw DataError(fmt::format("--split: {} is named twice.", declaration(index).name));
  }
  if (index == weight_) {
    throw DataError(
        fmt::format("--split: {} is the weight variable, too.", declaration(index).name));
  }
  return index;
}

std::string SourceDataset::unusableBecause(VarIndex index) const {
  return unusable_[static_cast<size_t>(index)];
}

const Variable& SourceDataset::declaration(VarIndex index) const {
  return variables_[static_cast<size_t>(index)];
}

bool SourceDataset::isProjected(VarIndex index) const {
  return std::binary_search(projection_.begin(), projection_.end(), index);
}

void SourceDataset::beginCommand(const std::vector<VarIndex>& mentioned) {
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
  caseCount_ = -1;
  passes_ = 0;
  // What was read for the command before serves again when it holds all that is wanted.
  if (store_ != nullptr &&
      std::includes(projection_.begin(), projection_.end(), wanted.begin(), wanted.end())) {
    return;
  }
  store_.reset();
  projection_ = std::move(wanted);
}

CaseRequest SourceDataset::request(const std::vector<VarIndex>& variables) const {
  CaseRequest request;
  for (const VarIndex index : variables) {
    const auto position = static_cast<size_t>(index);
    request.columns.push_back({position, types_[position]});
  }
  request.collapse = collapse_;
  request.memoryLimit = memoryLimit_;
  return request;
}

CasePlan SourceDataset::plan() const {
  CasePlan plan;
  std::vector<VarIndex> columns = projection_;
  if (weight_ >= 0) {
    columns.push_back(weight_);
    plan.weight = &declaration(weight_);
  }
  plan.request = request(columns);
  plan.request.weight = plan.weight;
  plan.variables = projection_;
  for (const VarIndex index : split_) {
    const auto at = std::lower_bound(projection_.begin(), projection_.end(), index);
    plan.split.push_back(static_cast<size_t>(at - projection_.begin()));
  }
  return plan;
}

bool SourceDataset::fitInMemory(const std::vector<VarIndex>& variables) {
  beginCommand(variables);
  return readCasesOnce(false) || failed_;
}

bool SourceDataset::readCasesOnce(bool spilling) {
  if (failed_) return false;
  if (store_ != nullptr) return true;
  try {
    const CasePlan wanted = plan();
    CodedCases cases = source_->read(wanted.request);
    if (!cases.complete && !spilling) return false;
    // The missing values of the weight depend on its kind.
    if (weight_ >= 0) {
      settle(weight_, cases.complete ? cases.columns.back().width() : 1);
      refuseMomentsAsWeight(declaration(weight_));
    }
    reading_ = Phase::kKeeping;
    store_ = keepCases(std::move(cases), *source_, wanted, workspace_);
    reading_ = Phase::kReading;
    source_->refuseChanged();
    for (size_t i = 0; i < projection_.size(); ++i) settle(projection_[i], store_->width(i));
  } catch (const std::exception& error) {
    passFailed(error);
  }
  return !failed_;
}

/// The kind may have been found by reading.
void SourceDataset::settle(VarIndex index, int32_t width) {
  declare(index);
  setWidth(variables_[static_cast<size_t>(index)], width);
  settled_[static_cast<size_t>(index)] = true;
}

const Variable& SourceDataset::variable(VarIndex index) {
  const auto position = static_cast<size_t>(index);
  if (settled_[position] || failed_) return variables_[position];
  if (isProjected(index) || (index == weight_ && store_ == nullptr)) {
    readCasesOnce();
  } else if (store_ != nullptr) {
    readAlone(index);
  } else {
    projection_.insert(std::upper_bound(projection_.begin(), projection_.end(), index), index);
    readCasesOnce();
  }
  return variables_[position];
}

/// For a variable that the command was not expected to look at.
void SourceDataset::readAlone(VarIndex index) {
  try {
    CasePlan alone;
    alone.request = request({index});
    alone.request.collapse = CollapseMode::kAlways;
    alone.variables = {index};
    CodedCases cases = source_->read(alone.request);
    settle(index, keepCases(std::move(cases), *source_, alone, workspace_)->width(0));
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
    constexpr std::array kPasses{Phase::kFirstPass, Phase::kSecondPass, Phase::kFurtherPass};
    const Phase pass = kPasses[std::min(passes_++, static_cast<int>(kPasses.size()) - 1)];
    return withProgress(store_->openFeed(std::move(views), cursor_, *this), pass, store_->rows(),
                        progress_);
  } catch (const std::exception& error) {
    passFailed(error);
    return nullptr;
  }
}

const std::vector<SplitValue>& SourceDataset::currentSplit() const {
  static const std::vector<SplitValue> none;
  return cursor_ == nullptr || cursor_->values == nullptr ? none : *cursor_->values;
}

const OddText* SourceDataset::oddText(VarIndex index) const {
  const std::optional<OddText>& odd = source_->variables()[static_cast<size_t>(index)].odd;
  return odd ? &*odd : nullptr;
}

bool SourceDataset::mayContinue() {
  const std::atomic<bool>* interrupted = workspace_.watched();
  if (interrupted != nullptr && *interrupted) fail(Interrupted().what());
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
  const bool byEngine = dynamic_cast<const EngineError*>(&error) != nullptr;
  fail(byEngine ? readProblem(error.what(), source_->label()) : error.what());
}

void SourceDataset::fail(std::string text) {
  if (failed_) return;
  failed_ = true;
  failure_ = std::move(text);
}

}  // namespace workbench
