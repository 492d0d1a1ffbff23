#include <algorithm>
#include <array>
#include <bit>
#include <limits>
#include <utility>

#include "workbench/advice/observed_column.h"
#include "workbench/dataset/variable.h"

namespace workbench {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// Different numbers, up to a limit. Open addressing: most values are known already. Small while
/// there are few, as a command may name ten thousands of variables.
class NumberSet {
 public:
  /// False when the set is full and the number is not in it.
  bool add(double number) {
    if (slots_.size() < kRoom * (numbers_.size() + 1)) grow();
    double& slot = slots_[slotOf(number)];
    if (slot == number) return true;
    if (numbers_.size() == kMostListedValues) return false;
    slot = number;
    numbers_.push_back(number);
    return true;
  }
  const std::vector<double>& numbers() const { return numbers_; }

 private:
  static constexpr size_t kFirstSlots = 16;
  static constexpr size_t kRoom = 4;  // slots for a number

  /// Where the number is, or should be.
  size_t slotOf(double number) const {
    const auto bits = static_cast<unsigned>(std::countr_zero(slots_.size()));
    size_t slot = (std::bit_cast<uint64_t>(number) * 0x9E3779B97F4A7C15ULL) >> (64U - bits);
    while (slots_[slot] != kSystemMissing && slots_[slot] != number) {
      slot = (slot + 1) % slots_.size();
    }
    return slot;
  }

  void grow() {
    slots_.assign(std::max(kFirstSlots, 2 * slots_.size()), kSystemMissing);
    for (const double number : numbers_) slots_[slotOf(number)] = number;
  }

  std::vector<double> slots_;  // the system-missing value is an empty one
  std::vector<double> numbers_;
};

struct Range {
  double low = kInfinity;
  double high = -kInfinity;
  bool any = false;

  void take(const double* values, size_t count, const uint8_t* marks) {
    if (any && holdsAll(values, count, marks)) return;
    double least = low;
    double most = high;
    unsigned marked = 0;
    for (size_t i = 0; i < count; ++i) {
      const double value = values[i];
      least = marks[i] != 0 && value < least ? value : least;
      most = marks[i] != 0 && value > most ? value : most;
      marked |= marks[i];
    }
    low = least;
    high = most;
    any = any || marked != 0;
  }

 private:
  /// Quick: whether nothing that is marked lies outside.
  bool holdsAll(const double* values, size_t count, const uint8_t* marks) const {
    unsigned outside = 0;
    for (size_t i = 0; i < count; ++i) {
      outside |= static_cast<unsigned>((values[i] < low) | (values[i] > high)) & marks[i];
    }
    return outside == 0;
  }
};

class NumberColumn final : public ObservedColumn {
 public:
  NumberColumn(const Variable& variable, ColumnQuestions questions)
      : variable_(variable), questions_(std::move(questions)) {
    for (const SplitValue& value : questions_.wanted) {
      wanted_.push_back(std::get<double>(value));
    }
    std::sort(wanted_.begin(), wanted_.end());
    wanted_.erase(std::unique(wanted_.begin(), wanted_.end()), wanted_.end());
    seen_.resize(wanted_.size());
    unseenCount_ = wanted_.size();
  }

  bool classify(const double* words, ptrdiff_t, size_t count, ValueClass* classes) override {
    unsigned anyMissing = 0;
    for (size_t i = 0; i < count; ++i) {
      anyMissing |= static_cast<unsigned>(words[i] == kSystemMissing);
    }
    const bool mayBeUserMissing =
        !variable_.missingNumbers.empty() || variable_.missingLow <= variable_.missingHigh;
    if (anyMissing == 0 && !mayBeUserMissing) return true;
    for (size_t i = 0; i < count; ++i) {
      classes[i] = words[i] == kSystemMissing ? ValueClass::kSystemMissing : ValueClass::kValid;
    }
    if (mayBeUserMissing) anyMissing |= classifyUserMissing(words, count, classes);
    return anyMissing == 0;
  }

