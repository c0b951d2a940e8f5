// store_ElementLibrary: what the library knows about each element type by its name.
//
// For every known type name (C3D8R, CPS4, S4R, B31, ...) one constant class describes the number
// of nodes, the integration points and their natural coordinates, the kind of body it models and
// its faces, sides or ends as node positions within the connectivity. Names it does not know are
// user elements. The classes live in one table built on first use and kept for the life of the
// program; pointers into it stay valid. A lookup is one hash of the name. The table is never
// changed after it is built, so any number of threads may read it at once.
//
// Natural coordinates: quadrilaterals, hexahedra and lines run from -1 to 1 along each axis;
// triangles and tetrahedra use area or volume coordinates (node 1 at the origin, node 2 at 1 on
// the first axis, node 3 at 1 on the second, node 4 at 1 on the third); wedges combine triangle
// coordinates with a third axis from -1 (face 1) to 1 (face 2).
//
// Integration points: rigid elements have none, since nothing deforms in them; connectors have
// one, at the origin, which carries their element output. Shells, membranes and surface elements
// have their points on the mid-surface only.
#ifndef STORE_ELEMENTLIBRARY_H
#define STORE_ELEMENTLIBRARY_H

#include <array>
#include <string>
#include <vector>

#include "odb_Enum.h"

// One face, side or end of an element.
struct store_ElementFace {
  odb_Enum::odb_ElementFaceEnum face;
  // 1-based positions within the element's connectivity: corners in order around the face, then
  // the mid-side nodes of the edges in the same order. A side's order gives its outward normal by
  // the right-hand rule, so SIDE2 runs opposite to SIDE1.
  std::vector<int> nodes;
};

// The fixed description of one element type.
struct store_ElementClass {
  std::string name;  // the type name, e.g. "C3D8R"
  int nodesPerElement = 0;
  int integrationPoints = 0;
  int dimension = 0;  // 1, 2 or 3: the dimension of the element's natural coordinates
  odb_Enum::odb_ElementGeometryClass geometry = odb_Enum::GEOMETRY_UNKNOWN;
  // Faces of solids (FACE1..), edges of planar elements (FACE1..), sides of shells, membranes,
  // rigid and surface elements (SIDE1, SIDE2), ends of beams and trusses (END1, END2).
  std::vector<store_ElementFace> faces;
  // Natural coordinates of each integration point (unused components 0), in integration-point
  // order; tensor-product rules number the first coordinate fastest, then the second, the third.
  std::vector<std::array<double, 3>> integrationPointCoordinates;
};

// The class of a known element type name, or nullptr. Names are matched exactly (upper case as
// written in decks).
const store_ElementClass* store_FindElementClass(const std::string& type);

// Every known class once, in the order the table defines them: solids, the planar continuum
// families, then shells, membranes, beams, trusses, rigid, surface and connector elements. For
// listings such as the table of element types in the documentation.
const std::vector<const store_ElementClass*>& store_ElementClasses();

// The class of any type: a known one (whose own node count wins over `nodesPerElement`), or for
// an unknown name a user element with `nodesPerElement` nodes (from its connectivity), one
// integration point at the origin, dimension 3, no faces and geometry GEOMETRY_USER.
store_ElementClass store_ElementClassOf(const std::string& type, int nodesPerElement);

// The face label that an input deck writes for a face of this element type: S1..S6 for faces of
// solids and edges of planar elements, SPOS/SNEG for sides, END1.. for ends; "" when the type has
// no such face.
std::string store_FaceLabel(const store_ElementClass& cls, odb_Enum::odb_ElementFaceEnum face);

#endif
