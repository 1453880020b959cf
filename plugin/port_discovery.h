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
    std::array<uint32_t, kPhoneInterfaces> InterfacePort{}; // 0: none
};

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
