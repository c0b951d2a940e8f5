// odb_API: the one header a program includes to get the whole public interface of the library.
// Each public class's header is listed here; including them one by one works as well.
#ifndef ODB_API_H
#define ODB_API_H

#include "odb_String.h"

#endif
