#include "workbench/dataset/data_files.h"

#include <fmt/format.h>
#include <glob.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <map>
#include <optional>
#include <system_error>
#include <utility>

#include "workbench/text/utf8.h"
#include "workbench/values/data_error.h"
#include "workbench/values/excerpt.h"

namespace workbench {
namespace {

namespace fs = std::filesystem;

constexpr const char* kDictionaryEnding = ".schema.json";
constexpr const char* kEndings =
    "Files that are read: .csv, .tsv, .parquet, .json, .jsonl, .ndjson (text files also compressed "
    "as .gz or .zst), .dta, .sas7bdat, .xpt, - for CSV on standard input, duckdb:FILE for a "
    "database.";
constexpr std::string_view kMissingPart = "__HIVE_DEFAULT_PARTITION__";

std::string lowered(std::string text) {
  for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

/// Without its ending for compression, if any.
fs::path uncompressedName(const fs::path& path) {
  const std::string ending = lowered(path.extension().string());
  return ending == ".gz" || ending == ".zst" ? fs::path(path).replace_extension() : path;
}

std::optional<FileFormat> formatOf(const fs::path& path) {
  const std::string ending = lowered(uncompressedName(path).extension().string());
  if (ending == ".csv") return FileFormat::kDelimited;
  if (ending == ".tsv") return FileFormat::kTabbed;
  if (ending == ".parquet") return FileFormat::kParquet;
  if (ending == ".json" || ending == ".jsonl" || ending == ".ndjson") return FileFormat::kJson;
  if (path != uncompressedName(path)) return std::nullopt;
  if (ending == ".dta") return FileFormat::kDta;
  if (ending == ".sas7bdat") return FileFormat::kSas7bdat;
  if (ending == ".xpt") return FileFormat::kXport;
  return std::nullopt;
}

/// The value labels that belong to a file: under its own name, else those of its folder.
std::string catalogueOf(const fs::path& path, FileFormat format) {
  if (format != FileFormat::kSas7bdat) return {};
  std::error_code error;
  for (const fs::path& name : {path.stem(), fs::path("formats")}) {
    fs::path catalogue = path.parent_path() / name;
    catalogue += ".sas7bcat";
    if (fs::exists(catalogue, error)) return catalogue.string();
  }
  return {};
}

bool isDictionary(const std::string& name) {
  const std::string_view ending = kDictionaryEnding;
  return name.size() >= ending.size() &&
         name.compare(name.size() - ending.size(), ending.size(), ending) == 0;
}

bool isLeftOut(const std::string& name) { return name.front() == '.' || name.front() == '_'; }

void refuseUnreadable(const std::string& file) {
  struct stat status {};
  if (stat(file.c_str(), &status) != 0) {
    throw DataError(errno == ENOENT ? fmt::format("{}: there is no such file.", file)
                                    : fmt::format("{}: {}.", file, std::strerror(errno)));
  }
  if (access(file.c_str(), R_OK) != 0) {
    throw DataError(fmt::format("{}: may not be read ({}).", file, std::strerror(errno)));
  }
}

/// Refuses what two paths lead to by a symbolic link: its cases would count twice, and the link
/// could lead round in circles. Hard links are files like any others: tools that save room make
/// them of parts that are the same.
class PlacesOnce {
 public:
  void add(const fs::path& path) {
    std::error_code error;
    const fs::path real = fs::canonical(path, error);
    if (error) return;  // who opens it says more
    const auto [known, isNew] = paths_.emplace(real.string(), path.string());
    if (isNew) return;
    throw DataError(fmt::format(
        "{} and {} are the same, by a link: its cases would count twice. Remove the link, or name "
        "the files with a pattern that leaves it out.",
        known->second, path.string()));
  }

 private:
  std::map<std::string, std::string> paths_;  // as they really are, and as they were reached
};

void collect(const fs::path& folder, std::vector<fs::path>& files, PlacesOnce& folders) {
  folders.add(folder);
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    const std::string name = entry->path().filename().string();
    if (isLeftOut(name)) continue;
    if (entry->is_directory(error)) {
      collect(entry->path(), files, folders);
    } else if (formatOf(entry->path()) && !isDictionary(name)) {
      files.push_back(entry->path());
    }
  }
  if (error) {
    throw DataError(
        fmt::format("{}: the folder cannot be read ({}).", folder.string(), error.message()));
  }
}

std::vector<fs::path> matches(const std::string& pattern) {
  if (pattern.find("**") != std::string::npos) {
    throw DataError(fmt::format(
        "{}: '**' is not known. Name the folder for all files below it, or write one '*' for each "
        "level of folders.",
        pattern));
  }
  glob_t found{};
  const int answer = glob(pattern.c_str(), GLOB_NOSORT | GLOB_ERR, nullptr, &found);
  std::vector<fs::path> files;
  for (size_t i = 0; answer == 0 && i < found.gl_pathc; ++i) files.emplace_back(found.gl_pathv[i]);
  globfree(&found);
  if (answer != 0 && answer != GLOB_NOMATCH) {
    throw DataError(fmt::format("{}: a folder on the way cannot be read.", pattern));
  }
  return files;
}

std::string percentDecoded(std::string_view text) {
  const auto digit = [](char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
  };
  std::string decoded;
  for (size_t i = 0; i < text.size(); ++i) {
    const bool escaped =
        text[i] == '%' && i + 2 < text.size() && digit(text[i + 1]) >= 0 && digit(text[i + 2]) >= 0;
    decoded += escaped ? static_cast<char>(digit(text[i + 1]) * 16 + digit(text[i + 2])) : text[i];
    if (escaped) i += 2;
  }
  return decoded;
}

/// Of a part of a path; throws DataError when it is no text.
std::string partText(const fs::path& path, std::string_view part) {
  std::string text = percentDecoded(part);
  const char* wrong = text.find('\0') != std::string::npos ? "a NUL byte"
                      : !isUtf8(text)                      ? "bytes that are not UTF-8"
                                                           : nullptr;
  if (wrong == nullptr) return text;
  throw DataError(fmt::format("{}: the part '{}' of the path holds {}. Rename the folder.",
                              path.string(), excerpt(part), wrong));
}

/// The parts NAME=VALUE of the folders from part `first` of a path on.
std::vector<std::pair<std::string, std::string>> pathParts(const fs::path& path, size_t first) {
  std::vector<std::pair<std::string, std::string>> parts;
  const fs::path folders = path.parent_path();
  size_t at = 0;
  for (const fs::path& part : folders) {
    const std::string text = part.string();
    const size_t sign = text.find('=');
    if (at++ < first || sign == std::string::npos || sign == 0) continue;
    const std::string value = text.substr(sign + 1);
    parts.emplace_back(partText(path, text.substr(0, sign)),
                       value == kMissingPart ? "" : partText(path, value));
  }
  return parts;
}

size_t partsBeforeWildcard(const fs::path& pattern) {
  size_t parts = 0;
  for (const fs::path& part : pattern) {
    if (part.string().find_first_of("*?[") != std::string::npos) break;
    ++parts;
  }
  return parts;
}

void addFile(DataFiles& files, const fs::path& path, size_t firstPart) {
  DataFile& file = files.files.emplace_back(
      DataFile{path.string(), path.string(), {}, catalogueOf(path, files.format)});
  refuseUnreadable(file.path);
  std::vector<std::string> names;
  for (auto& [name, value] : pathParts(path, firstPart)) {
    if (std::find(names.begin(), names.end(), name) != names.end()) {
      throw DataError(fmt::format("{}: the path has {}= twice.", file.path, name));
    }
    names.push_back(std::move(name));
    file.pathValues.push_back(std::move(value));
  }
  if (files.files.size() == 1) files.pathNames = names;
  if (names != files.pathNames) {
    throw DataError(fmt::format(
        "{}: the names in its path are {}, in that of {} {}. All files need the same.", file.path,
        names.empty() ? "none" : fmt::format("{}", fmt::join(names, ", ")),
        files.files.front().path,
        files.pathNames.empty() ? "none" : fmt::format("{}", fmt::join(files.pathNames, ", "))));
  }
}

void addAll(DataFiles& files, std::vector<fs::path> paths, size_t firstPart) {
  std::sort(paths.begin(), paths.end(),
            [](const fs::path& a, const fs::path& b) { return a.native() < b.native(); });
  PlacesOnce once;
  for (const fs::path& path : paths) {
    const std::optional<FileFormat> format = formatOf(path);
    if (!format) {
      throw DataError(fmt::format("{}: the ending of {} is not known. {}", files.label,
                                  path.string(), kEndings));
    }
    if (files.files.empty()) files.format = *format;
    if (*format != files.format) {
      throw DataError(fmt::format(
          "{}: {} and {} are of different formats; name the files of one with a "
          "pattern such as '*{}'.",
          files.label, files.files.front().path, path.string(), path.extension().string()));
    }
    addFile(files, path, firstPart);
    once.add(path);
  }
}

/// Where the dictionary of a folder would be: beside it, under its name, which "." and ".." do not
/// tell. Nowhere for the root.
std::string dictionaryOf(const fs::path& folder) {
  std::error_code error;
  const bool isNamed = folder.filename() != "." && folder.filename() != "..";
  const fs::path named = isNamed ? folder : fs::canonical(folder, error);
  return named.has_filename() ? named.string() + kDictionaryEnding : "";
}

}  // namespace

DataFiles findFiles(const std::string& data) {
  if (data.empty()) throw DataError(fmt::format("DATA is an empty name. {}", kEndings));
  DataFiles files;
  files.label = data;
  if (data == "-") {
    files.label = "standard input";
    files.files.push_back({"-", files.label, {}});
    return files;
  }
  std::error_code error;
  const fs::path path(data);
  const fs::file_status status = fs::status(path, error);
  if (fs::is_directory(status)) {
    std::vector<fs::path> found;
    PlacesOnce folders;
    collect(path, found, folders);
    if (found.empty()) {
      throw DataError(fmt::format("{}: the folder holds no data file. {}", data, kEndings));
    }
    // A slash at the end makes an empty last part.
    const fs::path folder = path.has_filename() ? path : path.parent_path();
    addAll(files, std::move(found),
           static_cast<size_t>(std::distance(folder.begin(), folder.end())));
    files.dictionary = dictionaryOf(folder);
    return files;
  }
  if (fs::exists(status) || data.find_first_of("*?[") == std::string::npos) {
    refuseUnreadable(data);
    const std::optional<FileFormat> format = formatOf(path);
    if (!format) throw DataError(fmt::format("{}: this ending is not known. {}", data, kEndings));
    files.format = *format;
    files.files.push_back({data, data, {}, catalogueOf(path, *format)});
    files.dictionary = uncompressedName(path).replace_extension().string() + kDictionaryEnding;
    return files;
  }
  std::vector<fs::path> found = matches(data);
  if (found.empty()) throw DataError(fmt::format("{}: no file matches the pattern.", data));
  addAll(files, std::move(found), partsBeforeWildcard(path));
  return files;
}

}  // namespace workbench
