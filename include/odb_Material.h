// odb_Material: a named material of the model, as a handle: its linear elastic constants and its
// mass density, each either given or not.
//
// Sections name the material they are made of. The database owns the stored material; the
// handle holds a share of the material's data, so copying costs O(1) and every copy sees what a
// setter on any other copy changes. Materials are created and found through the database's
// material repository (odb_MaterialRepository). Setters write to the database at once; the
// database's save makes them durable. The library stores the numbers and assigns no units.
//
// A default-constructed material is an empty handle: empty name, nothing given, no database; its
// setters throw.
//
// One thread at a time for a material and its copies.
#ifndef ODB_MATERIAL_H
#define ODB_MATERIAL_H

#include "odb_Export.h"
#include "odb_String.h"
#include "uti_LabelMap.h"
#include "uti_SharedPtr.h"

// The messages of materials and their repository.
enum odb_MaterialEnm : int {
  odb_Material_INVALID_NAME = 0,    //
  odb_Material_ALREADY_EXISTS = 1,  // %s: the material's name
  odb_Material_BAD_MODULUS = 2,     // %1$s: the value, %2$s: the material's name
  odb_Material_BAD_RATIO = 3,       // %1$s: the value, %2$s: the material's name
  odb_Material_BAD_DENSITY = 4,     // %1$s: the value, %2$s: the material's name
  odb_Material_NO_ELASTIC = 5,      // %s: the material's name
  odb_Material_NO_DENSITY = 6       // %s: the material's name
};

template <>
struct QTVODB_EXPORT uti_LabelTable<odb_MaterialEnm, 1> {
  static const uti_LabelRow<odb_MaterialEnm> rows[];
};

struct odb_MaterialData;

class QTVODB_EXPORT odb_Material {
 public:
  // An empty handle.
  odb_Material();

  odb_String name() const;

  // Stores isotropic linear elasticity, replacing any given before. Throws "Invalid Young's
  // modulus E for material "NAME": it must be positive." unless E is finite and above 0, and
  // "Invalid Poisson's ratio NU for material "NAME": it must lie between -1 and 0.5." unless
  // -1 < NU < 0.5 (0.5 itself would make the material incompressible, which linear elasticity
  // cannot state); nothing is stored then.
  void setElastic(double youngsModulus, double poissonsRatio);
  // Stores the mass density, replacing any given before. Throws "Invalid density D for material
  // "NAME": it must be positive." unless D is finite and above 0.
  void setDensity(double density);
  // Both setters also throw "The material belongs to no database." for an empty handle and the
  // store's refusal when the database is read-only.

  bool hasElastic() const;
  // The elastic constants; both throw "Material "NAME" has no elastic behaviour." unless
  // hasElastic().
  double youngsModulus() const;
  double poissonsRatio() const;
  bool hasDensity() const;
  // The density; throws "Material "NAME" has no density." unless hasDensity().
  double density() const;

  // True for a default-constructed handle.
  bool isEmpty() const { return !m_data; }

 private:
  friend struct odb_MaterialAccess;

  explicit odb_Material(std::shared_ptr<odb_MaterialData> data);

  std::shared_ptr<odb_MaterialData> m_data;
};

#endif
