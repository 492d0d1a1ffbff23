// A process that reads a damaged file may send anything.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <random>

#include "workbench/statfiles/message_stream.h"
#include "workbench/statfiles/stat_file.h"
#include "workbench/values/data_error.h"

namespace workbench {
namespace {

using wire::Kind;

const StatSource& source() {
  static const StatSource dta{StatFormat::kDta, "d.dta", "d.dta", "", nullptr};
  return dta;
}

/// Messages as bytes.
class Sent {
 public:
  Sent& add(Kind kind, const wire::Writer& message) {
    return add(static_cast<uint32_t>(kind), static_cast<uint32_t>(message.bytes().size()),
               message.bytes());
  }
  Sent& add(uint32_t kind, uint32_t size, const std::string& bytes) {
    wire::Writer header;
    header.put(wire::Header{kind, size});
    bytes_ += header.bytes() + bytes;
    return *this;
  }
  const std::string& bytes() const { return bytes_; }

 private:
  std::string bytes_;
};

std::unique_ptr<WorkerProcess> sends(const std::string& bytes) {
  return std::make_unique<WorkerProcess>(
      [bytes](int output) {
        for (size_t at = 0; at < bytes.size();) {
          const ssize_t count = ::write(output, bytes.data() + at, bytes.size() - at);
          if (count <= 0) ::_exit(0);
          at += static_cast<size_t>(count);
        }
      },
      5);
}

wire::Writer headMessage(const std::string& encoding, int64_t cases) {
  wire::Writer message;
  message.putText(encoding);
  message.put(cases);
  return message;
}

wire::Writer columnMessage(const std::string& name, uint8_t isText) {
  wire::Writer message;
  message.putText(name);
  message.putText("Label");
  message.putText("%9.0g");
  message.putText("");
  message.put(isText);
  return message;
}

wire::Writer endMessage(uint64_t cases) {
  wire::Writer message;
  message.put(cases);
  return message;
}

std::string head() {
  return Sent()
      .add(Kind::kHead, headMessage("UTF-8", 2))
      .add(Kind::kColumn, columnMessage("x", 0))
      .add(Kind::kColumn, columnMessage("t", 1))
      .add(Kind::kEnd, endMessage(0))
      .bytes();
}

wire::Writer blockMessage() {
  wire::Writer message;
  message.put(uint32_t{2});
  message.put(uint64_t{100});
  message.put(uint8_t{0});
  const double numbers[] = {1.0, wire::missingNumber('a')};
  message.putNumbers(numbers, 2);
  message.put(uint8_t{1});
  message.put(uint32_t{1});
  message.put(uint32_t{2});
  message.putText("abc");
  return message;
}

std::string block() {
  return Sent().add(Kind::kBlock, blockMessage()).add(Kind::kEnd, endMessage(2)).bytes();
}

StatHead headOf(const std::string& bytes) {
  MessageStream messages(source(), nullptr, sends(bytes));
  return takeHead(source(), messages);
}

/// How many cases come; every value is looked at.
uint64_t casesOf(const StatHead& head, const std::string& bytes) {
  StatCaseReader reader(source(), head, {0, 1},
                        std::make_unique<MessageStream>(source(), &head, sends(bytes)));
  uint64_t cases = 0;
  size_t seen = 0;
  while (reader.next()) {
    cases += reader.cases();
    for (const double number : reader.numbers(0)) seen += std::isnan(number) ? 1 : 0;
    for (const std::string_view text : reader.texts(1)) seen += text.size();
  }
  EXPECT_LE(seen, bytes.size());
  return cases;
}

std::string refusal(const std::function<void()>& step) {
  try {
    step();
  } catch (const DataError& error) {
    return error.what();
  }
  return "";
}

TEST(HostileMessages, WhatIsRightIsTaken) {
  const StatHead taken = headOf(head());
  EXPECT_EQ(taken.columns.size(), 2U);
  EXPECT_EQ(casesOf(taken, block()), 2U);
}

TEST(HostileMessages, WhatIsNotAMessageIsRefused) {
  wire::Writer tooLong;
  tooLong.put(uint32_t{0xFFFFFFFF});
  wire::Writer trailing = headMessage("UTF-8", 1);
  trailing.put('x');
  for (const std::string& bytes :
       {std::string(), std::string("abc"), Sent().add(99, 0, "").bytes(),
        Sent().add(0, 0xFFFFFFFF, "").bytes(), Sent().add(0, 100, "short").bytes(),
        Sent().add(Kind::kHead, tooLong).bytes(), Sent().add(Kind::kHead, trailing).bytes(),
        Sent().add(Kind::kBlock, blockMessage()).bytes(),
        Sent().add(Kind::kProblem, tooLong).bytes(),
        Sent().add(4, 18, std::string(18, '\xFF')).bytes(), head().substr(0, head().size() - 1)}) {
    EXPECT_NE(refusal([&] { headOf(bytes); }).find("d.dta: the file is damaged"),
              std::string::npos);
  }
}

TEST(HostileMessages, BlocksAreWhatTheHeadSays) {
  const StatHead taken = headOf(head());
  wire::Writer none;
  none.put(uint32_t{0});
  none.put(uint64_t{0});
  wire::Writer many;
  many.put(uint32_t{0xFFFFFFFF});
  many.put(uint64_t{0});
  wire::Writer swapped;
  swapped.put(uint32_t{1});
  swapped.put(uint64_t{0});
  swapped.put(uint8_t{1});
  wire::Writer trailing = blockMessage();
  trailing.put('x');
  for (const wire::Writer& message : {none, many, swapped, trailing}) {
    EXPECT_NE(refusal([&] { casesOf(taken, Sent().add(Kind::kBlock, message).bytes()); }), "");
  }
  const std::string wrongCount =
      Sent().add(Kind::kBlock, blockMessage()).add(Kind::kEnd, endMessage(3)).bytes();
  EXPECT_NE(refusal([&] { casesOf(taken, wrongCount); }), "");
  EXPECT_NE(refusal([&] { casesOf(taken, Sent().add(Kind::kBlock, blockMessage()).bytes()); }), "");
}

/// Bytes changed at random end in cases or in a refusal, and in nothing else.
TEST(HostileMessages, AnyBytes) {
  const StatHead taken = headOf(head());
  std::mt19937_64 random(20261121);
  for (int i = 0; i < 300; ++i) {
    for (const bool cases : {false, true}) {
      std::string bytes = cases ? block() : head();
      for (uint64_t changes = 1 + random() % 4; changes > 0; --changes) {
        bytes[random() % bytes.size()] = static_cast<char>(random() % 4 == 0 ? 0xFF : random());
      }
      refusal([&] {
        if (cases) {
          EXPECT_LE(casesOf(taken, bytes), 2U);
        } else {
          EXPECT_LE(headOf(bytes).columns.size(), 2U);
        }
      });
    }
  }
}

}  // namespace
}  // namespace workbench
