// Writes files of statistics packages from a description, for the tests.
//
//   stat_writer FORMAT FILE < DESCRIPTION
//
// FORMAT is dta, sas7bdat, xpt or sas7bcat. The description is JSON:
//   {"version": 118, "compressed": false,
//    "labels": {"yesno": [{"value": 1, "label": "Yes"}, {"value": ".a", "label": "Refused"}]},
//    "columns": [{"name": "x", "type": "double", "label": "Ex", "format": "%9.0g", "labels":
//    "yesno"},
//                {"name": "t", "type": "string", "width": 12}],
//    "rows": [[1, "abc"], [null, ""], [".a", "d"]], "repeat": 1}
// Types are int8, int16, int32, float, double, string and long (a string of any length). A number
// is null or "." when system-missing, ".a" to ".z" and "._" when missing with a letter. "textBytes"
// says that the texts are written as the bytes of their Latin-1 characters. "repeat" writes the
// rows so many times.
#include <fcntl.h>
#include <readstat.h>
#include <unistd.h>

#include <cstdio>
#include <iostream>
#include <map>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using Json = nlohmann::ordered_json;

void check(readstat_error_t error, const std::string& what) {
  if (error != READSTAT_OK) throw std::runtime_error(what + ": " + readstat_error_message(error));
}

struct Column {
  readstat_variable_t* variable;
  std::string type;
};

class File {
 public:
  File(std::string format, const std::string& path)
      : format_(std::move(format)), writer_(readstat_writer_init()) {
    descriptor_ = ::open(path.c_str(), O_CREAT | O_TRUNC | O_WRONLY | O_CLOEXEC, 0644);
    if (descriptor_ < 0) throw std::runtime_error(path + ": cannot be written");
    readstat_set_data_writer(writer_, [](const void* bytes, size_t count, void* to) {
      return ::write(*static_cast<int*>(to), bytes, count);
    });
  }
  ~File() {
    readstat_writer_free(writer_);
    ::close(descriptor_);
  }
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  void write(const Json& description);

 private:
  void addLabels(const Json& sets);
  void addColumn(const Json& column);
  void addLongTexts(const Json& rows);
  void begin(long rows);
  void writeValue(const Column& column, const Json& value);
  void writeMissing(const Column& column, char letter);
  std::string bytesOf(const Json& text) const;
  bool isDta() const { return format_ == "dta"; }

  std::string format_;
  readstat_writer_t* writer_;
  int descriptor_ = -1;
  bool latin1_ = false;
  std::map<std::string, readstat_label_set_t*> sets_;
  std::vector<Column> columns_;
  int allLongTexts_ = 0;
  int longTexts_ = 0;
};

/// Of a text as it is spelt in UTF-8, or in Latin-1.
std::string File::bytesOf(const Json& text) const {
  const auto utf8 = text.get<std::string>();
  if (!latin1_) return utf8;
  std::string bytes;
  for (size_t at = 0; at < utf8.size(); ++at) {
    const auto lead = static_cast<unsigned char>(utf8[at]);
    if (lead < 0x80) {
      bytes += utf8[at];
    } else {
      bytes +=
          static_cast<char>((lead & 0x3U) << 6U | (static_cast<unsigned char>(utf8[++at]) & 0x3FU));
    }
  }
  return bytes;
}

void File::addLabels(const Json& sets) {
  for (const auto& [name, labels] : sets.items()) {
    const bool texts = name.front() == '$';
    readstat_label_set_t* set = readstat_add_label_set(writer_,
                                                       texts     ? READSTAT_TYPE_STRING
                                                       : isDta() ? READSTAT_TYPE_INT32
                                                                 : READSTAT_TYPE_DOUBLE,
                                                       name.c_str());
    sets_[name] = set;
    for (const Json& each : labels) {
      const Json& value = each.at("value");
      const std::string label = bytesOf(each.at("label"));
      if (texts) {
        readstat_label_string_value(set, bytesOf(value).c_str(), label.c_str());
      } else if (value.is_string()) {
        readstat_label_tagged_value(set, value.get<std::string>().at(1), label.c_str());
      } else if (isDta()) {
        readstat_label_int32_value(set, value.get<int32_t>(), label.c_str());
      } else {
        readstat_label_double_value(set, value.get<double>(), label.c_str());
      }
    }
  }
}

