// odb_Message: filling the placeholders of catalogue texts.
//
// Catalogue texts carry positional placeholders, "%N$s" and "%N$i" for argument N (counted from
// 1), and the older unnumbered "%s". Every positional placeholder is replaced by the text of its
// argument; the unnumbered ones are filled in turn by the arguments in order, the first "%s" by
// the first argument. Numbers are passed already as text (odb_String(int)). Placeholders with no
// matching argument are left as they stand. Nothing printf-like happens: "%d", "%%" and the like
// are plain text, and inserted arguments are never scanned again, so a file name that contains
// "%s" arrives intact.
//
// Cost: one pass over the text. Threads: no shared state.
#ifndef ODB_MESSAGE_H
#define ODB_MESSAGE_H

#include <initializer_list>

#include "odb_Export.h"
#include "odb_String.h"
#include "uti_LabelMap.h"

// The text with its placeholders filled from `args`; a null text gives the empty string.
QTVODB_EXPORT odb_String odb_FormatMessage(const char* text,
                                           std::initializer_list<odb_String> args);

// The catalogue text of `code` filled from `args` (a code missing from the catalogue reports the
// label map's assertion and gives the empty string).
template <class Enm>
odb_String odb_CatalogueMessage(Enm code, std::initializer_list<odb_String> args = {}) {
  return odb_FormatMessage(uti_LabelMap<Enm, 1>::LabelString(code), args);
}

#endif
