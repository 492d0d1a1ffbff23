#include "workbench/catalogue/catalogue.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <stdexcept>

namespace workbench {
namespace {

namespace fs = std::filesystem;

const fs::path kRoot = SOURCE_ROOT;

std::string contentOf(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  EXPECT_TRUE(stream.good()) << file;
  return {std::istreambuf_iterator<char>(stream), {}};
}

/// The captures of a pattern in a source.
std::set<std::string> capturesIn(const fs::path& file, const std::string& pattern) {
  std::set<std::string> found;
  const std::regex expression(pattern);
  const std::string source = contentOf(file);
  for (std::sregex_iterator it(source.begin(), source.end(), expression), end; it != end; ++it) {
    found.insert((*it)[1]);
  }
  return found;
}

/// The same in all sources below a folder.
std::set<std::string> captures(const fs::path& folder, const std::string& pattern) {
  std::set<std::string> found;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    if (entry.path().extension() != ".h" && entry.path().extension() != ".cpp") continue;
    found.merge(capturesIn(entry.path(), pattern));
  }
  return found;
}

void expectEntries(const std::set<std::string>& keys, size_t atLeast) {
  const Catalogue catalogue = Catalogue::english();
  EXPECT_GE(keys.size(), atLeast) << "the search found too few keys to mean anything";
  for (const std::string& key : keys) EXPECT_TRUE(catalogue.contains(key)) << key;
}

TEST(Catalogue, HoldsTheFileThatItWasBuiltFrom) {
  const Catalogue built = Catalogue::english();
  const std::string json = contentOf(kRoot / "workbench/catalogue/en.json");
  const Catalogue read = Catalogue::parse(json);
  const std::regex entry("\n \"((?:[^\"\\\\]|\\\\.)*)\": ");
  size_t entries = 0;
  for (std::sregex_iterator it(json.begin(), json.end(), entry), end; it != end; ++it, ++entries) {
    const std::string key = (*it)[1];
    EXPECT_TRUE(built.contains(key)) << key;
    EXPECT_EQ(built.text(key), read.text(key));
  }
  EXPECT_GT(entries, 100u);
}

TEST(Catalogue, EveryTextOfTheModuleHasAnEntry) {
  std::set<std::string> keys = capturesIn(kRoot / "module/model/texts.h",
                                          "inline constexpr char k\\w+\\[\\] =\\s*\"([^\"]+)\"");
  keys.erase("PROPORTIONS");  // the command's own name and title are no keys
  keys.erase("Proportions");
  expectEntries(keys, 70);
}

TEST(Catalogue, EveryMethodHasAnEntry) {
  expectEntries(captures(kRoot / "module", "\\{\"[A-Z0-9_]+\", \"([^\"]+)\", (?:true|false)"), 20);
}

TEST(Catalogue, EveryMessageOfTheHostHasAnEntry) {
  expectEntries(captures(kRoot / "workbench",
                         "report\\(\\s*(?:workbench::)?Severity::k\\w+,\\s*"
                         "\"([^\"]+)\""),
                8);
  expectEntries(captures(kRoot / "workbench/output", "BpComposite text\\(\"([^\"]+)\"\\)"), 1);
}

TEST(Catalogue, NoTextIsEmptyOrStillAKey) {
  const std::string json = contentOf(kRoot / "workbench/catalogue/en.json");
  EXPECT_EQ(json.find(": \"\""), std::string::npos);
  EXPECT_EQ(json.find("...\",\n"), std::string::npos) << "a text ends like a key";
}

TEST(Catalogue, AKeyWithoutAnEntryIsShownAsItIs) {
  EXPECT_EQ(Catalogue::english().text("No such key ^1 ..."), "No such key ^1 ...");
  EXPECT_EQ(Catalogue::parse("{}").text("Wald"), "Wald");
}

TEST(Catalogue, ABrokenOneIsRefused) {
  for (const char* content : {"{", "", "[1]", "{\"a\": 1}", "null", "{\"a\": \"\xFF\"}"}) {
    EXPECT_THROW(Catalogue::parse(content), std::runtime_error) << content;
  }
}

}  // namespace
}  // namespace workbench
