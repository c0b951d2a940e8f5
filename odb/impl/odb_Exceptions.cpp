#include "odb_Exceptions.h"

const uti_LabelRow<odb_ExceptionsEnm> uti_LabelTable<odb_ExceptionsEnm, 1>::rows[] = {
    {"The database is from a previous version of KORVEL. \nRun korvel -upgrade -job "
     "<newFileName> -odb <oldOdbFileName> to upgrade it.",
     "odb_Exceptions_MSGID_1", odb_Exceptions_PREVIOUS_VERSION},
    {"%1$s is from a more recent version of KORVEL.\n\n The current KORVEL installation must be "
     "upgraded before this output database can be opened.",
     "odb_Exceptions_MSGID_2", odb_Exceptions_NEWER_VERSION},
    {"cannot convert database %1$s, %2$s", "odb_Exceptions_MSGID_3",
     odb_Exceptions_CONVERSION_FAILED},
    {"isUpgradeRequiredForOdb failed, %1$s", "odb_Exceptions_MSGID_4",
     odb_Exceptions_UPGRADE_CHECK_FAILED},
    {"Not enough disk space to create the converted file %1$s. \nPlease free some disk space and "
     "rerun the upgrade or run \nkorvel -upgrade -job <newFileName> -odb <oldOdbFileName> \nto "
     "upgrade the file to a different disk drive",
     "odb_Exceptions_MSGID_5", odb_Exceptions_NO_DISK_SPACE},
    {"%1$s is an old format ODB file.\nODB files generated with an KORVEL analysis \nversion "
     "prior to 6.1-1 cannot be opened with \nthe current version of KORVEL/Viewer. \nPlease "
     "rerun the analysis using the current \nKORVEL analysis version.",
     "odb_Exceptions_MSGID_6", odb_Exceptions_OLD_FORMAT},
    {"The database file %1$s has version %2$i. \nThis version number is marked as an invalid "
     "database version. \nOdb upgrade is not supported for this database",
     "odb_Exceptions_MSGID_7", odb_Exceptions_INVALID_VERSION},
    {nullptr, nullptr, {}}};
