// odb_StepProcedureRecord: a step's procedure settings as the store keeps them, and the
// procedure text and frame domain that each kind gives a step; internal.
#ifndef ODB_STEPPROCEDURERECORD_H
#define ODB_STEPPROCEDURERECORD_H

#include "odb_Enum.h"
#include "odb_StepProcedure.h"
#include "store_StepProcedure.h"

// The record of `procedure`: its kind, solver input and every setting that differs from its
// default (a default-constructed odb_StepProcedure).
store_StepProcedureRecord odb_ProcedureRecord(const odb_StepProcedure& procedure);
// The settings of a stored record; settings it does not name keep their defaults, and names this
// release does not know (a newer file's) are passed over. Throws store_Error for a kind out of
// range or a setting of the wrong type.
odb_StepProcedure odb_ProcedureOf(const store_StepProcedureRecord& record);
// The procedure text a step of this procedure carries in the step table, e.g. "*STATIC".
const char* odb_ProcedureText(const odb_StepProcedure& procedure);
// The kind of value the frames of such a step carry.
odb_Enum::odb_DomainEnum odb_ProcedureDomain(const odb_StepProcedure& procedure);
// True for the kinds an odb_StepProcedure::Kind value names.
bool odb_IsProcedureKind(int kind);

#endif
