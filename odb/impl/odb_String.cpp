#include "odb_String.h"

#include <cstring>

namespace {

unsigned Bounded(const char* s, unsigned n) {
  const void* nul = std::memchr(s, '\0', n);
  return nul ? static_cast<unsigned>(static_cast<const char*>(nul) - s) : n;
}

}  // namespace

odb_String& odb_String::operator+=(const char* s) {
  if (s) m_str.append(s, std::strlen(s));
  return *this;
}

odb_String& odb_String::append(const char* s, unsigned n) {
  if (s) m_str.append(s, Bounded(s, n));
  return *this;
}

int odb_String::compare(const char* other) const {
  return m_str.compare(other ? other : "", other ? std::strlen(other) : 0);
}

int odb_String::Find(const char* s, unsigned pos) const {
  return s ? m_str.Find(s, std::strlen(s), pos) : cow_String::npos;
}

int odb_String::Find(const char* s, unsigned pos, unsigned n) const {
  if (!s) return cow_String::npos;
  cow_String pattern(s, Bounded(s, n));
  return m_str.Find(pattern.CStr(), pattern.Length(), pos);
}

int odb_String::RFind(const char* s, unsigned pos) const {
  return s ? m_str.rfind(s, std::strlen(s), pos) : cow_String::npos;
}

int odb_String::RFind(const char* s, unsigned pos, unsigned n) const {
  if (!s) return cow_String::npos;
  cow_String pattern(s, Bounded(s, n));
  return m_str.rfind(pattern.CStr(), pattern.Length(), pos);
}

odb_String operator+(const odb_String& a, const odb_String& b) {
  odb_String sum(a);
  sum += b;
  return sum;
}
