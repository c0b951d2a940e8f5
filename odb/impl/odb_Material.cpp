#include "odb_Material.h"

#include <cmath>
#include <utility>

#include "odb_Exception.h"
#include "odb_MaterialData.h"
#include "odb_Message.h"
#include "odb_StoreWrite.h"
#include "store_Material.h"

const uti_LabelRow<odb_MaterialEnm> uti_LabelTable<odb_MaterialEnm, 1>::rows[] = {
    {"Invalid material name.", "odb_Material_MSGID_00", odb_Material_INVALID_NAME},
    {"A material named \"%s\" already exists.", "odb_Material_MSGID_01",
     odb_Material_ALREADY_EXISTS},
    {"Invalid Young's modulus %1$s for material \"%2$s\": it must be positive.",
     "odb_Material_MSGID_02", odb_Material_BAD_MODULUS},
    {"Invalid Poisson's ratio %1$s for material \"%2$s\": it must lie between -1 and 0.5.",
     "odb_Material_MSGID_03", odb_Material_BAD_RATIO},
    {"Invalid density %1$s for material \"%2$s\": it must be positive.", "odb_Material_MSGID_04",
     odb_Material_BAD_DENSITY},
    {"Material \"%s\" has no elastic behaviour.", "odb_Material_MSGID_05", odb_Material_NO_ELASTIC},
    {"Material \"%s\" has no density.", "odb_Material_MSGID_06", odb_Material_NO_DENSITY},
    {nullptr, nullptr, {}}};

namespace {

const char kSource[] = "odb/impl/odb_Material";
const char kOrphan[] = "The material belongs to no database.";

[[noreturn]] void Throw(odb_MaterialEnm code, int site, std::initializer_list<odb_String> args) {
  odb_ThrowMessage(odb_CatalogueMessage(code, args), kSource, site);
}

const odb_MaterialData& EmptyMaterial() {
  static const odb_MaterialData empty;
  return empty;
}

}  // namespace

odb_Material::odb_Material() = default;

odb_Material::odb_Material(std::shared_ptr<odb_MaterialData> data) : m_data(std::move(data)) {}

odb_String odb_Material::name() const {
  return m_data ? m_data->name : odb_String();
}

void odb_Material::setElastic(double youngsModulus, double poissonsRatio) {
  if (!m_data) odb_ThrowMessage(kOrphan, kSource, 51);
  odb_MaterialData& material = *m_data;
  if (!(std::isfinite(youngsModulus) && youngsModulus > 0.0))
    Throw(odb_Material_BAD_MODULUS, 54, {odb_String(youngsModulus), material.name});
  // Written so that NaN fails too.
  if (!(poissonsRatio > -1.0 && poissonsRatio < 0.5))
    Throw(odb_Material_BAD_RATIO, 57, {odb_String(poissonsRatio), material.name});
  store_SetElastic(odb_WritableStore(material.store, kOrphan, kSource, 58), material.id,
                   youngsModulus, poissonsRatio);
  material.hasElastic = true;
  material.youngsModulus = youngsModulus;
  material.poissonsRatio = poissonsRatio;
}

void odb_Material::setDensity(double density) {
  if (!m_data) odb_ThrowMessage(kOrphan, kSource, 70);
  odb_MaterialData& material = *m_data;
  if (!(std::isfinite(density) && density > 0.0))
    Throw(odb_Material_BAD_DENSITY, 73, {odb_String(density), material.name});
  store_SetDensity(odb_WritableStore(material.store, kOrphan, kSource, 74), material.id, density);
  material.hasDensity = true;
  material.density = density;
}

bool odb_Material::hasElastic() const {
  return m_data && m_data->hasElastic;
}

double odb_Material::youngsModulus() const {
  const odb_MaterialData& material = m_data ? *m_data : EmptyMaterial();
  if (!material.hasElastic) Throw(odb_Material_NO_ELASTIC, 89, {material.name});
  return material.youngsModulus;
}

double odb_Material::poissonsRatio() const {
  const odb_MaterialData& material = m_data ? *m_data : EmptyMaterial();
  if (!material.hasElastic) Throw(odb_Material_NO_ELASTIC, 95, {material.name});
  return material.poissonsRatio;
}

bool odb_Material::hasDensity() const {
  return m_data && m_data->hasDensity;
}

double odb_Material::density() const {
  const odb_MaterialData& material = m_data ? *m_data : EmptyMaterial();
  if (!material.hasDensity) Throw(odb_Material_NO_DENSITY, 105, {material.name});
  return material.density;
}
