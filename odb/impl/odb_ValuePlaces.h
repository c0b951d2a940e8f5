// odb_ValuePlaces: where the values of a field sit in space, on the placed mesh and moved by a
// field of nodal displacements; internal.
#ifndef ODB_VALUEPLACES_H
#define ODB_VALUEPLACES_H

#include <array>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "odb_FieldData.h"

// The node values of a NODAL VECTOR field (displacements, rotations) by instance and node label,
// widened to 3 components with zeros; gathered per instance on first request (one hash entry per
// node), so a field covering many instances costs only for those asked about.
class odb_NodeMotion {
 public:
  // `field` null: no motion; `what` names the field in messages ("deformation", "rotation").
  odb_NodeMotion(std::shared_ptr<odb_FieldData> field, const char* what);

  bool Given() const { return m_field != nullptr; }
  // Whether the field holds values on the instance.
  bool Covers(const odb_String& instance) { return !Of(instance).empty(); }
  // The value at a node; throws "The deformation field has no value at node N of instance "I"."
  // when there is none.
  void At(const odb_String& instance, int label, double out[3]);

 private:
  using Values = std::unordered_map<int, std::array<double, 3>>;
  const Values& Of(const odb_String& instance);

  std::shared_ptr<odb_FieldData> m_field;
  const char* m_what;
  std::map<std::string, Values> m_byInstance;
};

// The position of each location of `sub`, 3 doubles each, into `xyz`: the placed coordinates of
// the nodes, plus `motion`'s displacements when it is given. Nodal and element-nodal values sit
// at their node; integration-point values at their point, placed from the element's corners by
// its shape functions, for the solid and planar continuum types whose shape the element library
// gives; every other element value at the mean of its element's nodes.
void odb_ValuePlaces(odb_SubFieldData& sub, odb_NodeMotion& motion, std::vector<double>& xyz);

#endif
