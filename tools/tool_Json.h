// A small JSON writer for the tool's --json output: objects, arrays, strings and numbers written
// straight to a stream, with commas and indentation kept by a stack of open containers.
#ifndef TOOL_JSON_H
#define TOOL_JSON_H

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

class tool_Json {
 public:
  explicit tool_Json(std::ostream& out) : m_out(out) {}

  // Containers: as a value (in an array or at the top) or as the value of `key`.
  void beginObject() { Open('{'); }
  void beginObject(const std::string& key) {
    Key(key);
    Open('{');
  }
  void endObject() { Close('}'); }
  void beginArray() { Open('['); }
  void beginArray(const std::string& key) {
    Key(key);
    Open('[');
  }
  void endArray() { Close(']'); }

  void value(const std::string& s);
  void value(const char* s) { value(std::string(s)); }
  void value(std::int64_t n);
  void value(int n) { value(static_cast<std::int64_t>(n)); }
  void value(double x);  // non-finite numbers, which JSON lacks, as null
  void value(float x);   // the shortest text that reads back as the same float
  void value(bool b);

  template <class T>
  void field(const std::string& key, const T& v) {
    Key(key);
    m_afterKey = true;
    value(v);
  }
  void strings(const std::string& key, const std::vector<std::string>& list);

 private:
  void Key(const std::string& key);
  void Open(char c);
  void Close(char c);
  void Separate();
  void Indent();
  void Quoted(const std::string& s);

  std::ostream& m_out;
  std::vector<bool> m_hasItems;  // per open container
  bool m_afterKey = false;
};

#endif
