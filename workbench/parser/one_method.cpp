#include "workbench/parser/one_method.h"

#include <algorithm>
#include <memory>
#include <string>

namespace workbench {
namespace {

std::unique_ptr<ParamObj> waldAlone(const std::string& name) {
  auto list = std::make_unique<ParamObj::Impl>();
  list->name = name;
  list->keywords = {"WALD"};
  return std::make_unique<ParamObj>(std::move(list));
}

}  // namespace

void keepOneMethod(SubComObj::Impl& design) {
  auto& parameters = design.parameters;
  for (const std::string name : {"TESTTYPES", "CITYPES"}) {
    const auto given = std::find_if(parameters.begin(), parameters.end(),
                                    [&](const auto& parameter) { return parameter.first == name; });
    if (given == parameters.end()) {
      parameters.emplace_back(name, waldAlone(name));
    } else if (!given->second->isStringValueCase("NONE")) {
      given->second = waldAlone(name);
    }
  }
}

}  // namespace workbench
