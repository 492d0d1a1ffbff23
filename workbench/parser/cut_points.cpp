#include "workbench/parser/cut_points.h"

#include <fmt/format.h>

#include "workbench/dataset/calendar.h"
#include "workbench/parser/syntax_error.h"

namespace workbench {
namespace {

const char* kindName(ValueKind kind) {
  switch (kind) {
    case ValueKind::kDate:
      return "dates";
    case ValueKind::kTime:
      return "times";
    case ValueKind::kDateTime:
      return "dates with times";
    case ValueKind::kString:
      return "texts";
    default:
      return "numbers";
  }
}

bool isOfKind(ValueKind kind, const std::string& text) {
  switch (kind) {
    case ValueKind::kDate:
      return parseDate(text).has_value();
    case ValueKind::kTime:
      return parseTime(text).has_value();
    case ValueKind::kDateTime:
      return parseDateTime(text).has_value();
    default:
      return false;
  }
}

std::optional<SyntaxProblem> ruleProblem(const RuleFacts& rule,
                                         const std::vector<VarIndex>& variables,
                                         ActiveDataset& dataset) {
  if (rule.rule != ValueRule::kCutpoint || rule.values.empty()) return {};
  const TokenInfoObj& written = rule.values.front();
  if (written.kind() != TokenInfoObj::Kind::kString) return {};
  for (const VarIndex index : variables) {
    const Variable& variable = dataset.variable(index);
    if (isOfKind(variable.kind, written.getText())) continue;
    return SyntaxProblem{
        written.position(),
        fmt::format("{} cannot cut {}, which holds {}.", shortQuoted(written.getText()),
                    shortQuoted(variable.name), kindName(variable.kind))};
  }
  return {};
}

}  // namespace

std::optional<double> instantOf(const std::string& text) {
  if (const auto instant = parseDateTime(text)) return instant;
  return parseTime(text);
}

std::optional<SyntaxProblem> cutPointProblem(const CommandFacts& facts, ActiveDataset& dataset) {
  if (auto problem = ruleProblem(facts.success, facts.analysed(), dataset)) return problem;
  if (facts.grouping < 0) return {};
  return ruleProblem(facts.groups, {facts.grouping}, dataset);
}

}  // namespace workbench