void File::addColumn(const Json& column) {
  static const std::map<std::string, readstat_type_t> kTypes = {
      {"int8", READSTAT_TYPE_INT8},      {"int16", READSTAT_TYPE_INT16},
      {"int32", READSTAT_TYPE_INT32},    {"float", READSTAT_TYPE_FLOAT},
      {"double", READSTAT_TYPE_DOUBLE},  {"string", READSTAT_TYPE_STRING},
      {"long", READSTAT_TYPE_STRING_REF}};
  const auto type = column.at("type").get<std::string>();
  readstat_variable_t* variable =
      readstat_add_variable(writer_, bytesOf(column.at("name")).c_str(), kTypes.at(type),
                            column.value("width", size_t{type == "string" ? 8U : 0U}));
  if (column.contains("label"))
    readstat_variable_set_label(variable, bytesOf(column["label"]).c_str());
  if (column.contains("format")) {
    readstat_variable_set_format(variable, column["format"].get<std::string>().c_str());
  }
  if (column.contains("labels")) {
    readstat_variable_set_label_set(variable, sets_.at(column["labels"].get<std::string>()));
  }
  columns_.push_back({variable, type});
}

/// They have to be known before the first case is written.
void File::addLongTexts(const Json& rows) {
  for (const Json& row : rows) {
    for (size_t at = 0; at < columns_.size(); ++at) {
      if (columns_[at].type != "long") continue;
      readstat_add_string_ref(writer_, bytesOf(row.at(at)).c_str());
      ++allLongTexts_;
    }
  }
}

void File::begin(long rows) {
  if (format_ == "dta") {
    check(readstat_begin_writing_dta(writer_, &descriptor_, rows), format_);
  } else if (format_ == "sas7bdat") {
    check(readstat_begin_writing_sas7bdat(writer_, &descriptor_, rows), format_);
  } else if (format_ == "xpt") {
    check(readstat_begin_writing_xport(writer_, &descriptor_, rows), format_);
  } else if (format_ == "sas7bcat") {
    check(readstat_begin_writing_sas7bcat(writer_, &descriptor_), format_);
  } else {
    throw std::runtime_error(format_ + ": no such format");
  }
}

void File::writeMissing(const Column& column, char letter) {
  if (letter == '.') {
    check(readstat_insert_missing_value(writer_, column.variable), "missing");
    return;
  }
  const bool small = isDta() || letter == '_';
  check(readstat_insert_tagged_missing_value(
            writer_, column.variable, small ? letter : static_cast<char>(letter - 'a' + 'A')),
        "missing");
}

void File::writeValue(const Column& column, const Json& value) {
  if (column.type == "string") {
    check(readstat_insert_string_value(writer_, column.variable, bytesOf(value).c_str()), "text");
  } else if (column.type == "long") {
    readstat_string_ref_t* text = readstat_get_string_ref(writer_, longTexts_++ % allLongTexts_);
    check(readstat_insert_string_ref(writer_, column.variable, text), "text");
  } else if (value.is_null()) {
    writeMissing(column, '.');
  } else if (value.is_string()) {
    const auto spelt = value.get<std::string>();
    writeMissing(column, spelt.size() == 1 ? '.' : spelt.at(1));
  } else if (column.type == "int8") {
    check(readstat_insert_int8_value(writer_, column.variable, value.get<int8_t>()), "int8");
  } else if (column.type == "int16") {
    check(readstat_insert_int16_value(writer_, column.variable, value.get<int16_t>()), "int16");
  } else if (column.type == "int32") {
    check(readstat_insert_int32_value(writer_, column.variable, value.get<int32_t>()), "int32");
  } else if (column.type == "float") {
    check(readstat_insert_float_value(writer_, column.variable, value.get<float>()), "float");
  } else {
    check(readstat_insert_double_value(writer_, column.variable, value.get<double>()), "double");
  }
}

void File::write(const Json& description) {
  latin1_ = description.value("textBytes", false);
  if (description.contains("version")) {
    check(readstat_writer_set_file_format_version(writer_, description["version"].get<uint8_t>()),
          "version");
  }
  if (description.value("compressed", false)) {
    check(readstat_writer_set_compression(writer_, READSTAT_COMPRESS_ROWS), "compression");
  }
  // The same bytes every time.
  readstat_writer_set_file_timestamp(writer_, 1'000'000'000);
  addLabels(description.value("labels", Json::object()));
  for (const Json& column : description.value("columns", Json::array())) addColumn(column);
  const Json rows = description.value("rows", Json::array());
  const long repeat = description.value("repeat", 1L);
  addLongTexts(rows);
  begin(static_cast<long>(rows.size()) * repeat);
  for (long i = 0; i < repeat; ++i) {
    for (const Json& row : rows) {
      check(readstat_begin_row(writer_), "row");
      for (size_t at = 0; at < columns_.size(); ++at) writeValue(columns_[at], row.at(at));
      check(readstat_end_row(writer_), "row");
    }
  }
  check(readstat_end_writing(writer_), "end");
}

}  // namespace

int main(int argc, char** argv) {
  try {
    if (argc != 3) throw std::runtime_error("stat_writer FORMAT FILE < DESCRIPTION");
    File(argv[1], argv[2]).write(Json::parse(std::cin));
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}
