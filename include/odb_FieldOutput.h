// odb_FieldOutput: one field variable of one frame (a displacement, a stress...): its
// definition, the data written for it, and its read-side views.
//
// A handle: copies share the field (O(1)); data added through one copy are seen by all. The
// database owns a frame's fields; subsets and computed fields are orphans: they hold their data
// in memory, belong to no frame, and refuse addData.
//
// Writing: addData checks a call completely before the first sub-field is written, then writes
// each group (one element type and section category, or the nodes) as a few contiguous blobs
// inside the database's open transaction; saveOdb makes them durable. The bulk form takes flat
// arrays and is the fast path for solvers: it copies nothing when the call holds one group.
//
// Reading: values(), bulkDataBlocks() and locations() are built on first use and rebuilt after
// more data are added; a sub-field's arrays are read from the file once, on first use. Sub-fields
// are listed in the order they were first written. Stored sub-fields that cannot be read are
// refused when their values or bulk data are first used (messages in odb_SubField.h). One thread
// at a time.
#ifndef ODB_FIELDOUTPUT_H
#define ODB_FIELDOUTPUT_H

#include "odb_ArrayView.h"
#include "odb_DatumCsys.h"
#include "odb_Element.h"
#include "odb_Enum.h"
#include "odb_Export.h"
#include "odb_FieldBulkData.h"
#include "odb_FieldLocation.h"
#include "odb_FieldValue.h"
#include "odb_Instance.h"
#include "odb_Node.h"
#include "odb_Repository.h"
#include "odb_SectionPoint.h"
#include "odb_Sequence.h"
#include "odb_SequenceFieldValue.h"
#include "odb_Set.h"
#include "odb_String.h"
#include "odb_SubField.h"
#include "uti_LabelMap.h"
#include "uti_SharedPtr.h"

// The messages of field outputs, in catalogue order (codes 0..35 are keys _01.._36).
enum odb_FieldOutputEnm : int {
  odb_FieldOutput_ORPHAN_WRITE = 0,
  odb_FieldOutput_NO_INSTANCE = 1,            // %s: instance name
  odb_FieldOutput_TRANSFORM_SCALAR = 2,       //
  odb_FieldOutput_BAD_POSITION = 3,           //
  odb_FieldOutput_SECTION_POINT_NUMBER = 4,   // %s: section point number
  odb_FieldOutput_SECTION_POINT_SOME = 5,     //
  odb_FieldOutput_NOT_PROCESSED = 6,          // %1$s: written, %2$s: supplied
  odb_FieldOutput_LENGTH = 7,                 // %1$s: expected, %2$s: given
  odb_FieldOutput_NODAL_FAILED = 8,           //
  odb_FieldOutput_ELEMENT_FAILED = 9,         // %s: element type
  odb_FieldOutput_PER_POINT = 10,             // %s: integration points per element
  odb_FieldOutput_PER_NODE = 11,              // %s: nodes per element
  odb_FieldOutput_PER_ELEMENT = 12,           //
  odb_FieldOutput_BAD_TYPE = 13,              //
  odb_FieldOutput_SCALAR_LENGTH = 14,         //
  odb_FieldOutput_CSYS_LENGTH = 15,           //
  odb_FieldOutput_INCOMPATIBLE = 16,          //
  odb_FieldOutput_TARGET_INSTANCE = 17,       // %s: instance name
  odb_FieldOutput_TARGET_SET = 18,            // %s: set name
  odb_FieldOutput_TARGET_ELEMENTS = 19,       // %1$s type, %2$s category, %3$s set
  odb_FieldOutput_TARGET_SECTION_POINT = 20,  // %1$s number, %2$s type, %3$s category, %4$s set
  odb_FieldOutput_NOT_FOUND = 21,             //
  odb_FieldOutput_FEW_DATA = 22,              //
  odb_FieldOutput_FEW_CSYS = 23,              //
  odb_FieldOutput_BAD_INVARIANT = 24,         //
  odb_FieldOutput_TENSOR_LENGTH = 25,         //
  odb_FieldOutput_CSYS_NORMAL = 26,           //
  odb_FieldOutput_NO_DEFORMATION = 27,        //
  odb_FieldOutput_DEFORMATION_KIND = 28,      //
  odb_FieldOutput_DYNAMIC_CSYS = 29,          //
  odb_FieldOutput_SIX_DOF_CSYS = 30,          //
  odb_FieldOutput_UNDEFINED_LABELS = 31,      //
  odb_FieldOutput_CONJUGATE_LENGTH = 32,      //
  odb_FieldOutput_REPEATED_LABEL = 33,        // %1$s Node/Element, %2$s label, %3$s position,
                                              // %4$s instance
  odb_FieldOutput_LABEL_ARRAY = 34,           // %1$s labels told of, %2$s labels held
  odb_FieldOutput_FLOAT_ARRAY = 35            // %1$s runs, %2$s "rows"/"orientations", %3$s width,
                                              // %4$s floats told of, %5$s array, %6$s floats held
};

