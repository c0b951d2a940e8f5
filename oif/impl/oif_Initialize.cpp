#include "oif_Initialize.h"

void oif_initialize(int& count) {
  ++count;
}

void oif_finalize(int& count) {
  if (count > 0) --count;
}
