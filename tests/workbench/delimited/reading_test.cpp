/// The same table by every way of reading it.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zlib.h>
#include <zstd.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <thread>

#include "tests/workbench/delimited/delimited_text.h"
#include "tests/workbench/delimited/plain_reader.h"
#include "workbench/values/data_error.h"

namespace workbench {
namespace {

using Columns = std::vector<std::vector<std::string>>;

/// Few values, many texts, many numbers, quotes and line ends inside.
std::string mixedText(size_t cases) {
  std::mt19937 random(3);
  std::string text = "v,region,id,weight,note\r\n";
  for (size_t i = 0; i < cases; ++i) {
    text += std::to_string(random() % 3) + ",r" + std::to_string(random() % 12) + ",\"p" +
            std::to_string(i) + "\"," + std::to_string(random()) + "." +
            std::to_string(random() % 10) + ",";
    if (random() % 5 == 0) text += "\"several\nlines, \"\"quoted\"\"\"";
    text += "\r\n";
  }
  return text;
}

Columns plainColumns(const std::string& text) {
  const PlainTable table = readPlainly(text, 0, '.');
  Columns columns;
  for (size_t i = 0; i < table.header.fields.size(); ++i) {
    columns.push_back(table.column(i, FieldRules()));
  }
  return columns;
}

DelimitedRequest requestOf(std::initializer_list<size_t> columns) {
  DelimitedRequest request;
  for (const size_t column : columns) request.columns.push_back({column, {}, {}});
  return request;
}

TEST(Reading, GivesTheSameCasesHoweverTheTextIsCut) {
  const std::string text = mixedText(400);
  const Columns expected = plainColumns(text);
  const TextFile file(text);
  for (const size_t bytes : {1U, 7U, 64U, 1000U, 4096U, 1U << 20U}) {
    for (const unsigned threads : {1U, 4U}) {
      ReadAs how;
      how.options.blockBytes = bytes;
      how.options.threads = threads;
      how.request.counting = Counting::kNever;
      EXPECT_TRUE(columnsOf(file.path(), how) == expected) << bytes << " bytes, " << threads;
      how.request.counting = Counting::kAlways;
      EXPECT_TRUE(sortedRows(columnsOf(file.path(), how)) == sortedRows(expected)) << bytes;
    }
  }
}

TEST(Reading, GivesTheSameCasesInBlocksWhenTheyDoNotFit) {
  const std::string text = mixedText(3000);
  const TextFile file(text);
  ReadAs how;
  how.options.blockBytes = 1000;
  how.request.memoryLimit = 10'000;
  how.request.counting = Counting::kNever;
  EXPECT_TRUE(columnsOf(file.path(), how) == plainColumns(text));
}

TEST(Reading, ColumnsOfManyNumbersBecomeNumbersOfTheirOwn) {
  const std::string text = mixedText(70'000);
  const TextFile file(text);
  DelimitedOptions options;
  options.parts = {{file.path(), "FILE", {}}};
  DelimitedData data(options);
  const DelimitedCases cases = data.read(requestOf({3, 0, 2}));
  EXPECT_TRUE(cases.columns[0].isWide());
  EXPECT_EQ(cases.columns[1].codes1.size(), cases.entries);
  EXPECT_EQ(cases.columns[2].codes4.size(), cases.entries);
  EXPECT_EQ(cases.cases, 70'000);
  ReadAs how;
  how.request.counting = Counting::kNever;
  EXPECT_TRUE(columnsOf(file.path(), how) == plainColumns(text));
}

TEST(Reading, CountsEqualCases) {
  std::string text = "a,b\n";
  for (int i = 0; i < 100'000; ++i) text += i % 3 == 0 ? "1,x\n" : i % 2 == 0 ? "0,x\n" : ",y\n";
  const TextFile file(text);
  DelimitedOptions options;
  options.parts = {{file.path(), "FILE", {}}};
  options.threads = 4;
  const DelimitedCases cases = DelimitedData(options).read(requestOf({0, 1}));
  EXPECT_EQ(cases.entries, 3U);
  EXPECT_EQ(cases.repeats, (std::vector<int64_t>{33'333, 33'333, 33'334}));
  EXPECT_EQ(cases.columns[0].codes1, (std::vector<uint8_t>{0, 1, 2}));
  EXPECT_EQ(cases.columns[1].texts, (std::vector<std::string>{"", "x", "y"}));
  EXPECT_EQ(cases.columns[1].codes1, (std::vector<uint8_t>{2, 1, 1}));
  EXPECT_EQ(cases.columns[1].kinds[1], FieldKind::kText);
}

TEST(Reading, StopsCountingWhereCasesDiffer) {
  const TextFile file(mixedText(300'000));
  DelimitedOptions options;
  options.parts = {{file.path(), "FILE", {}}};
  const DelimitedCases cases = DelimitedData(options).read(requestOf({0, 2}));
  EXPECT_LT(cases.repeats.size(), 200'000U);
  EXPECT_EQ(cases.entries, 300'000U);
}

TEST(Reading, RemembersWhereAValueComesFirst) {
  const TextFile file("a,b\n1,x\n2,\"p\nq\"\n1,NA\nz,y\n");
  DelimitedOptions options;
  options.parts = {{file.path(), "FILE", {}}};
  const DelimitedCases cases = DelimitedData(options).read(requestOf({0, 1}));
  const CodedColumn& column = cases.columns[0];
  EXPECT_EQ(column.texts, (std::vector<std::string>{"", "1", "2", "z"}));
  EXPECT_EQ(column.kinds, (std::vector<FieldKind>{FieldKind::kMissing, FieldKind::kNumber,
                                                  FieldKind::kNumber, FieldKind::kText}));
  EXPECT_EQ(column.places[1].line, 2U);
  EXPECT_EQ(column.places[2].line, 3U);
  EXPECT_EQ(column.places[3].line, 6U);
}

TEST(Reading, TakesRecordsOfAnyLengthAndNumber) {
  const std::string longField(3'000'000, 'x');
  EXPECT_EQ(columnsOfText("a,b\n\"" + longField + "\n\",1\n2,2"),
            (Columns{{"text", "[" + longField + "\n]", "[2]"}, {"number", "1", "2"}}));
  std::string header = "c0";
  std::string record = "0";
  for (int i = 1; i < 10'000; ++i) {
    header += ",c" + std::to_string(i);
    record += "," + std::to_string(i);
  }
  ReadAs last;
  last.request.columns = {{9'999, {}, {}}};
  EXPECT_EQ(columnsOfText(header + "\n" + record + "\n" + record, last),
            (Columns{{"number", "9999", "9999"}}));
}

TEST(Reading, RefusesWhatIsWrongFirst) {
  std::string text = "a,b\n";
  for (int i = 0; i < 20'000; ++i) text += i % 50 == 49 && i > 10'000 ? "1\n" : "1,2\n";
  ReadAs how;
  how.options.blockBytes = 64;
  how.options.threads = 8;
  for (int i = 0; i < 20; ++i) EXPECT_EQ(refusalOf(text, how).rfind(", line 10051: ", 0), 0U);
}

TEST(Reading, CountsLinesAcrossBlocks) {
  for (const char* text :
       {"a,b\r\n1,2\r\n3,4\r\n5\r\n", "a,b\r\n1,2\r\n\"3\",4\r\n5\r\n", "a,b\r\n1,2\r3,4\n5\r"}) {
    ReadAs how;
    for (how.options.blockBytes = 1; how.options.blockBytes < 24; ++how.options.blockBytes) {
      EXPECT_EQ(refusalOf(text, how).rfind(", line 4: ", 0), 0U)
          << text << " in blocks of " << how.options.blockBytes;
    }
  }
}

TEST(Reading, RefusesRecordsThatAreTooLong) {
  ReadAs how;
  how.options.blockBytes = 100;
  how.options.longestRecord = 300'000;
  const std::string most(299'000, 'x');
  EXPECT_EQ(refusalOf("a,b\n\"1\n\",2\n\"" + most + "\",2\n", how), "");
  EXPECT_EQ(refusalOf("a,b\n\"1\n\",2\n\"" + most + most + most, how)
                .rfind(", line 4: the record that begins here is longer than 300000 bytes", 0),
            0U);
  EXPECT_EQ(refusalOf("\"a" + most + most + most + most + most, how)
                .rfind(", line 1: the record that begins here is longer than 300000 bytes", 0),
            0U);
}

std::string gzipped(const std::string& text) {
  const TextFile file("", ".gz");
  gzFile out = gzopen(file.path().c_str(), "wb");
  EXPECT_EQ(gzwrite(out, text.data(), static_cast<unsigned>(text.size())),
            static_cast<int>(text.size()));
  EXPECT_EQ(gzclose(out), Z_OK);
  std::ifstream in(file.path(), std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

std::string zstandard(const std::string& text) {
  std::string out(ZSTD_compressBound(text.size()), '\0');
  out.resize(ZSTD_compress(out.data(), out.size(), text.data(), text.size(), 3));
  return out;
}

std::string messageOf(const TextFile& file, const ReadAs& how) {
  try {
    columnsOf(file.path(), how);
  } catch (const DataError& error) {
    return error.what();
  }
  return "";
}

TEST(CompressedText, IsReadAndRefusedWhenItIsDamaged) {
  const std::string text = mixedText(20'000);
  const Columns expected = plainColumns(text);
  ReadAs how;
  how.request.counting = Counting::kNever;
  for (const auto& [ending, bytes] : {std::pair(".csv.gz", gzipped(text) + gzipped("")),
                                      std::pair(".CSV.ZST", zstandard(text))}) {
    EXPECT_TRUE(columnsOf(TextFile(bytes, ending).path(), how) == expected) << ending;
    const TextFile cut(std::string_view(bytes).substr(0, bytes.size() / 2), ending);
    EXPECT_NE(messageOf(cut, how).find("cut off"), std::string::npos) << ending;
    std::string damaged = bytes;
    for (size_t i = damaged.size() / 2; i < damaged.size() / 2 + 100; ++i) damaged[i] ^= 0x55;
    EXPECT_THROW(columnsOf(TextFile(damaged, ending).path(), how), DataError) << ending;
  }
  EXPECT_THROW(columnsOf(TextFile("a,b\n1,2\n", ".gz").path()), DataError);
}

TEST(Encodings, AreConverted) {
  ReadAs latin;
  latin.options.encoding = "windows-1252";
  EXPECT_EQ(columnsOfText("a;b\ncaf\xE9;\x80\n", latin),
            (Columns{{"text", "[café]"}, {"text", "[€]"}}));
  ReadAs wide;
  wide.options.encoding = "UTF-16";
  EXPECT_EQ(columnsOfText(std::string("\xFF\xFE"
                                      "a\0\n\0"
                                      "7\0\n\0",
                                      10),
                          wide),
            (Columns{{"number", "7"}}));
  ReadAs ascii;
  ascii.options.encoding = "US-ASCII";
  EXPECT_EQ(
      refusalOf("a\n1\n\xE9\n", ascii).rfind(", line 3: there are bytes that are not US-ASCII", 0),
      0U);
  ReadAs unknown;
  unknown.options.encoding = "no such thing";
  EXPECT_NE(columnsOfText("a\n1\n", unknown).front().front().find("no such encoding"),
            std::string::npos);
}

TEST(Encodings, BytesThatStandForNothingAreRefused) {
  const std::string fill(300'000, 'x');  // several blocks
  for (const auto& [encoding, bytes] :
       {std::pair{"windows-1252", "\x81"}, std::pair{"cp1252", "\x9D"},
        std::pair{"windows-1250", "\x83"}, std::pair{"windows-1257", "\x9F"},
        std::pair{"windows-874", "\xFF"}, std::pair{"windows-874", "\x81"}}) {
    ReadAs how;
    how.options.encoding = encoding;
    EXPECT_EQ(refusalOf(std::string("a\n1\nx") + bytes + "y\n", how)
                  .rfind(", line 3: there are bytes that are not " + std::string(encoding), 0),
              0U)
        << encoding;
    EXPECT_EQ(refusalOf("a\n" + fill + "\nx" + bytes + "y\n", how)
                  .rfind(", line 3: there are bytes that are not " + std::string(encoding), 0),
              0U)
        << encoding;
  }
  ReadAs control;
  control.options.encoding = "ISO-8859-1";
  EXPECT_EQ(columnsOfText("a\nx\x81\n", control), (Columns{{"text", "[x\xC2\x81]"}}))
      << "a control character there";
}

TEST(Pipes, AreReadAsOftenAsNeeded) {
  const TextFile name("");
  const std::string path = name.path() + ".fifo";
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  const std::string text = mixedText(20'000);
  std::thread writer([&] { std::ofstream(path, std::ios::binary) << text; });
  DelimitedOptions options;
  options.parts = {{path, "FILE", {}}};
  DelimitedData data(options);
  DelimitedRequest request = requestOf({3});
  request.counting = Counting::kNever;
  const DelimitedCases once = data.read(request);
  const DelimitedCases again = data.read(request);
  writer.join();
  unlink(path.c_str());
  EXPECT_EQ(once.cases, 20'000);
  EXPECT_TRUE(once.columns[0].codes2 == again.columns[0].codes2);
}

TEST(Pipes, CanBeInterruptedWhileNothingComes) {
  const TextFile name("");
  const std::string path = name.path() + ".fifo";
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  std::atomic<bool> interrupted = false;
  std::thread signal([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    interrupted = true;
  });
  DelimitedOptions options;
  options.parts = {{path, "FILE", {}}};
  options.interrupted = &interrupted;
  EXPECT_THROW(DelimitedData{options}, Interrupted);
  signal.join();
  unlink(path.c_str());
}

TEST(Files, ThatChangeWhileTheyAreReadAreRefused) {
  const TextFile file("a\n1\n2\n");
  DelimitedOptions options;
  options.parts = {{file.path(), "FILE", {}}};
  DelimitedData data(options);
  const DelimitedRequest request = requestOf({0});
  EXPECT_EQ(data.read(request).cases, 2);
  std::ofstream(file.path(), std::ios::app) << "3\n";
  EXPECT_THROW(data.read(request), DataError);
}

TEST(Files, ThatChangeAndLookTheSameAreRefused) {
  const TextFile file("a\n1\n2\n");
  const auto written = std::filesystem::last_write_time(file.path());
  DelimitedOptions options;
  options.parts = {{file.path(), "FILE", {}}};
  DelimitedData data(options);
  std::this_thread::sleep_for(std::chrono::milliseconds(20));  // the clock of files is coarse
  std::ofstream(file.path()) << "a\n3\n4\n";
  std::filesystem::last_write_time(file.path(), written);
  EXPECT_THROW(data.read(requestOf({0})), DataError);
}

TEST(Files, ThatAreNotThereAreRefused) {
  EXPECT_THROW(columnsOf("/nowhere/data.csv"), DataError);
  EXPECT_THROW(columnsOf("/"), DataError);
}

TEST(Files, OfOneDataSetAreOneTable) {
  const TextFile first("a,b\n1,x\n2,y\n");
  const TextFile second("b,a\nz,3\n");
  ReadAs how;
  how.options.parts = {{first.path(), "FIRST", {"2024"}}, {second.path(), "SECOND", {" 2025 "}}};
  how.options.constants = {"year"};
  EXPECT_EQ(sortedRows(columnsOf("", how)),
            (std::vector<std::string>{"number|text|number|", "1|[x]|2024|", "2|[y]|2024|",
                                      "3|[z]|2025|"}));
  how.options.parts[1].constants = {"late"};
  how.request.counting = Counting::kNever;
  EXPECT_EQ(columnsOf("", how)[2],
            (std::vector<std::string>{"text", "[2024]", "[2024]", "[late]"}));
}

TEST(Files, OfOneDataSetHaveTheSameColumns) {
  const TextFile first("a,b\n1,x\n");
  for (const char* text : {"a,c\n1,x\n", "a\n1\n", "a,b,c\n1,2,3\n"}) {
    const TextFile second(text);
    ReadAs how;
    how.options.parts = {{first.path(), "FIRST", {}}, {second.path(), "SECOND", {}}};
    try {
      columnsOf("", how);
      FAIL() << text;
    } catch (const DataError& error) {
      EXPECT_EQ(std::string(error.what()).rfind("SECOND ", 0), 0U) << error.what();
    }
  }
}

TEST(Reading, ReportsProgress) {
  const TextFile file(mixedText(20'000));
  DelimitedOptions options;
  options.parts = {{file.path(), "FILE", {}}};
  options.blockBytes = 1000;
  DelimitedRequest request = requestOf({0});
  double last = 0.0;
  int64_t most = 0;
  request.progress = [&](double percent, int64_t cases) {
    last = std::max(last, percent);
    most = std::max(most, cases);
  };
  DelimitedData(options).read(request);
  EXPECT_GT(last, 90.0);
  EXPECT_LE(last, 100.0);
  EXPECT_GT(most, 18'000);
  EXPECT_LE(most, 20'000);
}

}  // namespace
}  // namespace workbench
