// Damage found while reading a file, said in the words of the object being read.
//
// The store knows pages, tables and array ids; the objects know the step, frame, field or part
// they read. Each reader wraps its reads of the store in odb_Reading with a subject ("the data of
// field 'S' in frame 3 of step 'LOAD'"): damage the store finds then reads "The file /x/a.odb is
// damaged: the data of field 'S' in frame 3 of step 'LOAD' do not match their checksum (page
// 17).". The innermost subject wins: the error thrown is no longer store_Damaged, so the readers
// around it let it pass. Values the objects check themselves (an enumeration's code) are refused
// with odb_ThrowDamaged.
#ifndef ODB_DAMAGE_H
#define ODB_DAMAGE_H

#include <string>

#include "odb_String.h"
#include "store_Database.h"

// Throws store_Error "The file PATH is damaged: SUBJECT PREDICATE.".
[[noreturn]] void odb_ThrowDamaged(const std::string& path, const std::string& subject,
                                   const std::string& predicate);

// Runs `read` and returns what it returns; store_Damaged becomes the error above for `subject`.
template <class Read>
auto odb_Reading(const std::string& subject, Read&& read) -> decltype(read()) {
  try {
    return read();
  } catch (const store_Damaged& damage) {
    store_ThrowDamagedSubject(damage, subject);
  }
}

// `name` in quotes, for subjects: 'LOAD'.
std::string odb_Quoted(const odb_String& name);
std::string odb_Quoted(const std::string& name);

// Refuses an enumeration's code outside [first, last], read from `table`.`column` for
// `subject`, and returns it otherwise.
int odb_CheckedCode(const store_Database& store, int code, int first, int last,
                    const std::string& subject, const char* table, const char* column);

// Refuses a surface of `set` whose faces hold a code that is no face.
struct store_SetRecord;
void odb_CheckFaces(const store_Database& store, const store_SetRecord& set,
                    const std::string& subject);

#endif
