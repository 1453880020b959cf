// Finding the COM ports of phones by their USB identity.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/devices.h"

/// The number of USB interfaces of a phone whose ports are kept: 0, 1 and 2.
constexpr int kPhoneInterfaces = 3;

/// The COM ports of one phone.
struct PhonePortRecord {
    std::string DeviceKey;                                  // the same for all interfaces of one phone
    std::array<uint32_t, kPhoneInterfaces> InterfacePort{}; // 0: none, or above 255
    uint32_t DiagnosticPort = 0;                            // of interface 1, any number; 0: none
};

/// The result of a search for phones.
struct PhoneSearch {
    int iPhones = 0;            // accepted phones that are attached
    unsigned char iPort = 0;    // the first usable diagnostic port; 0: none
    uint32_t iPortAbove255 = 0; // if none is usable: a diagnostic port above 255; 0: none
};

/// Searches for the phone to connect to. Phones without a usable diagnostic port are skipped. If the device
/// tree cannot be read, no phone is found. No state, any thread.
PhoneSearch SearchPhone();

/// Searches for accepted phones among the present devices and writes three bytes per phone, in the order in
/// which their first interfaces are listed (modems before other ports): the COM ports of its USB interfaces
/// 0, 1 and 2, or 0 for an interface without a port or with one above 255.
///   pPorts        the bytes
///   piDeviceCount out: phones whose three bytes all fit
///   piByteCount   in: capacity of pPorts; out: bytes written, including those of a phone that fits in part
/// Returns 1. Returns 0, with both counts unchanged, when the device tree cannot be read. No state, any
/// thread.
int FindPhonePorts(unsigned char* pPorts, int* piDeviceCount, int* piByteCount);

/// Adds a present device to the record of its phone when it is a COM port of an accepted phone. A new phone
/// is appended, up to 128. Other devices, and those that the system describes only in part, are ignored.
void RecordPhoneInterface(const PresentDevice& device, std::vector<PhonePortRecord>& phones);
