// Finding the handset's COM ports by its USB identity.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/devices.h"

/// The USB interfaces of a handset whose ports are kept: 0, 1 and 2.
constexpr int kPhoneInterfaces = 3;

/// The COM ports of one handset.
struct PhonePortRecord {
    std::string DeviceKey;                                  // the same for all interfaces of one handset
    std::array<uint32_t, kPhoneInterfaces> InterfacePort{}; // 0: none, or one above 255
    uint32_t DiagnosticPort = 0;                            // of interface 1, whatever its number; 0: none
};

/// What a look for the handset found.
struct PhoneSearch {
    int iHandsets = 0;       // accepted handsets that are attached
    unsigned char iPort = 0; // the diagnostic port of the first that has a usable one; 0: none has
    uint32_t iUnfitPort = 0; // when none has: a diagnostic port above 255; 0: there is none
};

/// SearchPhone looks for the handset to connect to: those without a usable diagnostic port are passed over.
/// A device tree that cannot be read has no handsets. No state, any thread.
PhoneSearch SearchPhone();

/// FindPhonePorts looks for accepted handsets among the present devices and writes three bytes per handset,
/// in the order in which their first interfaces were met (modems before plain ports): the COM ports of its
/// USB interfaces 0, 1 and 2; 0 for one that has no port, or one above 255, which no byte holds.
///   pPorts        the bytes
///   piDeviceCount out: handsets whose three bytes fit whole
///   piByteCount   in: capacity of pPorts; out: bytes written, a handset that does not fit included in part
/// Returns 1; or 0, with both counts as they were, when the device tree cannot be read. No state, any thread.
int FindPhonePorts(unsigned char* pPorts, int* piDeviceCount, int* piByteCount);

/// RecordPhoneInterface files a present device under its handset (a new record at the end for one that was
/// not met before, 128 at most) when it is a COM port of an accepted handset. Other devices, and those that
/// the system does not tell everything of, change nothing.
void RecordPhoneInterface(const PresentDevice& device, std::vector<PhonePortRecord>& phones);
