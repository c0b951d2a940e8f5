#include "odb_Damage.h"

#include "odb_Enum.h"
#include "odb_Util.h"
#include "store_Model.h"

void odb_ThrowDamaged(const std::string& path, const std::string& subject,
                      const std::string& predicate) {
  store_ThrowDamagedSubject(store_Damaged(path, std::string(), predicate), subject);
}

std::string odb_Quoted(const std::string& name) {
  return "'" + name + "'";
}

std::string odb_Quoted(const odb_String& name) {
  return odb_Quoted(odb_ToText(name));
}

void odb_CheckFaces(const store_Database& store, const store_SetRecord& set,
                    const std::string& subject) {
  for (const store_SetMember& member : set.members)
    for (int face : member.faces)
      odb_CheckedCode(store, face, odb_Enum::FACE_UNKNOWN, odb_Enum::END3, subject, "set_member",
                      "faces");
}

int odb_CheckedCode(const store_Database& store, int code, int first, int last,
                    const std::string& subject, const char* table, const char* column) {
  if (code < first || code > last)
    odb_ThrowDamaged(store.Path(), subject,
                     "hold a code no writer writes (" + std::string(table) + "." + column +
                         " holds " + std::to_string(code) + ", not " + std::to_string(first) +
                         " to " + std::to_string(last) + ")");
  return code;
}
