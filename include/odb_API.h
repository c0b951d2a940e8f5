// odb_API: the one header a program includes to get the whole public interface of the library.
// Each public class's header is listed here; including them one by one works as well.
#ifndef ODB_API_H
#define ODB_API_H

#include "cow_1DArray.h"
#include "cow_1DArrayList.h"
#include "cow_Assert.h"
#include "cow_Btree.h"
#include "cow_COW.h"
#include "cow_CountedHld.h"
#include "cow_List.h"
#include "cow_Map.h"
#include "cow_String.h"
#include "mem_Malloc.h"
#include "nex_Exception.h"
#include "odb_Enum.h"
#include "odb_EnumMap.h"
#include "odb_Exception.h"
#include "odb_Exceptions.h"
#include "odb_Message.h"
#include "odb_Repository.h"
#include "odb_Sequence.h"
#include "odb_StepRepositoryBase.h"
#include "odb_String.h"
#include "odb_Version.h"
#include "odb_WipReporter.h"
#include "thr_GlobalSingleton.h"
#include "thr_ThreadSingleton.h"
#include "uti_LabelMap.h"
#include "wip_WIP.h"

#endif
