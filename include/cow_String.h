// cow_String: the library's copy-on-write byte string.
//
// One field: a pointer to a shared representation, or null for the empty string (which
// allocates nothing). The representation carries, in order: the pointer to its NUL-terminated
// characters (stored in the same allocation, just after the header), the reference count, the
// capacity in bytes, and the length in bytes. Copies share the representation; a write makes
// it private first. Counts are plain ints: a string and its copies belong to one thread at a time.
//
// Text forms of numbers: int as "%d", unsigned as "%u", double as the shortest of "%.15g" and
// "%.17g" that reads back to the same value ("1.5", "0.1", "1e+20", "nan", "inf").
// Searching: Find and rfind return the byte position of the match, or cow_String::npos (-1)
// when there is none.
#ifndef COW_STRING_H
#define COW_STRING_H

#include "odb_Export.h"

struct QTVODB_EXPORT cow_StringRep {
  char* data;
  int count;
  int capacity;
  int length;
};

class QTVODB_EXPORT cow_String {
 public:
  static constexpr int npos = -1;

  cow_String() = default;
  cow_String(const char* text);
  // The first `n` bytes of `text` (which may hold NULs).
  cow_String(const char* text, unsigned n);
  explicit cow_String(int value);
  explicit cow_String(unsigned value);
  explicit cow_String(double value);
  cow_String(const cow_String& other);
  ~cow_String();
  cow_String& operator=(const cow_String& other);
  cow_String& operator=(const char* text);

  // Frees a representation whose count has reached zero.
  static void Delete(cow_StringRep* rep);
  cow_StringRep* Representation() const { return m_rep; }

  // Never null: the empty string gives a static empty text.
  const char* CStr() const { return m_rep ? m_rep->data : ""; }
  unsigned Length() const { return m_rep ? static_cast<unsigned>(m_rep->length) : 0u; }
  bool Empty() const { return Length() == 0; }

  char operator[](unsigned i) const { return CStr()[i]; }
  // Write access to byte i; makes the representation private first. No bounds check.
  char& operator[](unsigned i);

  // Appends `n` bytes of `chars` (of `length` bytes) from `pos`; n of -1 means all from pos.
  cow_String& append(const char* chars, unsigned length, unsigned pos = 0, unsigned n = ~0u);
  // Removes `n` bytes from `pos` (all to the end for n of -1); nothing when pos is past the end.
  cow_String& Erase(unsigned pos = 0, unsigned n = ~0u);

  // -1, 0 or 1 as this text sorts before, equal to or after `other`, unsigned byte by byte.
  int compare(const char* other, unsigned otherLength) const;
  int compare(const cow_String& other) const { return compare(other.CStr(), other.Length()); }

  // First match of the `n` bytes of `s` starting at or after `pos`.
  int Find(const char* s, unsigned n, unsigned pos = 0) const;
  // Last match of the `n` bytes of `s` starting at or before `pos`.
  int rfind(const char* s, unsigned n, unsigned pos = ~0u) const;

  // Replaces occurrences of `placeholder` by `value` (every one, or only the first); returns how
  // many were replaced.
  int Substitute(const char* placeholder, const char* value, bool all = true);

 private:
  void MakePrivate(unsigned capacity);
  cow_StringRep* m_rep = nullptr;
};

QTVODB_EXPORT bool operator==(const cow_String& a, const cow_String& b);
inline bool operator!=(const cow_String& a, const cow_String& b) {
  return !(a == b);
}
inline bool operator<(const cow_String& a, const cow_String& b) {
  return a.compare(b) < 0;
}

#endif
