// odb_EnumMap: the printed names of result positions and data types.
//
// The labels are the enumerator names ("SCALAR", "ELEMENT_NODAL"); they appear in messages such
// as "Data types %1$s and %2$s are incompatible.". The functions take an int so that any stored
// value, valid or not, has a label. The returned texts are static constants. Threads: any.
#ifndef ODB_ENUMMAP_H
#define ODB_ENUMMAP_H

#include "odb_Enum.h"
#include "odb_Export.h"

// "BOOLEAN" ... "QUATERNION_2D" for the values of odb_Enum::odb_DataTypeEnum; "Unknown Type" for
// any other value.
QTVODB_EXPORT const char* odb_DataTypeLabel(int type);

// "UNDEFINED_POSITION" ... "GENERAL_PARTICLE" for the values of odb_Enum::odb_ResultPositionEnum;
// "Unknown Position" for any other value.
QTVODB_EXPORT const char* odb_ResultPositionLabel(int position);

#endif
