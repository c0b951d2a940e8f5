#include "odb_SequenceFrame.h"

#include <utility>

#include "odb_Exception.h"
#include "odb_Message.h"
#include "odb_Step.h"
#include "odb_StepData.h"

odb_SequenceFrame::odb_SequenceFrame(std::shared_ptr<odb_StepData> step)
    : m_step(std::move(step)) {}

int odb_SequenceFrame::size() const {
  return m_step ? m_step->FrameCount() : 0;
}

odb_Frame& odb_SequenceFrame::get(int i) {
  if (i < 0 || i >= size())
    odb_ThrowMessage(odb_CatalogueMessage(odb_Step_BAD_FRAME_INDEX), "odb/impl/odb_Step", 412);
  return m_step->KeptFrame(i);
}

const odb_Frame& odb_SequenceFrame::constGet(int i) const {
  return const_cast<odb_SequenceFrame*>(this)->get(i);
}
