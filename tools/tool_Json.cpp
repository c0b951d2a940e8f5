#include "tool_Json.h"

#include <cmath>
#include <cstdio>

#include "tool_Common.h"

void tool_Json::Indent() {
  m_out << '\n';
  for (std::size_t i = 0; i < m_hasItems.size(); ++i) m_out << "  ";
}

// Before a value: a comma after the container's previous item, then a new line; nothing after
// a key, whose value follows on its line.
void tool_Json::Separate() {
  if (m_afterKey) {
    m_afterKey = false;
    return;
  }
  if (m_hasItems.empty()) return;
  if (m_hasItems.back()) m_out << ',';
  m_hasItems.back() = true;
  Indent();
}

void tool_Json::Key(const std::string& key) {
  Separate();
  Quoted(key);
  m_out << ": ";
  m_afterKey = true;
}

void tool_Json::Open(char c) {
  Separate();
  m_out << c;
  m_hasItems.push_back(false);
}

void tool_Json::Close(char c) {
  const bool had = m_hasItems.back();
  m_hasItems.pop_back();
  if (had) Indent();
  m_out << c;
  if (m_hasItems.empty()) m_out << '\n';
}

void tool_Json::Quoted(const std::string& s) {
  m_out << '"';
  for (unsigned char c : s) {
    switch (c) {
      case '"':
        m_out << "\\\"";
        break;
      case '\\':
        m_out << "\\\\";
        break;
      case '\n':
        m_out << "\\n";
        break;
      case '\t':
        m_out << "\\t";
        break;
      case '\r':
        m_out << "\\r";
        break;
      default:
        if (c < 0x20) {
          char code[8];
          std::snprintf(code, sizeof code, "\\u%04x", c);
          m_out << code;
        } else {
          m_out << static_cast<char>(c);
        }
    }
  }
  m_out << '"';
}

void tool_Json::value(const std::string& s) {
  Separate();
  Quoted(s);
}

void tool_Json::value(std::int64_t n) {
  Separate();
  m_out << n;
}

void tool_Json::value(double x) {
  Separate();
  if (std::isfinite(x))
    m_out << tool_FormatDouble(x);
  else
    m_out << "null";
}

void tool_Json::value(float x) {
  Separate();
  if (std::isfinite(x))
    m_out << tool_FormatFloat(x);
  else
    m_out << "null";
}

void tool_Json::value(bool b) {
  Separate();
  m_out << (b ? "true" : "false");
}

void tool_Json::strings(const std::string& key, const std::vector<std::string>& list) {
  beginArray(key);
  for (const std::string& s : list) value(s);
  endArray();
}