template <>
struct QTVODB_EXPORT uti_LabelTable<odb_FieldOutputEnm, 1> {
  static const uti_LabelRow<odb_FieldOutputEnm> rows[];
};

struct odb_FieldData;

class QTVODB_EXPORT odb_FieldOutput {
 public:
  // An empty orphan field: no name, SCALAR, no data.
  odb_FieldOutput();
  // A detached field of the given definition (a computed field's start); an orphan.
  odb_FieldOutput(const odb_String& name, const odb_String& description,
                  odb_Enum::odb_DataTypeEnum type, const odb_SequenceString& componentLabels,
                  const odb_SequenceInvariant& validInvariants);

  odb_String name() const;
  odb_String description() const;
  odb_Enum::odb_DataTypeEnum type() const;
  odb_SequenceString componentLabels() const;
  odb_SequenceInvariant validInvariants() const;
  // Floats per value: 1 for SCALAR, the tensor kind's components, else the component labels.
  int width() const;
  bool IsOrphan() const;
  bool isOrphan() const { return IsOrphan(); }

  // Adds data at `position` of `instance`: `labels` are node labels for NODAL data and element
  // labels otherwise; `data` holds one sequence per location (per element and integration point,
  // per element and node, or per element or node), in the order of the labels. Optional: the
  // section point of the data; one orientation (2 or 4 floats) for all values or one per value
  // (tensors only); the conjugate (imaginary) parts, one sequence per data sequence.
  // Checks, in order: orphan, instance, conjugate count, orientation on a scalar, vector or
  // matrix field, position, labels the instance lacks, a label given twice ("Node label L is
  // given more than once in one addData() call (NODAL data of instance "I")."), section point;
  // then per group (element type and section category, in order of first appearance) the
  // number of rows and the row widths. The repeat check costs one comparison per label when
  // the labels increase, else one more lookup per label and a bit per node or element of the
  // range they reach. A call of one group must bring exactly its rows; in a call of several
  // groups each group takes the rows of its own elements, and rows left over are reported once
  // all groups are written ("... N data sequences written from the M supplied ..."). For
  // complex data the counts in the length message are doubled (value and conjugate). Each
  // call's labels are recorded as the internal set "api_set N", N the number of blocks the step
  // held before.
  // Labels are checked within one call only: a later call may write a label again at the same
  // position and section point, and both values are kept and read back, in the order written.
  void addData(odb_Enum::odb_ResultPositionEnum position, const odb_Instance& instance,
               const odb_SequenceInt& labels, const odb_SequenceSequenceFloat& data,
               const odb_SectionPoint& sectionPoint = odb_SectionPoint(),
               const odb_SequenceSequenceFloat& localCoordSystem = odb_SequenceSequenceFloat(),
               const odb_SequenceSequenceFloat& conjugateData = odb_SequenceSequenceFloat());
  // The bulk form: `labelCount` labels; `locationCount` locations of `width` floats each in
  // `data`, row after row; `conjugateData` (same shape) may be null; `orientations` holds
  // `orientationCount` (0, 1 or locationCount) runs of `orientationWidth` (2 or 4) floats. Same
  // checks and messages as the sequence form; a missing `data` or `orientations` array is refused
  // with "Insufficient data sequences provided." or "Insufficient coordSystem sequences
  // provided.". Unchecked: the caller vouches that each array holds what the counts say, and a
  // wrong count reads past its end. The form below checks them. The arrays are only read, and
  // only during the call; with one group the data go from them to the file without a copy.
  void addData(odb_Enum::odb_ResultPositionEnum position, const odb_Instance& instance,
               int labelCount, const int* labels, int locationCount, int width, const float* data,
               const odb_SectionPoint& sectionPoint = odb_SectionPoint(),
               const float* conjugateData = nullptr, int orientationCount = 0,
               int orientationWidth = 0, const float* orientations = nullptr);
  // The bulk form from arrays that know their size (std::vector and C arrays convert to
  // odb_ArrayView), the same as above once each array is checked against its counts, before
  // any array is read: after "addData() was given a negative count or no labels." for a
  // negative count, `labels` must hold exactly `labelCount` labels ("addData() was told of 20
  // labels, but the label array holds 19."), `data` exactly locationCount * width floats
  // ("addData() was told of 8 rows of 6 floats (48), but the data array holds 40."),
  // `conjugateData` as many or none (empty: no conjugate), and `orientations` exactly
  // orientationCount * orientationWidth floats. The checks cost a few comparisons; the views
  // need to live only until the call returns.
  void addData(odb_Enum::odb_ResultPositionEnum position, const odb_Instance& instance,
               int labelCount, odb_ArrayView<int> labels, int locationCount, int width,
               odb_ArrayView<float> data, const odb_SectionPoint& sectionPoint = odb_SectionPoint(),
               odb_ArrayView<float> conjugateData = {}, int orientationCount = 0,
               int orientationWidth = 0, odb_ArrayView<float> orientations = {});
  // Copies every value of `field` (of this database or another with the same instances, sets,
  // element types and section points) into this field.
  void addData(const odb_FieldOutput& field);

