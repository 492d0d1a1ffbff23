// The data engine without the program: what a run is compared with.
#include <duckdb.h>

#include <cstdio>

int main(int argc, char** argv) {
  duckdb_database database = nullptr;
  duckdb_connection connection = nullptr;
  if (duckdb_open(nullptr, &database) != DuckDBSuccess ||
      duckdb_connect(database, &connection) != DuckDBSuccess) {
    std::fputs("the engine does not open\n", stderr);
    return 1;
  }
  int status = 0;
  if (argc > 1) {
    duckdb_result result;
    if (duckdb_query(connection, argv[1], &result) != DuckDBSuccess) {
      std::fprintf(stderr, "%s\n", duckdb_result_error(&result));
      status = 1;
    }
    duckdb_destroy_result(&result);
  }
  duckdb_disconnect(&connection);
  duckdb_close(&database);
  return status;
}
