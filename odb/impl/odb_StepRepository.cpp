#include "odb_StepRepositoryBase.h"

const uti_LabelRow<odb_StepRepositoryEnm> uti_LabelTable<odb_StepRepositoryEnm, 1>::rows[] = {
    {"No step named \"%s\" in StepContainer.", "odb_StepRepository_MSGID_00",
     odb_StepRepository_NO_STEP},
    {"Invalid step name.", "odb_StepRepository_MSGID_01", odb_StepRepository_INVALID_NAME},
    {"Invalid previous step name.", "odb_StepRepository_MSGID_02",
     odb_StepRepository_INVALID_PREVIOUS},
    {"StepContainerIterator done.", "odb_StepRepository_MSGID_03",
     odb_StepRepository_ITERATOR_DONE},
    {"Previous step \"%s\" not found.", "odb_StepRepository_MSGID_04",
     odb_StepRepository_PREVIOUS_MISSING},
    {"A Step named \"%s\" already exists.", "odb_StepRepository_MSGID_05",
     odb_StepRepository_ALREADY_EXISTS},
    {nullptr, nullptr, {}}};
