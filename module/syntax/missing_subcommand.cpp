#include "module/syntax/missing_subcommand.h"

namespace proportions {

void validateMissing(ParseContext& context, SubComObj& subcommand) {
  if (const ParamObj* scope = subcommand.getParamObj(keywords::kScope)) {
    context.specs.setScopeAnalysis(scope->isStringValueCase(keywords::kAnalysis));
  }
  if (const ParamObj* userMissing = subcommand.getParamObj(keywords::kUserMissing)) {
    context.specs.setUserMissingIncluded(userMissing->isStringValueCase(keywords::kInclude));
  }
}

}  // namespace proportions
