// odb_Odb: one open output database as a program sees it.
//
// A handle: copies share the database's identity, its file and its repositories, so copying
// costs O(1). The registry of open databases owns the handles that Odb and openOdb return;
// callers keep references and never delete them. closeOdb, close() or shut-down close the file;
// the reference stays valid until the library is finalized, in a closed state: isOpen() is
// false, name(), analysisTitle(), description(), path() and isReadOnly() answer, closing again
// does nothing, and every other call throws "The database is closed.". What it read is let go
// at the close: references into its repositories (steps(), parts() ...) end there, while copies
// of objects reached before the close (odb_Step, odb_Frame, odb_FieldOutput ...) stay valid,
// answer from what they already read and throw the same for anything else.
//
// A database opened read-only never writes, even when it shares the file of a database that
// this process has open for writing (it then reads what that one wrote, saved or not): every
// creator and addData on it, or on anything reached from it, throws "The database is
// read-only: cannot write.".
//
// Steps are read from the file on first use (steps(), Step, getFrame), frames of a step on first
// use of that step's frames. Writes go to the file at once, inside the transaction that the next
// save commits; closing without saving leaves the file as it was last saved. One thread at a
// time.
//
// A failed save, and any write that meets an I/O error or a full disk between saves, take the
// database back to its last save, in its file and in memory alike. The save throws "Database
// save failed." after a warning that gives the cause ("The database PATH was not saved: the disk
// is full. ..."); a write throws the cause itself ("The disk is full: what was written since the
// last save is discarded."). The file then holds exactly its last save, and this object reads
// itself again from the file at its next use: the steps, frames, field and history outputs,
// history pairs, parts, instances, sets, materials and sections written since are gone, never
// half there. Handles and references reached before the failure (from steps(), parts(),
// rootAssembly() ... down to frames and outputs) are retired: they stay safe to hold and answer
// what they held, but every call of theirs that needs the file throws "This object was reached
// before a failure took the database back to its last save: reach it again from the database.".
// Reach them again from this object, which stays valid. Once the cause is gone (space freed, a
// passing error) writes and saves work again, and a save writes exactly what the database then
// shows. Two failures take nothing back, and their warnings say so: a save that readers in
// other processes kept waiting (what was written waits for the next save), and one that failed
// at its very last step, the disk's confirmation that the emptied journal is on it, after a
// second attempt failed too (the file holds the save, and the next save confirms it).
#ifndef ODB_ODB_H
#define ODB_ODB_H

#include "ddb_Ddb.h"
#include "odb_Assembly.h"
#include "odb_DiscretePart.h"
#include "odb_DiscretePartRepository.h"
#include "odb_Enum.h"
#include "odb_Export.h"
#include "odb_Frame.h"
#include "odb_MaterialRepository.h"
#include "odb_SectionCategory.h"
#include "odb_SectionCategoryRepository.h"
#include "odb_SectionRepository.h"
#include "odb_Step.h"
#include "odb_StepRepository.h"
#include "odb_String.h"
#include "uti_SharedPtr.h"

struct odb_OdbData;
struct odb_OdbAccess;

// The messages of the database object.
enum odb_OdbEnm : int {
  odb_Odb_SAVE_FAILED = 0,
  odb_Odb_PATH_CHANGE = 1,
  odb_Odb_FRAME_NOT_FOUND = 2,
  odb_Odb_PREVIOUS_STEP_MISSING = 3,  // %s: the previous step's name
  odb_Odb_STEP_EXISTS = 4,            // %s: the step's name
  odb_Odb_PART_EXISTS = 5             // %s: the part's name
};

template <>
struct QTVODB_EXPORT uti_LabelTable<odb_OdbEnm, 1> {
  static const uti_LabelRow<odb_OdbEnm> rows[];
};

