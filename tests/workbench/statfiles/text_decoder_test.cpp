#include "workbench/statfiles/text_decoder.h"

#include <gtest/gtest.h>

#include "workbench/values/data_error.h"

namespace workbench {
namespace {

std::string decoded(const std::string& encoding, std::string_view bytes) {
  TextDecoder decoder(encoding, "f.dta");
  std::string scratch;
  std::string_view text;
  return decoder.decode(bytes, scratch, text) ? std::string(text) : "refused";
}

// Byte sequences by the encodings' own tables.
TEST(TextDecoder, Encodings) {
  EXPECT_EQ(decoded("", "abc"), "abc");
  EXPECT_EQ(decoded("UTF-8", "K\xC3\xB6ln"), "Köln");
  EXPECT_EQ(decoded("windows-1252", "K\xF6ln \x80"), "Köln €");
  EXPECT_EQ(decoded("SHIFT-JIS", "\x93\xFA\x96\x7B"), "日本");
  EXPECT_EQ(decoded("EUC-KR", "\xC7\xD1"), "한");
  EXPECT_EQ(decoded("CP866", "\x8F\xA0"), "Па");
  EXPECT_EQ(decoded("UTF-16LE", std::string_view("a\0b\0", 4)), "ab");
}

TEST(TextDecoder, BytesThatAreNotOfTheEncoding) {
  EXPECT_EQ(decoded("UTF-8", "K\xF6ln"), "refused");
  EXPECT_EQ(decoded("UTF-8", "\xC3"), "refused");
  EXPECT_EQ(decoded("SHIFT-JIS", "\x93"), "refused");
  EXPECT_EQ(decoded("US-ASCII", "\xE9"), "refused");
}

/// The encodings that the library names for a file, but for three of old Macintoshes (Arabic,
/// Hebrew and Thai) that are refused.
TEST(TextDecoder, KnowsTheNamesThatFilesMayHave) {
  for (const char* name :
       {"UTF-8",        "US-ASCII",     "ISO-8859-1",   "ISO-8859-2",   "ISO-8859-3",
        "ISO-8859-4",   "ISO-8859-5",   "ISO-8859-6",   "ISO-8859-7",   "ISO-8859-8",
        "ISO-8859-9",   "ISO-8859-11",  "ISO-8859-15",  "CP437",        "CP850",
        "CP852",        "CP857",        "CP858",        "CP862",        "CP864",
        "CP865",        "CP866",        "CP869",        "CP874",        "CP922",
        "CP1129",       "CP720",        "CP737",        "CP775",        "CP860",
        "CP863",        "MACGREEK",     "MACTURKISH",   "MACROMAN",     "MACUKRAINE",
        "WINDOWS-1250", "WINDOWS-1251", "WINDOWS-1252", "WINDOWS-1253", "WINDOWS-1254",
        "WINDOWS-1255", "WINDOWS-1256", "WINDOWS-1257", "WINDOWS-1258", "CP950",
        "BIG-5",        "EUC-TW",       "EUC-CN",       "CP936",        "GB18030",
        "EUC-JP",       "CP932",        "SHIFT-JIS",    "EUC-KR",       "CP949",
        "ISO-2022-JP",  "ISO-2022-KR"}) {
    EXPECT_NO_THROW(TextDecoder(name, "f")) << name;
  }
}

TEST(TextDecoder, UnknownEncodings) {
  try {
    TextDecoder("NOWHERE-7", "f.dta");
    FAIL();
  } catch (const DataError& error) {
    EXPECT_NE(std::string(error.what()).find("f.dta"), std::string::npos);
    EXPECT_NE(std::string(error.what()).find("--encoding"), std::string::npos);
  }
}

}  // namespace
}  // namespace workbench
