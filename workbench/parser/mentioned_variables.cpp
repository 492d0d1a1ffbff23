#include <algorithm>
#include <utility>

#include "workbench/parser/variable_names.h"

namespace workbench {
namespace {

using Kind = TokenInfoObj::Kind;

/// Looks names up, one token after the other.
class NameReader {
 public:
  NameReader(const std::vector<TokenInfoObj>& tokens, const ActiveDataset& dataset)
      : tokens_(tokens),
        dataset_(dataset),
        taken_(static_cast<size_t>(dataset.variableCount()), false) {}

  /// What the token at a place names: nothing, a variable, the first of a range with all of it.
  void take(size_t at) {
    if (tokens_[at].getOperatorCode() == kOperatorAll) {
      for (const VarIndex index : allVariables(dataset_)) add(index);
      return;
    }
    const VarIndex index = lookUp(at);
    if (index < 0) return;
    add(index);
    if (at + 2 < tokens_.size() && tokens_[at + 1].getOperatorCode() == kOperatorTo) {
      const VarIndex last = lookUp(at + 2);
      for (VarIndex next = index; next <= last; ++next) add(next);
    }
  }

  std::vector<VarIndex> found() && { return std::move(found_); }

 private:
  VarIndex lookUp(size_t at) const {
    const Kind kind = tokens_[at].kind();
    const bool isName =
        (kind == Kind::kWord && !tokens_[at].isReservedWord()) || kind == Kind::kString;
    return isName ? dataset_.find(tokens_[at].getText()) : -1;
  }

  void add(VarIndex index) {
    const auto position = static_cast<size_t>(index);
    if (!taken_[position]) found_.push_back(index);
    taken_[position] = true;
  }

  const std::vector<TokenInfoObj>& tokens_;
  const ActiveDataset& dataset_;
  std::vector<bool> taken_;  // by variable
  std::vector<VarIndex> found_;
};

}  // namespace

std::vector<VarIndex> allVariables(const ActiveDataset& dataset) {
  const std::vector<VarIndex>& split = dataset.splitVariables();
  std::vector<VarIndex> all;
  for (VarIndex index = 0; index < dataset.variableCount(); ++index) {
    const bool isSplit = std::find(split.begin(), split.end(), index) != split.end();
    const bool hostMade = dataset.declaration(index).name == kSampleVariable;
    if (index != dataset.weightVariable() && !isSplit && !hostMade) all.push_back(index);
  }
  return all;
}

std::vector<VarIndex> namedVariables(const std::vector<TokenInfoObj>& tokens,
                                     const ActiveDataset& dataset) {
  NameReader reader(tokens, dataset);
  for (size_t at = 0; at < tokens.size(); ++at) reader.take(at);
  return std::move(reader).found();
}

/// Walks the unnamed lists: from each subcommand's name to its first NAME= or the next "/".
std::vector<VarIndex> mentionedVariables(const CommandTokens& command,
                                         const ActiveDataset& dataset) {
  const std::vector<TokenInfoObj>& tokens = command.tokens();
  NameReader reader(tokens, dataset);
  bool inList = true;
  for (size_t at = 0; at < tokens.size(); ++at) {
    if (isSymbol(tokens[at], '/')) inList = true;
    if (at + 1 < tokens.size() && isSymbol(tokens[at + 1], '=')) inList = false;
    if (inList) reader.take(at);
  }
  std::vector<VarIndex> found = std::move(reader).found();
  std::sort(found.begin(), found.end());
  return found;
}

}  // namespace workbench
