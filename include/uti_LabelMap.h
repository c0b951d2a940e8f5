// uti_LabelMap: lookups in the message catalogues.
//
// A catalogue is an enumeration of message codes (named after its class with the suffix "Enm")
// and one constant table of rows: the message text, its resource key and its code. The table
// ends with a row whose text and key are null. A catalogue header registers its table by
// specialising uti_LabelTable for its enumeration and defines the rows in one source file:
//
//   enum odb_FrameEnm { odb_Frame_NOT_FOUND = 0 };
//   template <> struct uti_LabelTable<odb_FrameEnm> {
//     static const uti_LabelRow<odb_FrameEnm> rows[];
//   };
//   // in the source:
//   const uti_LabelRow<odb_FrameEnm> uti_LabelTable<odb_FrameEnm>::rows[] = {
//       {"Frame not found.", "odb_Frame_MSGID_00", odb_Frame_NOT_FOUND}, {nullptr, nullptr, {}}};
//
// The key is stored in the row, never computed from the code, so a catalogue may number its keys
// as it likes. The second template parameter numbers the tables of one enumeration; every
// catalogue of this library has one table, number 1.
//
// Ownership: the tables are static constants; every returned text points into them and lives as
// long as the program. Cost: each lookup scans the table, which holds a few dozen rows at most.
// Threads: the tables are read-only, so lookups may run on any number of threads at once.
#ifndef UTI_LABELMAP_H
#define UTI_LABELMAP_H

#include "cow_Assert.h"
#include "odb_Export.h"

template <class Enm>
struct QTVODB_EXPORT uti_LabelRow {
  const char* text;
  const char* key;
  Enm code;
};

// Specialised by each catalogue header; declares `static const uti_LabelRow<Enm> rows[]`.
template <class Enm, int Table = 1>
struct uti_LabelTable;

template <class Enm, int Table>
class QTVODB_EXPORT uti_LabelMap {
 public:
  // The text of `code`; a code with no row reports the label-string assertion and gives "".
  static const char* LabelString(Enm code) { return FoundRow(code).text; }

  // The resource key of `code`; a code with no row reports the label-string assertion and gives
  // "" (the code is what could not be found, as for LabelString).
  static const char* ResourceString(Enm code) { return FoundRow(code).key; }

  // Sets `code` to the code whose key is exactly `key` and returns true; for an unknown (or
  // null) key reports the resource-string assertion, leaves `code` alone and returns false.
  static bool CodeOfResource(const char* key, Enm& code) {
    for (const uti_LabelRow<Enm>* row = Rows(); !IsEnd(*row); ++row) {
      if (key && row->key && SameKey(row->key, key)) {
        code = row->code;
        return true;
      }
    }
    cow_AssertFailed("\"Unable to find key given resource string\" == 0", "include/uti_LabelMap",
                     kResourceSite);
    return false;
  }

  // The number of rows, the closing null row not counted.
  static int Size() {
    int n = 0;
    for (const uti_LabelRow<Enm>* row = Rows(); !IsEnd(*row); ++row) ++n;
    return n;
  }

  // Site numbers of the two assertions, fixed so that reports keep their identity.
  static constexpr int kLabelSite = 41;
  static constexpr int kResourceSite = 58;

 private:
  static const uti_LabelRow<Enm>* Rows() { return uti_LabelTable<Enm, Table>::rows; }
  static bool SameKey(const char* a, const char* b) {
    while (*a && *a == *b) {
      ++a;
      ++b;
    }
    return *a == *b;
  }
  static bool IsEnd(const uti_LabelRow<Enm>& row) { return !row.text && !row.key; }
  // The row of `code`, or, after reporting the label-string assertion, a row of empty texts.
  static const uti_LabelRow<Enm>& FoundRow(Enm code) {
    static const uti_LabelRow<Enm> none{"", "", Enm{}};
    const uti_LabelRow<Enm>* row = RowOf(code);
    if (row) return *row;
    cow_AssertFailed("\"Unable to find key given label string\" == 0", "include/uti_LabelMap",
                     kLabelSite);
    return none;
  }
  static const uti_LabelRow<Enm>* RowOf(Enm code) {
    for (const uti_LabelRow<Enm>* row = Rows(); !IsEnd(*row); ++row) {
      if (row->code == code) return row;
    }
    return nullptr;
  }
};

#endif
