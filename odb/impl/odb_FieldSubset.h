// The building blocks of field subsets and derived fields; internal.
#ifndef ODB_FIELDSUBSET_H
#define ODB_FIELDSUBSET_H

#include <functional>
#include <memory>
#include <vector>

#include "odb_FieldData.h"

// A new in-memory sub-field holding the locations `keep` (positions in `sub`) of `sub`, with the
// same identity; its subset indices refer to the stored sub-field it comes from.
std::shared_ptr<odb_SubFieldData> odb_PickLocations(odb_SubFieldData& sub,
                                                    const std::vector<int>& keep);
// An orphan field of `source`'s definition holding, of each sub-field, the locations that `keep`
// accepts (all of them: the sub-field is shared, not copied). `keep(sub, i)` sees location i.
odb_FieldOutput odb_FilterField(odb_FieldData& source,
                                const std::function<bool(odb_SubFieldData&)>& takeWhole,
                                const std::function<bool(odb_SubFieldData&, std::size_t)>& keep);
// The ELEMENT_NODAL or CENTROID values derived from the field's integration-point sub-fields,
// into `out`.
void odb_Extrapolate(odb_FieldData& source, odb_Enum::odb_ResultPositionEnum position,
                     odb_FieldData& out);

#endif
