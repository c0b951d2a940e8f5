// odb_DiscretePartRepository: the parts of a database, by name, with the creator of new parts.
//
// The database object owns it; it holds part handles, which share their data with any copies a
// caller keeps. It reads one row per part, and nothing of the meshes, on first use. One thread
// at a time.
#ifndef ODB_DISCRETEPARTREPOSITORY_H
#define ODB_DISCRETEPARTREPOSITORY_H

#include "odb_DiscretePart.h"
#include "odb_Enum.h"
#include "odb_Export.h"
#include "odb_Repository.h"
#include "odb_SectionCategory.h"
#include "odb_String.h"
#include "uti_SharedPtr.h"

struct odb_DiscretePartRepositoryData;
struct odb_DiscretePartRepositoryAccess;

class QTVODB_EXPORT odb_DiscretePartRepository
    : public odb_Repository<odb_String, odb_DiscretePart> {
 public:
  // A repository of no database: the creator throws.
  odb_DiscretePartRepository() = default;
  // Writes a new, empty part and holds it; throws "A part named "NAME" already exists." for a
  // name already held.
  odb_DiscretePart& DiscretePart(const odb_String& name, odb_Enum::odb_DimensionEnum dimension,
                                 odb_Enum::odb_PartTypeEnum type);

 private:
  friend struct odb_DiscretePartRepositoryAccess;

  // Adds a part for every stored part not yet held.
  void Load();

  // The database file and how elements find their section categories; null for a repository of
  // no database.
  std::shared_ptr<const odb_DiscretePartRepositoryData> m_data;
};

using odb_DiscretePartRepositoryIT = odb_RepositoryIterator<odb_String, odb_DiscretePart>;

#endif
