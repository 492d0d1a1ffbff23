/// The data engine's shared library, loaded when it is first needed: a run that only prints its
/// usage or refuses its command never pays for it.
#pragma once

#include <duckdb.h>

#include <string>
#include <vector>

namespace workbench {

/// The functions of the engine that are used. Each is a member of DuckdbLibrary without `duckdb_`.
#define WORKBENCH_DUCKDB_FUNCTIONS(X)       \
  X(append_data_chunk)                      \
  X(appender_close)                         \
  X(appender_create)                        \
  X(appender_destroy)                       \
  X(close)                                  \
  X(column_count)                           \
  X(column_name)                            \
  X(column_type)                            \
  X(connect)                                \
  X(create_config)                          \
  X(create_data_chunk)                      \
  X(create_logical_type)                    \
  X(data_chunk_get_size)                    \
  X(data_chunk_get_vector)                  \
  X(data_chunk_reset)                       \
  X(data_chunk_set_size)                    \
  X(decimal_scale)                          \
  X(decimal_width)                          \
  X(destroy_config)                         \
  X(destroy_data_chunk)                     \
  X(destroy_extracted)                      \
  X(destroy_logical_type)                   \
  X(destroy_pending)                        \
  X(destroy_prepare)                        \
  X(destroy_result)                         \
  X(disconnect)                             \
  X(enum_dictionary_size)                   \
  X(enum_dictionary_value)                  \
  X(execute_pending)                        \
  X(extract_statements)                     \
  X(extract_statements_error)               \
  X(fetch_chunk)                            \
  X(free)                                   \
  X(get_type_id)                            \
  X(interrupt)                              \
  X(open_ext)                               \
  X(pending_error)                          \
  X(pending_execute_task)                   \
  X(pending_prepared_streaming)             \
  X(prepare)                                \
  X(prepare_error)                          \
  X(prepare_extracted_statement)            \
  X(prepared_statement_column_count)        \
  X(prepared_statement_column_logical_type) \
  X(prepared_statement_column_name)         \
  X(prepared_statement_column_type)         \
  X(prepared_statement_type)                \
  X(query)                                  \
  X(query_progress)                         \
  X(result_error)                           \
  X(set_config)                             \
  X(validity_set_row_invalid)               \
  X(vector_assign_string_element_len)       \
  X(vector_ensure_validity_writable)        \
  X(vector_get_data)                        \
  X(vector_get_validity)

struct DuckdbLibrary {
#define WORKBENCH_DECLARE(name) decltype(&duckdb_##name) name = nullptr;
  WORKBENCH_DUCKDB_FUNCTIONS(WORKBENCH_DECLARE)
#undef WORKBENCH_DECLARE
};

/// Loads the first of the files that is there. Throws DataError that says what was looked for,
/// where, and what to do, when none is there or the one found is not the engine.
DuckdbLibrary loadDuckdb(const std::vector<std::string>& files);

/// The engine beside the object file that this code is linked into; loaded once per process.
/// Throws as loadDuckdb; a later call tries again.
const DuckdbLibrary& duckdb();

}  // namespace workbench
