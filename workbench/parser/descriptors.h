/// The parser's own view of the descriptors that a procedure fills.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/parser.h"

struct ParamDescriptor::Impl {
  std::string name;
  UPSpecTypes::ParamSpec spec;
  bool valueRequired;
  std::vector<std::string> keywords;
  /// Qualifiers by name; a bare one has no descriptor.
  struct Qualifier {
    std::string name;
    std::optional<ParamDescriptor> value;
  };
  std::vector<Qualifier> qualifiers;
  std::optional<double> lower;
  bool lowerExclusive = false;
  std::optional<double> upper;
  bool upperExclusive = false;
};

struct SubComDescriptor::Impl {
  std::string name;
  bool repeatable;
  bool hasList = false;
  std::vector<ParamDescriptor> parameters;
};

struct CommandDescriptor::Impl {
  std::string name;
  std::string title;
  std::vector<SubComDescriptor> subcommands;
};
