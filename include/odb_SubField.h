// odb_SubField: one stored group of a field output: the values of one element type (or the
// nodes) at one position and section point of one part instance, written under one set name.
//
// A handle: copies share the group, whose arrays are read from the file on first use (see
// odb_FieldBulkData, the same group as arrays). One thread at a time.
//
// Stored groups that the reader cannot turn into values (a file from another program, or a
// damaged one) are refused with the messages below when the group's values are built (a value of
// odb_FieldOutput::values(), a subset or scalar field that looks at its locations) or its bulk
// data are (any accessor of its odb_FieldBulkData); the other groups of the field still read.
// Each refusal comes again on every later use:
// - a group of no instance (assembly level): "Unable to determine part instance for field.\n
//   Assembly level results ..." for values, "Unable to determine mesh index for field NAME.\n
//   Assembly level results ..." for bulk data, and "Unable to determine mesh index for field\n
//   Field results on assembly level meshes ..." from odb_FieldOutput::locations();
//   a group of an instance the assembly lacks: "Unable to determine mesh index for field NAME";
// - the field's type: quaternions "Quaternion results not processed." (values) or "Quaternions
//   result not read." (bulk data); BOOLEAN and INTEGER "Invalid results type for field."; a code
//   of no type "Unknown datatype not processed.";
// - floats per value: SCALAR other than 1 "SCALAR data should be of length 1."; VECTOR and MATRIX
//   other than the field's components "Data items should be of length N"; a tensor of another
//   kind's width, or stored in double precision, "Invalid data: must be float tensor." (but
//   complex data whose real parts are double and imaginary parts single, "Double tensor data
//   expected."); a tensor of a width of no kind, or oriented by other than 2 or 4 floats, "Tensor
//   type not implemented."; an orientation on other than a tensor "Transformation not allowed for
//   scalar, vector or matrix data.";
// - a section point that the group's section category lacks: "Section point not valid for
//   elements." when other elements of its type define it, else "Section Point number N.";
// - arrays or locations per element that disagree with the group's count: "Length of data
//   sequence incorrect. ..." composed as addData composes it, with the counts in locations.
#ifndef ODB_SUBFIELD_H
#define ODB_SUBFIELD_H

#include "odb_Enum.h"
#include "odb_Export.h"
#include "odb_Instance.h"
#include "odb_SectionPoint.h"
#include "odb_Sequence.h"
#include "odb_String.h"
#include "uti_Array.h"
#include "uti_LabelMap.h"
#include "uti_SharedPtr.h"

// The messages of reading and transforming sub-fields (keys odb_SubField_MSGID_00.._29).
enum odb_SubFieldEnm : int {
  odb_SubField_NO_MESH_INDEX = 0,
  odb_SubField_TRANSFORM_NOT_ALLOWED = 1,
  odb_SubField_SPANNING_SUBSETS = 2,
  odb_SubField_SECTION_POINT_NUMBER = 3,  // %s: the number
  odb_SubField_SECTION_POINT_INVALID = 4,
  odb_SubField_QUATERNIONS_NOT_READ = 5,
  odb_SubField_WHOLE_REGION = 6,
  odb_SubField_WHOLE_PART_INSTANCE = 7,
  odb_SubField_WHOLE_MODEL = 8,
  odb_SubField_GENERAL_PARTICLE = 9,
  odb_SubField_UNKNOWN_LOCATION = 10,
  odb_SubField_NO_PART_INSTANCE = 11,
  odb_SubField_QUATERNIONS_NOT_PROCESSED = 12,
  odb_SubField_UNKNOWN_DATATYPE = 13,
  odb_SubField_FLOAT_TENSOR = 14,
  odb_SubField_DOUBLE_TENSOR = 15,
  odb_SubField_NO_MESH_INDEX_NAMED = 16,  // %s: the field's name
  odb_SubField_MESH_INDEX_NAMED = 17,     // %s: the field's name
  odb_SubField_UNKNOWN_SET_TYPE = 18,
  odb_SubField_LENGTH = 19,  // %1$s: expected, %2$s: given
  odb_SubField_NODAL_FAILED = 20,
  odb_SubField_ELEMENT_FAILED = 21,  // %s: element type
  odb_SubField_PER_POINT = 22,       // %s: integration points per element
  odb_SubField_PER_NODE = 23,        // %s: nodes per element
  odb_SubField_PER_ELEMENT = 24,
  odb_SubField_BAD_TYPE = 25,
  odb_SubField_SCALAR_LENGTH = 26,
  odb_SubField_ITEM_LENGTH = 27,  // %s: the width
  odb_SubField_TENSOR_NOT_IMPLEMENTED = 28,
  odb_SubField_ORPHANED = 29
};

template <>
struct QTVODB_EXPORT uti_LabelTable<odb_SubFieldEnm, 1> {
  static const uti_LabelRow<odb_SubFieldEnm> rows[];
};

struct odb_SubFieldData;

class QTVODB_EXPORT odb_SubField {
 public:
  odb_SubField() = default;

  odb_Enum::odb_ResultPositionEnum position() const;
  odb_Enum::odb_DataTypeEnum type() const;
  const odb_Instance& instance() const;
  // The element type label; "" for nodal data.
  odb_String elementType() const;
  odb_String sectionCategoryName() const;
  odb_SectionPoint sectionPoint() const;
  // The name of the set the group was written for (an internal "api_set N" set); throws
  // "orphaned field" for a handle that holds no group.
  odb_String setName() const;
  // The number of values (locations).
  int size() const;
  // For a group of a subset: the positions, in the group it was taken from, of the locations it
  // kept; for a stored group, every position. Throws "orphaned field" for a handle that holds no
  // group, and "Subfield spanning subsets is invalid." for extrapolated values (element nodal or
  // centroid values derived from integration points), each of which spans several locations.
  odb_SequenceInt getSubsetIndices() const;

 private:
  friend struct odb_SubFieldAccess;

  explicit odb_SubField(std::shared_ptr<odb_SubFieldData> data);
  std::shared_ptr<odb_SubFieldData> m_data;
};

using odb_SequenceSubField = uti_Array<odb_SubField>;

#endif
