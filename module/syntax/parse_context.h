/// What every reader of a subcommand works on.
#pragma once

#include <memory>
#include <vector>

#include "host/data_source.h"
#include "host/messages.h"
#include "host/parser.h"
#include "module/model/keywords.h"
#include "module/model/valid_specs.h"

namespace proportions {

using Tokens = std::vector<TokenInfoObj>;
using VarIndices = std::vector<VarIndex>;
/// Every converted value, shared with the record's definitions.
using ValueBuffers = std::vector<std::shared_ptr<ValueBuffer>>;

/// The host's validators of the command's variable lists.
struct ListValidators {
  ListValidators(const CommandDescriptor& command, ProcedureDataSource& source)
      : split("SPLIT FILE", command, source),
        weight("WEIGHT", command, source, true),
        oneSample("", keywords::kOneSample, source),
        paired("", keywords::kPairedSamples, source),
        pairedWith(keywords::kWith, keywords::kPairedSamples, source),
        independent("", keywords::kIndependentSamples, source),
        group(keywords::kBy, keywords::kIndependentSamples, source) {}

  VarSpecObj split;
  VarSpecObj weight;
  VarSpecObj oneSample;
  VarSpecObj paired;
  VarSpecObj pairedWith;
  VarSpecObj independent;
  VarSpecObj group;
};

/// Readers report through `messages` and fill `specs`; all of it outlives them.
struct ParseContext {
  ProcedureDataSource& source;
  PRPValidSpecs& specs;
  ParserMessage& messages;
  ListValidators& lists;
  ValueBuffers& buffers;
};

}  // namespace proportions
