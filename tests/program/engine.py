"""Makes database and Parquet files with the data engine that the program is built on."""

import ctypes
import os
import pathlib

LIBRARY = pathlib.Path(os.environ["PROPORTIONS"]).parents[1] / "lib" / "libduckdb.so"


class Result(ctypes.Structure):
    """duckdb_result: six fields that only the engine reads."""
    _fields_ = [("opaque", ctypes.c_void_p * 6)]


def execute(statements, database=":memory:"):
    """Runs SQL statements, one by one, in a database file or in memory."""
    engine = ctypes.CDLL(str(LIBRARY))
    engine.duckdb_open.argtypes = [ctypes.c_char_p, ctypes.c_void_p]
    engine.duckdb_connect.argtypes = [ctypes.c_void_p, ctypes.c_void_p]
    engine.duckdb_query.argtypes = [ctypes.c_void_p, ctypes.c_char_p, ctypes.c_void_p]
    engine.duckdb_result_error.restype = ctypes.c_char_p
    holder, connection = ctypes.c_void_p(), ctypes.c_void_p()
    if engine.duckdb_open(str(database).encode(), ctypes.byref(holder)) != 0:
        raise OSError(f"{database} cannot be opened")
    try:
        engine.duckdb_connect(holder, ctypes.byref(connection))
        for statement in statements:
            execute_one(engine, connection, statement)
    finally:
        engine.duckdb_disconnect(ctypes.byref(connection))
        engine.duckdb_close(ctypes.byref(holder))


def execute_one(engine, connection, statement):
    result = Result()
    try:
        if engine.duckdb_query(connection, statement.encode(), ctypes.byref(result)) != 0:
            raise ValueError(f"{statement}: {engine.duckdb_result_error(ctypes.byref(result)).decode()}")
    finally:
        engine.duckdb_destroy_result(ctypes.byref(result))
