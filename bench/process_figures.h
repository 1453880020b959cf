// Figures that the system keeps about this process.
#pragma once

#include <cstdint>

/// How often the threads of this process have gone to sleep and woken.
uint64_t VoluntarySwitches();
/// Processor time of this process, and of the programs that it has started and waited for, in microseconds.
double OwnCpu_us();
double CpuOfChildren_us();
/// Memory in use now, and the peak since ForgetPeak, in MiB.
double Resident_MiB();
double Peak_MiB();
void ForgetPeak();
/// The most memory that another process has had in use, in MiB.
double PeakOf_MiB(int iProcess);
