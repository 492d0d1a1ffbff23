/// The files that DATA stands for.
#pragma once

#include <string>
#include <vector>

namespace workbench {

/// What a file is read as.
enum class FileFormat {
  kDelimited,  ///< .csv
  kTabbed,     ///< .tsv
  kJson,
  kParquet,
  kDta,
  kSas7bdat,
  kXport  ///< .xpt
};

/// One file, with the texts of the columns that its path gives.
struct DataFile {
  std::string path;   ///< "-" for standard input
  std::string label;  ///< names it in messages
  std::vector<std::string> pathValues;
  std::string catalogue = {};  ///< the value labels beside a .sas7bdat file; empty: none
};

/// Files of one format that make one data set, in the order of their paths.
struct DataFiles {
  FileFormat format = FileFormat::kDelimited;
  std::string label;  ///< names them all
  std::vector<DataFile> files;
  std::vector<std::string> pathNames;  ///< names of the columns that come from paths
  std::string dictionary;              ///< where a dictionary would be; empty: nowhere
};

/// A file, "-", a folder or a pattern. An existing file of that very name comes first. Throws
/// DataError when there is no such file, when it may not be read, when its ending is not known,
/// when a folder holds none or files of several formats, and when path parts differ in their names.
DataFiles findFiles(const std::string& data);

}  // namespace workbench
