#include "odb_MeshList.h"

#include "odb_Exception.h"
#include "odb_MeshData.h"
#include "odb_Message.h"

const uti_LabelRow<odb_MeshListEnm> uti_LabelTable<odb_MeshListEnm, 1>::rows[] = {
    {"Invalid part index.", "odb_MeshList_MSGID_00", odb_MeshList_INVALID_PART_INDEX},
    {"Invalid mesh name.", "odb_MeshList_MSGID_01", odb_MeshList_INVALID_NAME},
    {nullptr, nullptr, {}}};

namespace {
const char kSource[] = "odb/impl/odb_MeshList";
}

const odb_Mesh& odb_MeshList::mesh(int i) const {
  if (i < 0 || i >= size())
    odb_ThrowMessage(odb_CatalogueMessage(odb_MeshList_INVALID_PART_INDEX), kSource, 17);
  return m_meshes[i];
}

const odb_Mesh& odb_MeshList::mesh(const odb_String& name) const {
  for (int i = 0; i < size(); ++i)
    if (m_meshes[i].instanceName() == name) return m_meshes[i];
  odb_ThrowMessage(odb_CatalogueMessage(odb_MeshList_INVALID_NAME), kSource, 24);
}

const odb_Mesh& odb_MeshList::meshFromMeshIndex(int meshIndex) const {
  // Every mesh is visited and the last match kept: instances of one part share its index, and
  // the most recently placed one is the one asked for.
  int found = -1;
  for (int i = 0; i < size(); ++i)
    if (m_meshes[i].meshIndex() == meshIndex) found = i;
  if (found < 0)
    odb_ThrowMessage(odb_CatalogueMessage(odb_MeshList_INVALID_PART_INDEX), kSource, 34);
  return m_meshes[found];
}

odb_SequenceString odb_MeshList::instanceNames() const {
  odb_SequenceString names;
  for (int i = 0; i < size(); ++i) names.append(m_meshes[i].instanceName());
  return names;
}

odb_SequenceInt odb_MeshList::ConnIndicesForEl(const odb_Element& element) const {
  for (int i = 0; i < size(); ++i) {
    const odb_Mesh& candidate = m_meshes[i];
    if (candidate.meshIndex() != element.meshIndex()) continue;
    if (odb_MeshAccess::Data(candidate)->mesh->ElementPosition(element.label()) < 0)
      odb_ThrowMessage(odb_CatalogueMessage(odb_Mesh_ELEMENT_INDEX_NOT_FOUND), kSource, 50);
    return element.connectivityIndices();
  }
  odb_ThrowMessage(odb_CatalogueMessage(odb_Mesh_ELEMENT_NOT_FOUND), kSource, 53);
}
