#include "workbench/odbc/connection_text.h"

#include <gtest/gtest.h>

#include "workbench/odbc/odbc_library.h"
#include "workbench/values/data_error.h"

namespace workbench {
namespace {

TEST(ConnectionText, IsANameOfASourceOrAttributes) {
  EXPECT_EQ(connectionString(connectionAttributes(" warehouse ")), "DSN=warehouse;");
  const auto attributes = connectionAttributes("Driver={A;}}b};SERVER = db ;; UID=me;");
  EXPECT_EQ(*findAttribute(attributes, "DRIVER"), "A;}b");
  EXPECT_EQ(*findAttribute(attributes, "server"), "db");
  EXPECT_EQ(findAttribute(attributes, "port"), nullptr);
  EXPECT_EQ(connectionString(attributes), "Driver={A;}}b};SERVER=db;UID=me;");
}

TEST(ConnectionText, BracesStandWhereAValueNeedsThem) {
  EXPECT_EQ(connectionString({{"PWD", "a;b"}}), "PWD={a;b};");
  EXPECT_EQ(connectionString({{"PWD", "{a"}}), "PWD={{a};");
  EXPECT_EQ(connectionString({{"PWD", "a "}}), "PWD={a };");
  EXPECT_EQ(connectionString({{"PWD", "a}b"}}), "PWD=a}b;");
}

TEST(ConnectionText, RefusesWhatIsNeither) {
  for (const char* text : {"", "  ", "DRIVER={x;SERVER=y", "SERVER=x;oops", "=x"}) {
    EXPECT_THROW(connectionAttributes(text), DataError) << text;
  }
}

TEST(ConnectionText, FindsSecretsInAnySpelling) {
  for (const char* name : {"PWD", "pwd", "Password", "SSLKeyPassword", "ClientSecret", "Token"}) {
    EXPECT_EQ(secretAttribute({{"SERVER", "x"}, {name, "y"}}), name);
  }
  EXPECT_EQ(secretAttribute({{"UID", "pwd"}, {"SERVER", "password"}}), "");
}

TEST(ConnectionText, FindsSecretsInsideValues) {
  for (const char* value :
       {"password=p", "sslmode=require Password = 'p'", "SET PWD=p", "x;passwd\t=p", "'pwd' = 'p'",
        "sslpassword=p", "postgresql://me:p@host/db", "db?user=me&password=p", "{token=t}"}) {
    EXPECT_EQ(secretAttribute({{"SERVER", "x"}, {"pqopt", value}}), "pqopt's password") << value;
  }
  for (const char* value : {"password", "sslmode=require", "/data/token=5/d.db", "http://host:80/x",
                            "http://me@host:80/x", "passwordless=1", "=p", ""}) {
    EXPECT_EQ(secretAttribute({{"pqopt", value}}), "") << value;
  }
}

TEST(ConnectionText, HasValuesThatMayBeFiles) {
  const std::vector<std::string> values = attributeValues(
      {{"Database", "d.db"}, {"pqopt", "sslrootcert=/a/root.crt sslkey = '/b/key'"}});
  EXPECT_EQ(values, (std::vector<std::string>{"d.db", "sslrootcert=/a/root.crt sslkey = '/b/key'",
                                              "/a/root.crt", "/b/key"}));
}

TEST(OdbcLibrary, ThatIsMissingIsNamedWithItsPackage) {
  try {
    loadOdbc("libodbc-of-nobody.so");
    FAIL();
  } catch (const DataError& error) {
    EXPECT_NE(std::string(error.what()).find("libodbc2"), std::string::npos) << error.what();
  }
}

TEST(OdbcLibrary, ThatIsAnotherOneIsRefused) {
  try {
    loadOdbc("libm.so.6");
    FAIL();
  } catch (const DataError& error) {
    EXPECT_NE(std::string(error.what()).find("lacks the function"), std::string::npos);
  }
}

}  // namespace
}  // namespace workbench
