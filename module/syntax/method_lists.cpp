#include "module/syntax/method_lists.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "module/model/texts.h"

namespace proportions {
namespace {

bool isAmong(const std::vector<std::string>& options, const std::string& keyword) {
  return std::find(options.begin(), options.end(), keyword) != options.end();
}

/// The keywords of a list, each once; nothing when the list was not written.
std::optional<std::vector<std::string>> readOptions(ParseContext& context, SubComObj& subcommand,
                                                    const char* parameter, const char* name) {
  const ParamObj* list = subcommand.getParamObj(parameter);
  if (list == nullptr) return std::nullopt;
  std::vector<std::string> options = list->getUpStringList();
  removeDuplicateOptions(context, options, parameter, name);
  return options;
}

MethodFlags flagsOf(const std::vector<std::string>& options, const MethodKeywords& methods) {
  MethodFlags flags(methods.size(), isAmong(options, keywords::kAll));
  for (size_t i = 0; i < methods.size(); ++i) {
    if (isAmong(options, methods[i].keyword)) flags[i] = true;
  }
  return flags;
}

MethodFlags defaultsOf(const MethodKeywords& methods) {
  MethodFlags flags;
  for (const MethodKeyword& method : methods) flags.push_back(method.byDefault);
  return flags;
}

/// One of the two lists as read.
struct MethodList {
  MethodFlags flags;
  bool valid = true;
  bool tableRequested = true;
};

MethodList readList(ParseContext& context, SubComObj& subcommand, const char* parameter,
                    const MethodKeywords& methods, const char* name) {
  const auto options = readOptions(context, subcommand, parameter, name);
  if (!options) return {defaultsOf(methods)};
  const bool none = isAmong(*options, keywords::kNone);
  const bool inCompany = none && options->size() > 1;
  if (inCompany) {
    context.messages.ParamExclAnyOther(std::string(parameter) + " " + keywords::kNone, name);
  }
  return {flagsOf(*options, methods), !inCompany, !none};
}

}  // namespace

MethodLists readMethodLists(ParseContext& context, SubComObj& subcommand,
                            const DesignMethods& design, bool valid) {
  MethodFlags& tests = context.specs.testTypes();
  MethodFlags& intervals = context.specs.ciTypes();
  tests.assign(design.tests.size(), false);
  intervals.assign(design.intervals.size(), false);
  if (!valid) return {};
  const MethodList testList =
      readList(context, subcommand, keywords::kTestTypes, design.tests, design.subcommand);
  tests = testList.flags;
  if (!testList.valid) return {};
  const MethodList intervalList =
      readList(context, subcommand, keywords::kCiTypes, design.intervals, design.subcommand);
  intervals = intervalList.flags;
  return {intervalList.valid, testList.tableRequested || intervalList.tableRequested};
}

bool removeDuplicateOptions(ParseContext& context, std::vector<std::string>& options,
                            const char* parameter, const char* subcommand) {
  std::vector<std::string> kept;
  for (const std::string& option : options) {
    if (!isAmong(kept, option)) kept.push_back(option);
  }
  if (kept.size() == options.size()) return false;
  options = std::move(kept);
  context.messages.GenericWarning(texts::kDuplicateOptions, parameter, subcommand);
  return true;
}

}  // namespace proportions
