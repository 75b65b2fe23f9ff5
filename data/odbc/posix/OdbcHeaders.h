// The ODBC declarations of this system; wide characters are UTF-16 here too.
#pragma once

#include <sql.h>
#include <sqlext.h>
#include <sqlucode.h>
