// odb_FieldOutput: the bulk form from arrays that know their size. Each count is checked against
// its array before the unchecked bulk form reads anything.
#include <cstdint>
#include <string>

#include "odb_FieldOutput.h"
#include "odb_Message.h"

namespace {

const char* const kSource = "odb/impl/odb_FieldOutput";

odb_String Number(long long n) {
  return odb_String(std::to_string(n).c_str());
}

// Refuses an array that does not hold `runs` runs of `width` floats; an empty conjugate array
// (`optional`) stands for none.
void CheckFloats(odb_ArrayView<float> array, long long runs, long long width, const char* what,
                 const char* name, bool optional, int site) {
  const long long wanted = runs * width;
  const long long held = static_cast<long long>(array.size());
  if (held == wanted || (optional && held == 0)) return;
  odb_ThrowMessage(
      odb_CatalogueMessage(odb_FieldOutput_FLOAT_ARRAY,
                           {Number(runs), what, Number(width), Number(wanted), name, Number(held)}),
      kSource, site);
}

}  // namespace

void odb_FieldOutput::addData(odb_Enum::odb_ResultPositionEnum position,
                              const odb_Instance& instance, int labelCount,
                              odb_ArrayView<int> labels, int locationCount, int width,
                              odb_ArrayView<float> data, const odb_SectionPoint& sectionPoint,
                              odb_ArrayView<float> conjugateData, int orientationCount,
                              int orientationWidth, odb_ArrayView<float> orientations) {
  if (labelCount < 0 || locationCount < 0 || width < 0 || orientationCount < 0 ||
      orientationWidth < 0)
    odb_ThrowMessage("addData() was given a negative count or no labels.", kSource, 40);
  if (static_cast<long long>(labels.size()) != labelCount)
    odb_ThrowMessage(odb_CatalogueMessage(odb_FieldOutput_LABEL_ARRAY,
                                          {Number(labelCount), Number(labels.size())}),
                     kSource, 42);
  CheckFloats(data, locationCount, width, "rows", "data", false, 45);
  CheckFloats(conjugateData, locationCount, width, "rows", "conjugate", true, 46);
  CheckFloats(orientations, orientationCount, orientationWidth, "orientations", "orientation",
              false, 47);
  addData(position, instance, labelCount, labels.data(), locationCount, width, data.data(),
          sectionPoint, conjugateData.empty() ? nullptr : conjugateData.data(), orientationCount,
          orientationWidth, orientations.data());
}