  void take(const double* words, ptrdiff_t, size_t count, const uint8_t* marks) override {
    all_.take(words, count, marks);
    if (!questions_.everyValue) return;
    if (!more_ && !onlyKnown(words, count, marks)) listNew(words, count, marks);
    if (more_ && unseenCount_ != 0) lookForWanted(words, count, marks);
  }

  void takeOfGroup(const double* words, ptrdiff_t, size_t count, const uint8_t* marks) override {
    group_.take(words, count, marks);
  }

  void endGroup(size_t group) override {
    if (group_.any) byGroup_.add(questions_.lastOfGroup ? group_.high : group_.low, group);
    group_ = Range();
  }

  ColumnAnswers answers() const override {
    ColumnAnswers answers;
    answers.anyValue = all_.any;
    answers.oneValue = all_.any && all_.low == all_.high;
    answers.some = all_.low;
    std::vector<double> listed = listed_.numbers();
    std::sort(listed.begin(), listed.end());
    answers.values.assign(listed.begin(), listed.end());
    answers.moreValues = more_;
    for (const SplitValue& value : questions_.wanted) {
      const double wanted = std::get<double>(value);
      answers.found.push_back(more_ ? seen_[placeOfWanted(wanted)]
                                    : std::binary_search(listed.begin(), listed.end(), wanted));
    }
    answers.byGroup = byGroup_.found();
    return answers;
  }

 private:
  /// Whether there are any.
  unsigned classifyUserMissing(const double* words, size_t count, ValueClass* classes) const {
    unsigned any = 0;
    for (size_t i = 0; i < count; ++i) {
      if (classes[i] == ValueClass::kValid && isUserMissing(variable_, words[i])) {
        classes[i] = ValueClass::kUserMissing;
        any = 1;
      }
    }
    return any;
  }

  /// Quick: whether all values are among the few that were found first.
  bool onlyKnown(const double* words, size_t count, const uint8_t* marks) const {
    const std::vector<double>& known = listed_.numbers();
    if (known.empty() || known.size() > kFew) return false;
    std::array<double, kFew> few{};
    for (size_t k = 0; k < kFew; ++k) few[k] = known[std::min(k, known.size() - 1)];
    unsigned strange = 0;
    for (size_t i = 0; i < count; ++i) {
      const double value = words[i];
      const bool isKnown =
          (value == few[0]) | (value == few[1]) | (value == few[2]) | (value == few[3]);
      strange |= static_cast<unsigned>(!isKnown) & marks[i];
    }
    return strange == 0;
  }

  void listNew(const double* words, size_t count, const uint8_t* marks) {
    for (size_t i = 0; i < count; ++i) {
      if (marks[i] == 0 || listed_.add(words[i])) continue;
      more_ = true;
      // From here on the list does not tell any more what was found.
      for (const double number : listed_.numbers()) noteSeen(number);
      return;
    }
  }

  void lookForWanted(const double* words, size_t count, const uint8_t* marks) {
    for (size_t i = 0; i < count && unseenCount_ != 0; ++i) {
      if (marks[i] != 0) noteSeen(words[i]);
    }
  }

  /// Where a number stands among those looked for; their count when it is none of them.
  size_t placeOfWanted(double number) const {
    const auto place = std::lower_bound(wanted_.begin(), wanted_.end(), number);
    if (place == wanted_.end() || *place != number) return wanted_.size();
    return static_cast<size_t>(place - wanted_.begin());
  }

  void noteSeen(double number) {
    const size_t place = placeOfWanted(number);
    if (place == wanted_.size() || seen_[place]) return;
    seen_[place] = true;
    --unseenCount_;
  }

  static constexpr size_t kFew = 4;

  const Variable& variable_;
  const ColumnQuestions questions_;
  Range all_;
  Range group_;
  NumberSet listed_;
  bool more_ = false;
  std::vector<double> wanted_;  // ascending, each once
  // Of each of them, once not all values are listed: whether it occurred.
  std::vector<bool> seen_;
  size_t unseenCount_ = 0;
  GroupValues byGroup_;
};

}  // namespace

std::unique_ptr<ObservedColumn> observeNumbers(const Variable& variable,
                                               ColumnQuestions questions) {
  return std::make_unique<NumberColumn>(variable, std::move(questions));
}

}  // namespace workbench
