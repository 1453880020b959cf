// The commands of qdiag.
#pragma once

#include "common/program.h"

namespace tools::qdiag {

void EfsLsCommand(const Job& job);      // efs/ls.cpp
void EfsStatCommand(const Job& job);    // efs/stat.cpp
void EfsDfCommand(const Job& job);      // efs/space.cpp
void EfsBackupCommand(const Job& job);  // archive/backup.cpp
void EfsRestoreCommand(const Job& job); // archive/restore.cpp

void InfoCommand(const Job& job);      // info.cpp
void NvReadCommand(const Job& job);    // nv.cpp
void NvWriteCommand(const Job& job);   // nv.cpp
void NvBackupCommand(const Job& job);  // nv_backup.cpp
void NvRestoreCommand(const Job& job); // nv_restore.cpp
void LogCommand(const Job& job);       // log.cpp
void ReplayCommand(const Job& job);    // replay.cpp
void PortsCommand(const Job& job);     // ports.cpp

} // namespace tools::qdiag
