#include "odb_Util.h"

#include <filesystem>
#include <string>

odb_String odb_PortablePath(const odb_String& path) {
  std::string text = path.CStr();
  for (char& c : text)
    if (c == '\\') c = '/';
  if (text.empty()) return odb_String();
  std::error_code error;
  std::filesystem::path absolute = std::filesystem::absolute(text, error);
  if (error) absolute = text;
  std::string normal = absolute.lexically_normal().generic_string();
  if (normal.size() > 1 && normal.back() == '/') normal.pop_back();
  return odb_String(normal.c_str());
}

std::string odb_ToText(const odb_String& s) {
  return std::string(s.CStr(), s.Length());
}

odb_String odb_FromText(const std::string& s) {
  return odb_String(s.data(), static_cast<unsigned>(s.size()));
}
