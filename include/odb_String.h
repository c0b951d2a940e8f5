// odb_String: the text type of the public interface.
//
// Exactly one field, the shared representation of a cow_String (null for the empty string, which
// allocates nothing). Copying, assigning, passing and returning share the characters; a write
// makes them private first. Comparison is byte-wise on unsigned bytes and case-sensitive. A
// string and its copies belong to one thread at a time.
#ifndef ODB_STRING_H
#define ODB_STRING_H

#include "cow_String.h"
#include "odb_Export.h"

class QTVODB_EXPORT odb_String {
 public:
  odb_String() = default;
  odb_String(const char* text) : m_str(text) {}
  // The first `n` bytes of `text`.
  odb_String(const char* text, unsigned n) : m_str(text, n) {}
  // Numbers in the text forms of cow_String ("42", "1.5").
  explicit odb_String(int value) : m_str(value) {}
  explicit odb_String(unsigned value) : m_str(value) {}
  explicit odb_String(double value) : m_str(value) {}
  odb_String(const odb_String& other) = default;
  odb_String(const cow_String& other) : m_str(other) {}
  ~odb_String() = default;

  odb_String& operator=(const odb_String& other) = default;
  odb_String& operator=(const char* text) {
    m_str = text;
    return *this;
  }

  char operator[](unsigned i) const { return m_str[i]; }
  // Write access to byte i; unshares first. No bounds check.
  char& operator[](unsigned i) { return m_str[i]; }

  odb_String& operator+=(const odb_String& s) { return append(s); }
  odb_String& operator+=(const char* s);
  odb_String& append(const odb_String& s) { return append(s, 0, ~0u); }
  // Appends at most `n` bytes of `s`.
  odb_String& append(const char* s, unsigned n);
  // Appends `n` bytes of `s` from byte `pos` (fewer where `s` ends first).
  odb_String& append(const odb_String& s, unsigned pos, unsigned n) {
    m_str.append(s.CStr(), s.Length(), pos, n);
    return *this;
  }

  // -1, 0 or 1; the empty string compares as an empty text.
  int compare(const odb_String& other) const { return m_str.compare(other.m_str); }
  int compare(const char* other) const;

  // Never null.
  const char* CStr() const { return m_str.CStr(); }
  unsigned Length() const { return m_str.Length(); }
  bool Empty() const { return m_str.Empty(); }

  void Erase() { m_str.Erase(); }
  void Erase(unsigned pos, unsigned n) { m_str.Erase(pos, n); }

  // Byte position of the first match at or after `pos`, or cow_String::npos (-1).
  int Find(const char* s, unsigned pos = 0) const;
  int Find(const odb_String& s, unsigned pos = 0) const {
    return m_str.Find(s.CStr(), s.Length(), pos);
  }
  // Searches for the first `n` bytes of `s`.
  int Find(const char* s, unsigned pos, unsigned n) const;
  // Byte position of the last match starting at or before `pos`, or cow_String::npos (-1).
  int RFind(const char* s, unsigned pos = ~0u) const;
  int RFind(const odb_String& s, unsigned pos = ~0u) const {
    return m_str.rfind(s.CStr(), s.Length(), pos);
  }
  int RFind(const char* s, unsigned pos, unsigned n) const;

  // The underlying string, shared.
  const cow_String& Cow() const { return m_str; }

 private:
  cow_String m_str;
};

inline bool operator==(const odb_String& a, const odb_String& b) {
  return a.Cow() == b.Cow();
}
inline bool operator!=(const odb_String& a, const odb_String& b) {
  return !(a == b);
}
inline bool operator<(const odb_String& a, const odb_String& b) {
  return a.compare(b) < 0;
}
inline bool operator==(const odb_String& a, const char* b) {
  return a.compare(b) == 0;
}
inline bool operator!=(const odb_String& a, const char* b) {
  return a.compare(b) != 0;
}
QTVODB_EXPORT odb_String operator+(const odb_String& a, const odb_String& b);

#endif
