// odb_SectionRepository: the sections of a database by name, with their creators and the reader
// that keep them in step with the database file.
//
// A named repository (odb_Repository: logarithmic lookups, iteration in ascending name order,
// O(1) copies) of section handles. The database object owns its repository. Load reads every
// section in one query; the creators write the new section at once. Entries are added only
// through Load and the creators, so that what the repository holds is what the file holds:
// insert and remove are not offered. One thread at a time.
//
// A section names its material; the creators do not look the name up among the database's
// materials. A solver's deck may define a section before its material, or take the material
// from a library that this database does not hold, and the section must still be written; a
// reader that needs the material looks the name up in the material repository.
#ifndef ODB_SECTIONREPOSITORY_H
#define ODB_SECTIONREPOSITORY_H

#include "ddb_Ddb.h"
#include "odb_Export.h"
#include "odb_Repository.h"
#include "odb_Section.h"
#include "odb_Sequence.h"
#include "odb_String.h"

struct odb_SectionRepositoryAccess;

class QTVODB_EXPORT odb_SectionRepository : public odb_Repository<odb_String, odb_Section> {
 public:
  // A repository of no database: its creators throw.
  odb_SectionRepository() = default;

  // The creators store a new section and return it; the reference stays valid until the
  // repository's entries change. Each checks, in this order: "Invalid section name." for an
  // empty name, "A section named "NAME" already exists." for a name already held, "Section
  // "NAME" needs a material name." for an empty material name, then the values of its kind as
  // noted; last, "The section repository belongs to no database." for a repository of no
  // database and the store's refusal when the database is read-only.
  odb_Section& HomogeneousSolidSection(const odb_String& name, const odb_String& materialName);
  // Throws "Invalid thickness T for section "NAME": it must be positive." unless the thickness is
  // finite and above 0, and "Invalid number of integration points N for section "NAME": at least
  // 1 is needed." for fewer than 1.
  odb_Section& HomogeneousShellSection(const odb_String& name, const odb_String& materialName,
                                       double thickness, int integrationPoints);
  // Throws "Beam section "NAME" needs a profile name." for an empty profile, "Beam section "NAME"
  // needs the dimensions of its profile." for no dimensions, and "Invalid dimension D for beam
  // section "NAME": it must be a finite number." for an infinite or NaN dimension. How many
  // dimensions a profile takes is the solver's to check, not the database's.
  odb_Section& BeamSection(const odb_String& name, const odb_String& materialName,
                           const odb_String& profile, const odb_SequenceDouble& dimensions);

 private:
  friend struct odb_SectionRepositoryAccess;

  using odb_Repository::insert;
  using odb_Repository::remove;

  // The data of a new section after the checks that every kind shares.
  std::shared_ptr<odb_SectionData> NewSection(const odb_String& name, odb_Section::Kind kind,
                                              const odb_String& materialName) const;
  odb_Section& Add(const std::shared_ptr<const odb_SectionData>& section);

  // Adds every stored entry not yet held. Throws "The stored dimensions of section "NAME" are
  // damaged." for a beam whose dimensions are not a whole number of 8-byte values.
  void Load();

  // The database file; of no file for a repository of no database.
  ddb_Ddb m_ddb;
};

using odb_SectionRepositoryIT = odb_RepositoryIterator<odb_String, odb_Section>;

#endif
