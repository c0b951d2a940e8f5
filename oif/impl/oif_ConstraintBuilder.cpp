#include "oif_Components.h"

// The model stores nothing of this kind yet: every level query gives an empty list.
void oif_ConstraintBuilder::Prepare() {
  Clear();
}