class QTVODB_EXPORT odb_Odb {
 public:
  // An empty database: no file; the registry returns it for a name it does not hold.
  odb_Odb();
  // Used by the registry when it creates or opens a file: a database of that identity on the
  // file `ddb`, writable unless `readOnly`.
  odb_Odb(const odb_String& name, const odb_String& analysisTitle, const odb_String& description,
          const odb_String& path, const ddb_Ddb& ddb, bool readOnly,
          bool onlyUserDefinedData = false);

  odb_String name() const;
  odb_String analysisTitle() const;
  odb_String description() const;
  // The absolute path, with forward slashes.
  odb_String path() const;
  bool isReadOnly() const;
  // False for the empty database and after the file was closed.
  bool isOpen() const;
  // The file, as an opaque handle; the handle of no file (isNull()) for the empty database.
  ddb_Ddb ddb() const;

  // The steps in the order they were added; `step()` is the same repository.
  odb_StepRepository& steps();
  odb_StepRepository& step() { return steps(); }

  // The model: parts, the root assembly, section categories, materials and sections, each read
  // from the file on first use. `part()` and `sectionCategory()` are the same repositories.
  odb_DiscretePartRepository& parts();
  odb_DiscretePartRepository& part() { return parts(); }
  odb_Assembly& rootAssembly();
  odb_SectionCategoryRepository& sectionCategories();
  odb_SectionCategoryRepository& sectionCategory() { return sectionCategories(); }
  odb_MaterialRepository& materials();
  odb_SectionRepository& sections();

  // Creates an empty part; throws "A part named "NAME" already exists." for a name in parts().
  odb_DiscretePart& DiscretePart(const odb_String& name, odb_Enum::odb_DimensionEnum dimension,
                                 odb_Enum::odb_PartTypeEnum type);
  // The section category of that name, created when new (see odb_SectionCategoryRepository).
  odb_SectionCategory& SectionCategory(const odb_String& name, const odb_String& description);

  // Creates a step. Throws "Previous step "NAME" not found." when previousStepName is neither
  // empty nor a step of this database, then "A Step named "NAME" already exists.".
  odb_Step& Step(const odb_String& name, const odb_String& description,
                 odb_Enum::odb_DomainEnum domain, double timePeriod,
                 const odb_String& previousStepName, const odb_String& procedure, double totalTime);

  // The frame whose analysis time (frame value plus the step's total time when that is not
  // negative, in single precision) is nearest to `value` under `match`; throws "Frame not
  // found." when none qualifies. Every frame is looked at, steps in creation order and the
  // frames of each in creation order, and times need not increase (a restart or a load case may
  // give a frame a value below the one before it): the choice depends on the times and on that
  // order only. CLOSEST and BEFORE keep the earlier of two equally near frames, AFTER the later,
  // EXACT the last frame of exactly that time, and any other match value the last frame, as
  // odb_Step::getFrame does within a step.
  odb_Frame getFrame(double value, odb_Enum::odb_MatchEnum match);

  // Commits everything written since the last save; `path` must be empty or this database's
  // path ("ODB not saved. Changing the path is not allowed." otherwise, nothing written). A
  // commit that fails warns why and throws "Database save failed."; see above for what the
  // database holds then.
  void save(const odb_String& path = odb_String());
  // Reads steps and frames that another process saved since they were read; false when the
  // steps were never read or nothing was new.
  bool update();
  // Ends this database in the registry (its file closes when no other name shares it).
  void close();

  void setOnlyHasUserDefinedData(bool only);
  bool onlyHasUserDefinedData() const;

  // Writes the stored model as a keyword input deck to `fileName` (created or truncated): parts,
  // assembly, sets, surfaces, sections, materials and steps with their procedures; see
  // oif_Builder.h. Throws "Cannot write the input file 'NAME'." when the file cannot be opened.
  void writeInput(const char* fileName) const;

 private:
  friend struct odb_OdbAccess;

  // A handle on the shared state of another handle.
  explicit odb_Odb(std::shared_ptr<odb_OdbData> data) : m_data(std::move(data)) {}

  std::shared_ptr<odb_OdbData> m_data;
};

#endif
