// Figures that the system keeps about this process.
#pragma once

#include <cstdint>

/// How often the threads of this process have gone to sleep and woken.
uint64_t VoluntarySwitches();
/// Memory in use now, and the peak since ForgetPeak, in MiB.
double Resident_MiB();
double Peak_MiB();
void ForgetPeak();
/// The most memory that another process has had in use, in MiB.
double PeakOf_MiB(int iProcess);
