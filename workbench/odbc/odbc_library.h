/// The ODBC driver manager, loaded when a server is first named: everything else works without it.
#pragma once

#include <sql.h>
#include <sqlext.h>
#include <sqlucode.h>

namespace workbench {

/// The functions that are used. Each is a member of OdbcLibrary without `SQL`.
#define WORKBENCH_ODBC_FUNCTIONS(X) \
  X(AllocHandle)                    \
  X(BindCol)                        \
  X(Cancel)                         \
  X(ColAttribute)                   \
  X(ColAttributeW)                  \
  X(DataSources)                    \
  X(DescribeCol)                    \
  X(DescribeColW)                   \
  X(Disconnect)                     \
  X(DriverConnect)                  \
  X(DriverConnectW)                 \
  X(Drivers)                        \
  X(EndTran)                        \
  X(ExecDirect)                     \
  X(ExecDirectW)                    \
  X(Fetch)                          \
  X(FreeHandle)                     \
  X(FreeStmt)                       \
  X(GetDiagRec)                     \
  X(GetDiagRecW)                    \
  X(GetInfo)                        \
  X(GetInfoW)                       \
  X(NativeSqlW)                     \
  X(NumResultCols)                  \
  X(SetConnectAttrW)                \
  X(SetEnvAttr)                     \
  X(TablesW)

struct OdbcLibrary {
#define WORKBENCH_DECLARE(name) decltype(&SQL##name) name = nullptr;
  WORKBENCH_ODBC_FUNCTIONS(WORKBENCH_DECLARE)
#undef WORKBENCH_DECLARE
};

/// Throws DataError that names the package when the file is not there or is no driver manager.
OdbcLibrary loadOdbc(const char* file);

/// The system's driver manager; loaded once per process. Throws as loadOdbc.
const OdbcLibrary& odbc();

}  // namespace workbench
