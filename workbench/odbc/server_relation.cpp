#include "workbench/odbc/server_relation.h"

#include <fmt/format.h>

#include <algorithm>

#include "workbench/odbc/connection_text.h"
#include "workbench/odbc/table_choice.h"
#include "workbench/odbc/type_lookup.h"
#include "workbench/text/text_fold.h"
#include "workbench/values/column_names.h"
#include "workbench/values/data_error.h"

namespace workbench {
namespace {

struct DriverPackage {
  const char* word;
  const char* package;
};

constexpr DriverPackage kPackages[] = {
    {"psqlodbc", "odbc-postgresql"}, {"postgres", "odbc-postgresql"}, {"maodbc", "odbc-mariadb"},
    {"maria", "odbc-mariadb"},       {"mysql", "odbc-mariadb"},       {"sqlite", "libsqliteodbc"}};

std::string installHint(const std::string& about) {
  const std::string folded = foldCase(about);
  for (const DriverPackage& each : kPackages) {
    if (folded.find(each.word) != std::string::npos) {
      return fmt::format("install the package {} of the distribution, or the driver", each.package);
    }
  }
  return "install the driver";
}

bool isAboutPassword(const ServerError& error) {
  const std::string text = foldCase(error.what());
  return error.state().starts_with("28") || text.find("password") != std::string::npos ||
         text.find("access denied") != std::string::npos;
}

std::string connectProblem(const ServerError& error, const std::string& driver) {
  const std::string said = error.what();
  if (error.state() == "IM002" || said.find("Can't open lib") != std::string::npos) {
    return fmt::format(
        "there is no such driver or data source ({}).\nodbcinst -q -d lists the drivers that are "
        "installed, odbcinst -q -s the data sources; {}, or name the driver's file: "
        "DRIVER=/path/to/driver.so.",
        said, installHint(driver + said));
  }
  if (isAboutPassword(error)) {
    return fmt::format(
        "the server does not let the user in ({}).\nGive the password with --password-file FILE or "
        "in the environment variable PROPORTIONS_ODBC_PASSWORD.",
        said);
  }
  return fmt::format("the server cannot be reached ({}).", said);
}

std::unique_ptr<Connection> connectAsking(const std::string& text, const ServerOptions& options,
                                          DriverText form) {
  try {
    return std::make_unique<Connection>(text, options.password.given, form);
  } catch (const ServerError& error) {
    if (options.password.given || !options.password.ask || !isAboutPassword(error)) throw;
    const std::optional<std::string> password = options.password.ask();
    if (!password) throw;
    return std::make_unique<Connection>(text, password, form);
  }
}

std::string driverOf(const ConnectionAttributes& attributes) {
  if (const std::string* driver = findAttribute(attributes, "driver")) return aboutDriver(*driver);
  const std::string* source = findAttribute(attributes, "dsn");
  return source == nullptr ? "" : aboutDriverOfSource(*source);
}

/// The driver manager looks these names up as bytes, whatever the driver takes.
void refuseOddNames(const ConnectionAttributes& attributes) {
  for (const char* name : {"driver", "dsn"}) {
    const std::string* value = findAttribute(attributes, name);
    if (value == nullptr || isAscii(*value)) continue;
    throw DataError(fmt::format(
        "odbc: the name of a driver or a data source must be ASCII, and {} is not; give it another "
        "name (odbcinst -j shows the files in which they are named).",
        *value));
  }
}

/// The connection string with what else the driver needs.
std::string completed(ConnectionAttributes attributes, const DriverTraits& traits) {
  for (const auto& [name, value] : traits.always) {
    std::erase_if(attributes, [&, key = foldCase(name)](const auto& attribute) {
      return foldCase(attribute.first) == key;
    });
    attributes.emplace_back(name, value);
  }
  for (const auto& attribute : traits.attributes) {
    if (findAttribute(attributes, attribute.first) == nullptr) attributes.push_back(attribute);
  }
  return connectionString(attributes);
}

}  // namespace

ServerRelation::ServerRelation(const ServerOptions& options) : label_(options.label) {
  if (options.query && options.table) {
    throw DataError("Give either --query or --table, not both.");
  }
  connect(options);
  try {
    beginSession();
    if (options.reads) tellFiles(options.reads);
    if (options.query) {
      takeQuery(*options.query);
    } else {
      takeTable(options.table);
    }
  } catch (const ServerError& error) {
    throw DataError(problem(error));
  }
  std::vector<std::string> names;
  for (const ServerColumn& column : columns_) names.push_back(column.name);
  refuseBadNames(names, options.query ? "--query" : label_);
}

std::string ServerRelation::problem(const ServerError& error) const {
  return fmt::format("{}: the server says: {}", label_, error.what());
}

void ServerRelation::connect(const ServerOptions& options) {
  const ConnectionAttributes attributes = connectionAttributes(options.text);
  const std::string driver = driverOf(attributes);
  const DriverTraits traits = driverTraits(driver);
  if (traits.text == DriverText::kUnicode) refuseOddNames(attributes);
  const std::string text = completed(attributes, traits);
  try {
    connection_ = connectAsking(text, options, traits.text);
    dialect_ = &dialectOf(connection_->info(SQL_DBMS_NAME));
    if (dialect_->bytesAsUtf8 == "" && connection_->form() != DriverText::kBytes) {
      connection_ = connectAsking(text, options, DriverText::kBytes);
    }
  } catch (const ServerError& error) {
    throw DataError(fmt::format("{}: {}", label_, connectProblem(error, driver)));
  }
  connection_->watch(options.isInterrupted);
  connection_->refuseLost(text);
  if (dialect_->bytesAsUtf8 && connection_->form() != DriverText::kBytes) {
    connection_->takeBytesUnlessUnicode();
  }
  const std::string quote = connection_->info(SQL_IDENTIFIER_QUOTE_CHAR);
  if (quote != " ") quote_ = quote.empty() ? "\"" : quote;
}

void ServerRelation::run(ServerStatement& statement, const std::string& sql) {
  statements_.push_back(sql);
  statement.run(sql);
}

void ServerRelation::beginSession() {
  if (connection_->form() == DriverText::kBytes && !dialect_->bytesAsUtf8.value_or("").empty()) {
    ServerStatement statement(*connection_);
    run(statement, std::string(*dialect_->bytesAsUtf8));
  }
  if (dialect_->session.empty()) return connection_->beginTransaction();
  for (const std::string_view sql : dialect_->session) {
    ServerStatement statement(*connection_);
    run(statement, std::string(sql));
  }
}

void ServerRelation::tellFiles(const std::function<void(const std::string& file)>& told) {
  told(connection_->info(SQL_DATABASE_NAME));
  if (dialect_->files.empty()) return;
  ServerStatement statement(*connection_);
  run(statement, std::string(dialect_->files));
  while (statement.fetch()) told(std::string(statement.text(statement.columnCount() - 1)));
}

void ServerRelation::restartSession() {
  connection_->rollBack();
  if (!dialect_->session.empty()) {
    try {
      ServerStatement(*connection_).run("ROLLBACK");
    } catch (const ServerError&) {
      // There is no transaction any more, which is what is wanted.
    }
  }
  statements_.clear();
  beginSession();
}

std::string ServerRelation::quoted(const std::string& name) const {
  std::string text = quote_;
  for (const char c : name) {
    text += c;
    if (quote_ == std::string(1, c)) text += c;
  }
  return text + quote_;
}

std::string ServerRelation::quotedPath(const std::vector<std::string>& parts) const {
  std::string path;
  for (const std::string& part : parts) path += (path.empty() ? "" : ".") + quoted(part);
  return path;
}

void ServerRelation::describe(const std::string& sql) {
  ServerStatement statement(*connection_);
  run(statement, fmt::format("SELECT * FROM {} WHERE 1 = 0", sql));
  told_ = statement.columns();
  columns_.clear();
  for (const ResultColumn& told : told_) {
    ServerColumn column = columnByOdbcType(told);
    column.quoted = quoted(told.name);
    dialect_->settle(column, told);
    columns_.push_back(std::move(column));
  }
  sql_ = sql;
}

void ServerRelation::takeQuery(const std::string& query) {
  const std::string scanned = scannedQuery(query, dialect_->scan);
  describe(fmt::format("(\n{}\n) proportions_data", scanned));
  std::vector<std::string> names;
  for (const ServerColumn& column : columns_) names.push_back(column.name);
  refuseBadNames(names, "--query");
  lookTypesUp({});
}

/// First the name as it was given, then what the server has that is called so.
void ServerRelation::takeTable(const std::optional<std::string>& wanted) {
  if (wanted) {
    std::vector<std::string> parts = namedParts(*wanted);
    try {
      describe(quotedPath(parts));
      return lookTypesUp(parts);
    } catch (const ServerError&) {
      // A failed statement ends the transaction; the list of tables has the reason, or no other
      // table has the name, and then the same statement fails again.
      restartSession();
    }
  }
  std::vector<ServerTable> tables;
  {
    ServerStatement statement(*connection_);
    statement.listTables();
    tables = readTables(statement);
  }
  const std::vector<std::string> parts = chooseTable(tables, label_, wanted).parts();
  describe(quotedPath(parts));
  lookTypesUp(parts);
}

void ServerRelation::lookTypesUp(const std::vector<std::string>& table) {
  const RowsOf rowsOf = [this](const std::string& sql) {
    ServerStatement statement(*connection_);
    run(statement, sql);
    std::vector<std::vector<std::string>> rows;
    while (statement.fetch()) {
      auto& row = rows.emplace_back();
      for (size_t i = 0; i < statement.columnCount(); ++i) row.emplace_back(statement.text(i));
    }
    return rows;
  };
  if (dialect_->types == TypeSource::kPostgresCatalogue) {
    lookPostgresTypesUp(rowsOf, sql_, connection_->info(SQL_DBMS_VER), columns_);
  } else if (dialect_->types == TypeSource::kInformationSchema && !table.empty()) {
    lookMariaTypesUp(rowsOf, table.size() > 1 ? table[table.size() - 2] : "", table.back(),
                     columns_);
  }
}

/// Drivers are known to take a broken connection for the end of the rows.
void ServerRelation::refuseLostConnection() {
  try {
    ServerStatement statement(*connection_);
    statement.run(fmt::format("SELECT * FROM {} WHERE 1 = 0", sql_));
  } catch (const ServerError& error) {
    throw DataError(problem(error));
  }
}

}  // namespace workbench
