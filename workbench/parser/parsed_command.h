/// The tree that a parsed command is kept in.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/parser.h"

struct ParamObj::Impl {
  std::string name;
  std::vector<TokenInfoObj> tokens;
  std::vector<std::string> keywords;  ///< upper case
  std::optional<double> number;
  std::string qualifierName;  ///< empty: none
  std::unique_ptr<ParamObj> qualifier;
};

struct SubComObj::Impl {
  std::string name;
  std::unique_ptr<ParamObj> list;
  std::vector<std::pair<std::string, std::unique_ptr<ParamObj>>> parameters;
};

struct CommandSpec::Impl {
  std::vector<std::pair<std::string, std::unique_ptr<SubComObj>>> subcommands;
};
