/// The kinds of sources, for openSource.
#pragma once

#include <memory>
#include <string>

#include "workbench/engine/source.h"

namespace workbench {

/// A file by its ending, or "-" for CSV on standard input.
std::unique_ptr<Source> openFileSource(const std::string& data, const MissingTexts& missing,
                                       const std::atomic<bool>* interrupted);

/// A file whose columns are known from its own declarations or from the engine's reading of it all.
std::unique_ptr<Source> openTypedFile(const std::string& file, bool json,
                                      const std::atomic<bool>* interrupted);

/// A database file, with a table or a query of it.
std::unique_ptr<Source> openDatabaseSource(const std::string& file, const SourceOptions& options);

/// The result of a query in which the file is the table `data`.
std::unique_ptr<Source> openQueryOverFile(std::unique_ptr<Source> file, const std::string& query);

/// The path as the engine is to be given it: complete, and through a link in the working folder
/// when the engine would take it for a pattern.
std::string enginePath(const std::string& file, EngineHolder& engine);

/// The columns of a statement's result with their types.
std::vector<SourceColumn> columnsOf(const Statement& statement);

/// The engine's type for the values of a column.
const char* sqlTypeOf(const SourceColumn& column);

/// What is left of a file name without endings for compression, and the last ending in lower case.
struct FileName {
  std::string stem;
  std::string ending;
};
FileName splitEnding(const std::string& file);

}  // namespace workbench
