#include <algorithm>
#include <array>
#include <deque>
#include <optional>
#include <set>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "workbench/advice/observed_column.h"
#include "workbench/dataset/variable.h"
#include "workbench/text/collation.h"

namespace workbench {
namespace {

/// Different texts that are remembered; what is beyond is looked at anew each time.
constexpr size_t kMostRemembered = 100'000;

/// What people write where a value is missing.
constexpr std::array<std::string_view, 10> kMissingLike = {"NA",   "N/A",  "n/a", "#N/A", "NULL",
                                                           "null", "None", ".",   "-",    "?"};

struct KnownText {
  std::string text;
  ValueClass type = ValueClass::kValid;
  bool taken = false;
  size_t takenInGroup = 0;  // number of the group, from 1
};

class TextColumn final : public ObservedColumn {
 public:
  TextColumn(const Variable& variable, ColumnQuestions questions)
      : variable_(variable), questions_(std::move(questions)) {
    for (const SplitValue& value : questions_.wanted) {
      unseen_.insert(std::get<std::string>(value));
    }
  }

  bool classify(const double* words, ptrdiff_t stride, size_t count, ValueClass* classes) override {
    bool allValid = true;
    for (size_t i = 0; i < count; ++i) {
      classes[i] = find(words + static_cast<ptrdiff_t>(i) * stride).type;
      allValid = allValid && classes[i] == ValueClass::kValid;
    }
    return allValid;
  }

  void take(const double* words, ptrdiff_t stride, size_t count, const uint8_t* marks) override {
    for (size_t i = 0; i < count; ++i) {
      if (marks[i] == 0) continue;
      KnownText& known = find(words + static_cast<ptrdiff_t>(i) * stride);
      if (known.taken) continue;
      known.taken = true;
      note(known);
    }
  }

  void takeOfGroup(const double* words, ptrdiff_t stride, size_t count,
                   const uint8_t* marks) override {
    for (size_t i = 0; i < count; ++i) {
      if (marks[i] == 0) continue;
      KnownText& known = find(words + static_cast<ptrdiff_t>(i) * stride);
      if (known.takenInGroup == group_) continue;
      known.takenInGroup = group_;
      if (!extreme_) {
        extreme_ = known.text;
        continue;
      }
      const int order = compareStrings(known.text, *extreme_);
      if (questions_.lastOfGroup ? order > 0 : order < 0) extreme_ = known.text;
    }
  }

  void endGroup(size_t group) override {
    if (extreme_) byGroup_.add(*extreme_, group);
    extreme_.reset();
    ++group_;
  }

  ColumnAnswers answers() const override {
    ColumnAnswers answers;
    answers.anyValue = some_.has_value();
    answers.oneValue = some_.has_value() && !second_;
    if (some_) answers.some = *some_;
    std::vector<std::string> listed(listed_.begin(), listed_.end());
    std::sort(listed.begin(), listed.end(),
              [](const std::string& a, const std::string& b) { return compareStrings(a, b) < 0; });
    answers.values.assign(listed.begin(), listed.end());
    answers.moreValues = more_;
    for (const SplitValue& value : questions_.wanted) {
      answers.found.push_back(unseen_.count(std::get<std::string>(value)) == 0);
    }
    answers.byGroup = byGroup_.found();
    answers.missingLike.assign(missingLike_.begin(), missingLike_.end());
    return answers;
  }

 private:
  /// What is known of the text of an observation; the reference is good until the next call.
  KnownText& find(const double* words) {
    const std::string_view text =
        trimmed({reinterpret_cast<const char*>(words), static_cast<size_t>(variable_.width)});
    if (last_ != nullptr && last_->text == text) return *last_;
    const auto found = places_.find(text);
    if (found != places_.end()) return *(last_ = found->second);
    last_ = nullptr;
    if (known_.size() == kMostRemembered) {
      forgotten_ = {std::string(text), typeOf(text), false, 0};
      return forgotten_;
    }
    known_.push_back({std::string(text), typeOf(text), false, 0});
    places_.emplace(known_.back().text, &known_.back());
    return *(last_ = &known_.back());
  }

  ValueClass typeOf(std::string_view text) const {
    const auto& missing = variable_.missingStrings;
    const bool isMissing =
        text.empty() || std::find(missing.begin(), missing.end(), text) != missing.end();
    return isMissing ? ValueClass::kUserMissing : ValueClass::kValid;
  }

  void note(const KnownText& known) {
    const std::string& text = known.text;
    if (known.type == ValueClass::kValid &&
        std::find(kMissingLike.begin(), kMissingLike.end(), text) != kMissingLike.end()) {
      missingLike_.insert(text);
    }
    if (!some_) {
      some_ = text;
    } else if (*some_ != text) {
      second_ = true;
    }
    if (!questions_.everyValue) return;
    unseen_.erase(text);
    if (listed_.size() < kMostListedValues) {
      listed_.insert(text);
    } else if (listed_.count(text) == 0) {
      more_ = true;
    }
  }

  const Variable& variable_;
  const ColumnQuestions questions_;
  std::deque<KnownText> known_;
  std::unordered_map<std::string_view, KnownText*> places_;
  KnownText* last_ = nullptr;
  KnownText forgotten_;
  std::optional<std::string> some_;
  bool second_ = false;
  std::set<std::string> listed_;
  std::set<std::string> missingLike_;
  bool more_ = false;
  std::set<std::string> unseen_;
  size_t group_ = 1;
  std::optional<std::string> extreme_;
  GroupValues byGroup_;
};

}  // namespace

std::unique_ptr<ObservedColumn> observeTexts(const Variable& variable, ColumnQuestions questions) {
  return std::make_unique<TextColumn>(variable, std::move(questions));
}

}  // namespace workbench