  // Read side.
  // The values. A field may hold millions of them, so a value is built when it is asked for:
  // the reference that values()[i] or value(i) returns is valid only until the next value is
  // asked of the same sequence (`const odb_FieldValue& a = vals[0]; vals[1];` leaves `a`
  // showing value 1). Copy the value (odb_FieldValue v = vals[0]; a copy costs a few handle
  // copies) to keep it; bulkDataBlocks() gives whole arrays that stay valid with the field.
  const odb_SequenceFieldValue& values() const;
  const odb_FieldValue& value(int i) const { return values().constGet(i); }
  const odb_SequenceFieldBulkData& bulkDataBlocks() const;
  // Throws "Unable to determine mesh index for field\nField results on assembly level meshes are
  // not currently supported." when a stored sub-field names no instance.
  const odb_SequenceFieldLocation& locations() const;
  const odb_FieldLocation& location(int i) const { return locations().constGet(i); }
  odb_SequenceString baseElementTypes() const { return values().baseElementTypes(); }
  const odb_SequenceSubField& SubField() const { return values().SubField(); }

  // Subsets: orphan fields of the same definition holding part of the values.
  // Values at `position`; ELEMENT_NODAL and CENTROID are extrapolated from integration points
  // when the field has none of their own.
  odb_FieldOutput getSubset(odb_Enum::odb_ResultPositionEnum position) const;
  // Values in a node or element set; a surface is refused with "Unknown Set type.".
  odb_FieldOutput getSubset(const odb_Set& region) const;
  odb_FieldOutput getSubset(const odb_Instance& instance) const;
  odb_FieldOutput getSubset(const odb_Element& element) const;
  odb_FieldOutput getSubset(const odb_Node& node) const;
  odb_FieldOutput getSubset(const odb_SectionPoint& sectionPoint) const;
  odb_FieldOutput getSubset(const odb_FieldLocation& location) const;
  // The sub-fields of one element type (exact label).
  odb_FieldOutput getSubset(const odb_String& elementType) const;
  // The values whose orientation equals `localCoordSystem` (one sequence of 2 or 4 floats),
  // compared float for float.
  odb_FieldOutput getSubset(const odb_SequenceSequenceFloat& localCoordSystem) const;
  // A SCALAR field of one invariant of every value; throws "Invalid invariant" when the field
  // does not offer it. `orphanOk` is accepted for callers that reduce many fields at once.
  odb_FieldOutput getScalarField(odb_Enum::odb_InvariantEnum invariant, bool orphanOk = true) const;
  // A SCALAR field of one component, by its label; throws "Field not found:" and the label.
  odb_FieldOutput getScalarField(const odb_String& componentLabel, bool orphanOk = true) const;
  // The field with its vectors and tensors given in the local axes of `system` at each value,
  // an orphan without orientations. Values with an orientation of their own are first taken
  // back to global axes. A rectangular system has one set of axes; cylindrical and spherical
  // ones have them at the point where each value sits (see odb_DatumCsys), on the placed mesh
  // moved by `deformationField`'s displacements when it is given: nodal and element-nodal values
  // at their node, integration-point values at their point for solid and planar continuum
  // elements, other element values at the mean of their element's nodes. A dynamic system moves
  // with the displacements at its nodes, and a 6-DOF-node system turns with `rotationField`'s
  // rotation vector there. Surface tensors (TENSOR_3D_SURFACE) are given in the local 1-axis
  // projected onto their surface. Checks, in order: "Transformation not allowed for scalar,
  // vector or matrix data."; a 6-DOF-node system without both fields ("The specified coordinate
  // system follows a 6-DOF node; ..."); a dynamic system without a deformation field ("The
  // specified coordinate system is dynamic; ..."); a deformation field that is not a NODAL
  // VECTOR field of a frame ("The deformation field must be a NODAL VECTOR field ..."), or a
  // rotation field that is not one of 3 components; then per sub-field a deformation field with
  // no values on its instance ("Deformation results for part instance not found."), a node
  // without a displacement where one is needed, and, for two-dimensional values (planar tensor
  // kinds, 2-component vectors, values of 2D parts), local axes whose 3-axis is not normal to
  // the model's plane ("Third component of coordinate system must be normal to 2D part").
  // Costs a copy of the field and, for cylindrical and spherical systems, a placement per value.
  odb_FieldOutput getTransformedField(
      const odb_DatumCsys& system, const odb_FieldOutput& deformationField = odb_FieldOutput(),
      const odb_FieldOutput& rotationField = odb_FieldOutput()) const;
  // The same for the fixed rectangular system whose axes are the rows of `axes` (3 sequences of
  // 3 floats, used as given).
  odb_FieldOutput getTransformedField(const odb_SequenceSequenceFloat& axes) const;

 private:
  friend struct odb_FieldOutputAccess;

  explicit odb_FieldOutput(std::shared_ptr<odb_FieldData> data);
  std::shared_ptr<odb_FieldData> m_data;
};

using odb_FieldOutputRepository = odb_Repository<odb_String, odb_FieldOutput>;
using odb_FieldOutputRepositoryIT = odb_RepositoryIterator<odb_String, odb_FieldOutput>;

#endif
