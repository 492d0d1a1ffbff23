/// Parses the running command into the specification record.
#pragma once

#include "host/messages.h"
#include "host/parser.h"
#include "module/syntax/parse_context.h"

namespace proportions {

/// One per run. Tokens, record and data source outlive it.
class PRPCommandParser {
 public:
  PRPCommandParser(ZELK_TokenSequence& tokens, PRPValidSpecs& specs, ProcedureDataSource& source);
  PRPCommandParser(const PRPCommandParser&) = delete;
  PRPCommandParser& operator=(const PRPCommandParser&) = delete;

  /// True when the command is valid and the record filled; otherwise the reason has been reported
  /// and the record is not to be used.
  bool parse();

 private:
  /// The subcommands of the parsed command, null where they are absent; all null but during the
  /// walk, since the parsed command owns them.
  struct Subcommands {
    SubComObj* oneSample = nullptr;
    SubComObj* pairedSamples = nullptr;
    SubComObj* independentSamples = nullptr;
    SubComObj* success = nullptr;
    SubComObj* missing = nullptr;
    SubComObj* criteria = nullptr;
  };

  bool walk();
  bool setModelType();
  bool takeSplitAndWeight();
  bool validateDesign();
  void readCriteria();

  CommandDescriptor descriptor_;
  ZELK_TokenSequence& tokens_;
  ProcedureDataSource& source_;
  PRPValidSpecs& specs_;
  ParserMessage messages_;
  Subcommands given_;
  ListValidators lists_;
  ValueBuffers buffers_;
  ParseContext context_{source_, specs_, messages_, lists_, buffers_};
};

}  // namespace proportions
