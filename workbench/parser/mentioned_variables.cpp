#include <algorithm>
#include <set>

#include "workbench/parser/variable_names.h"

namespace workbench {
namespace {

using Kind = TokenInfoObj::Kind;

bool isSymbol(const TokenInfoObj& token, char symbol) {
  return token.kind() == Kind::kSymbol && token.getText()[0] == symbol;
}

/// Walks the unnamed lists: from each subcommand's name to its first NAME= or the next "/".
class MentionFinder {
 public:
  MentionFinder(const CommandTokens& command, const ActiveDataset& dataset)
      : tokens_(command.tokens()), dataset_(dataset) {}

  std::vector<VarIndex> find() {
    bool inList = true;
    for (size_t at = 0; at < tokens_.size(); ++at) {
      if (isSymbol(tokens_[at], '/')) inList = true;
      if (at + 1 < tokens_.size() && isSymbol(tokens_[at + 1], '=')) inList = false;
      if (inList) take(at);
    }
    return {found_.begin(), found_.end()};
  }

 private:
  VarIndex lookUp(size_t at) const {
    const Kind kind = tokens_[at].kind();
    const bool isName =
        (kind == Kind::kWord && !tokens_[at].isReservedWord()) || kind == Kind::kString;
    return isName ? dataset_.find(tokens_[at].getText()) : -1;
  }

  void take(size_t at) {
    if (tokens_[at].getOperatorCode() == kOperatorAll) {
      for (const VarIndex index : allVariables(dataset_)) found_.insert(index);
      return;
    }
    const VarIndex index = lookUp(at);
    if (index < 0) return;
    found_.insert(index);
    if (at + 2 < tokens_.size() && tokens_[at + 1].getOperatorCode() == kOperatorTo) {
      const VarIndex last = lookUp(at + 2);
      for (VarIndex next = index; next <= last; ++next) found_.insert(next);
    }
  }

  const std::vector<TokenInfoObj>& tokens_;
  const ActiveDataset& dataset_;
  std::set<VarIndex> found_;
};

}  // namespace

std::vector<VarIndex> allVariables(const ActiveDataset& dataset) {
  const std::vector<VarIndex>& split = dataset.splitVariables();
  std::vector<VarIndex> all;
  for (VarIndex index = 0; index < dataset.variableCount(); ++index) {
    const bool isSplit = std::find(split.begin(), split.end(), index) != split.end();
    const bool hostMade = dataset.declaration(index).name.compare(0, 1, "$") == 0;
    if (index != dataset.weightVariable() && !isSplit && !hostMade) all.push_back(index);
  }
  return all;
}

std::vector<VarIndex> mentionedVariables(const CommandTokens& command,
                                         const ActiveDataset& dataset) {
  return MentionFinder(command, dataset).find();
}

}  // namespace workbench
