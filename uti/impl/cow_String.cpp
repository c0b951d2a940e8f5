#include "cow_String.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>

namespace {

cow_StringRep* NewRep(unsigned capacity) {
  void* memory = std::malloc(sizeof(cow_StringRep) + capacity + 1);
  if (!memory) throw std::bad_alloc();
  auto* rep = static_cast<cow_StringRep*>(memory);
  rep->data = reinterpret_cast<char*>(rep + 1);
  rep->count = 1;
  rep->capacity = static_cast<int>(capacity);
  rep->length = 0;
  rep->data[0] = '\0';
  return rep;
}

cow_StringRep* NewRep(const char* text, unsigned n) {
  if (n == 0) return nullptr;
  cow_StringRep* rep = NewRep(n);
  std::memcpy(rep->data, text, n);
  rep->data[n] = '\0';
  rep->length = static_cast<int>(n);
  return rep;
}

void Release(cow_StringRep* rep) {
  if (rep && --rep->count <= 0) cow_String::Delete(rep);
}

std::string DoubleText(double value) {
  char buffer[40];
  std::snprintf(buffer, sizeof buffer, "%.15g", value);
  if (std::isfinite(value) && std::strtod(buffer, nullptr) != value)
    std::snprintf(buffer, sizeof buffer, "%.17g", value);
  return buffer;
}

}  // namespace

cow_String::cow_String(const char* text)
    : m_rep(text ? NewRep(text, std::strlen(text)) : nullptr) {}

cow_String::cow_String(const char* text, unsigned n) : m_rep(text ? NewRep(text, n) : nullptr) {}

cow_String::cow_String(int value) {
  std::string text = std::to_string(value);
  m_rep = NewRep(text.data(), text.size());
}

cow_String::cow_String(unsigned value) {
  std::string text = std::to_string(value);
  m_rep = NewRep(text.data(), text.size());
}

cow_String::cow_String(double value) {
  std::string text = DoubleText(value);
  m_rep = NewRep(text.data(), text.size());
}

cow_String::cow_String(const cow_String& other) : m_rep(other.m_rep) {
  if (m_rep) ++m_rep->count;
}

cow_String::~cow_String() {
  Release(m_rep);
}

cow_String& cow_String::operator=(const cow_String& other) {
  if (m_rep == other.m_rep) return *this;
  if (other.m_rep) ++other.m_rep->count;
  Release(m_rep);
  m_rep = other.m_rep;
  return *this;
}

cow_String& cow_String::operator=(const char* text) {
  cow_StringRep* rep = text ? NewRep(text, std::strlen(text)) : nullptr;
  Release(m_rep);
  m_rep = rep;
  return *this;
}

void cow_String::Delete(cow_StringRep* rep) {
  std::free(rep);
}

void cow_String::MakePrivate(unsigned capacity) {
  unsigned length = Length();
  if (m_rep && m_rep->count == 1 && static_cast<unsigned>(m_rep->capacity) >= capacity) return;
  if (capacity < length) capacity = length;
  unsigned grown = m_rep && m_rep->count == 1 ? 2 * static_cast<unsigned>(m_rep->capacity) : 0;
  cow_StringRep* rep = NewRep(capacity > grown ? capacity : grown);
  if (length) std::memcpy(rep->data, m_rep->data, length + 1);
  rep->length = static_cast<int>(length);
  Release(m_rep);
  m_rep = rep;
}

char& cow_String::operator[](unsigned i) {
  MakePrivate(Length());
  return m_rep->data[i];
}

cow_String& cow_String::append(const char* chars, unsigned length, unsigned pos, unsigned n) {
  if (!chars || pos >= length) return *this;
  if (n > length - pos) n = length - pos;
  if (n == 0) return *this;
  // `chars` may point into this string's own representation, which MakePrivate can free.
  cow_String keep(*this);
  unsigned old = Length();
  MakePrivate(old + n);
  std::memmove(m_rep->data + old, chars + pos, n);
  m_rep->length = static_cast<int>(old + n);
  m_rep->data[old + n] = '\0';
  return *this;
}

cow_String& cow_String::Erase(unsigned pos, unsigned n) {
  unsigned length = Length();
  if (pos >= length) return *this;
  if (n > length - pos) n = length - pos;
  if (n == length) {
    Release(m_rep);
    m_rep = nullptr;
    return *this;
  }
  MakePrivate(length);
  std::memmove(m_rep->data + pos, m_rep->data + pos + n, length - pos - n + 1);
  m_rep->length = static_cast<int>(length - n);
  return *this;
}

int cow_String::compare(const char* other, unsigned otherLength) const {
  unsigned length = Length();
  unsigned common = length < otherLength ? length : otherLength;
  int c = common ? std::memcmp(CStr(), other, common) : 0;
  if (c == 0) c = length < otherLength ? -1 : (length > otherLength ? 1 : 0);
  return c < 0 ? -1 : (c > 0 ? 1 : 0);
}

int cow_String::Find(const char* s, unsigned n, unsigned pos) const {
  unsigned length = Length();
  if (pos > length || n > length - pos) return npos;
  const char* text = CStr();
  for (unsigned i = pos; i + n <= length; ++i)
    if (std::memcmp(text + i, s, n) == 0) return static_cast<int>(i);
  return npos;
}

int cow_String::rfind(const char* s, unsigned n, unsigned pos) const {
  unsigned length = Length();
  if (n > length) return npos;
  unsigned start = length - n < pos ? length - n : pos;
  const char* text = CStr();
  for (unsigned i = start + 1; i-- > 0;)
    if (std::memcmp(text + i, s, n) == 0) return static_cast<int>(i);
  return npos;
}

int cow_String::Substitute(const char* placeholder, const char* value, bool all) {
  unsigned size = std::strlen(placeholder);
  unsigned valueSize = std::strlen(value);
  if (size == 0) return 0;
  int replaced = 0;
  cow_String result;
  unsigned from = 0;
  for (int at = Find(placeholder, size, 0); at != npos; at = Find(placeholder, size, from)) {
    result.append(CStr(), Length(), from, static_cast<unsigned>(at) - from);
    result.append(value, valueSize);
    from = static_cast<unsigned>(at) + size;
    ++replaced;
    if (!all) break;
  }
  if (replaced == 0) return 0;
  result.append(CStr(), Length(), from);
  *this = result;
  return replaced;
}

bool operator==(const cow_String& a, const cow_String& b) {
  return a.Representation() == b.Representation() || a.compare(b) == 0;
}
