#include "odb_Message.h"

#include <cstring>

namespace {

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

}  // namespace

odb_String odb_FormatMessage(const char* text, std::initializer_list<odb_String> args) {
  odb_String result;
  if (!text) return result;
  const odb_String* arg = args.begin();
  const unsigned count = static_cast<unsigned>(args.size());
  unsigned nextUnnumbered = 0;
  const unsigned length = static_cast<unsigned>(std::strlen(text));
  unsigned copiedTo = 0;  // text before this position is already in `result`
  unsigned i = 0;
  while (i < length) {
    if (text[i] != '%') {
      ++i;
      continue;
    }
    unsigned end = 0;  // one past the placeholder, 0 when there is none here
    const odb_String* value = nullptr;
    if (text[i + 1] == 's') {
      if (nextUnnumbered < count) {
        value = arg + nextUnnumbered++;
        end = i + 2;
      }
    } else if (IsDigit(text[i + 1])) {
      unsigned j = i + 1;
      unsigned long n = 0;
      while (IsDigit(text[j]) && n <= count) n = n * 10 + static_cast<unsigned>(text[j++] - '0');
      while (IsDigit(text[j])) ++j;  // an absurdly long number matches no argument
      if (text[j] == '$' && (text[j + 1] == 's' || text[j + 1] == 'i') && n >= 1 && n <= count) {
        value = arg + (n - 1);
        end = j + 2;
      }
    }
    if (!value) {
      ++i;
      continue;
    }
    result.append(text + copiedTo, i - copiedTo);
    result.append(*value);
    copiedTo = i = end;
  }
  result.append(text + copiedTo, length - copiedTo);
  return result;
}
