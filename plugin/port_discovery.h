// Finding the handset's COM ports by its USB identity.
#pragma once

/// FindPhonePorts looks for accepted handsets among the present devices and writes three bytes per handset,
/// in the order in which their first interfaces were met (modems before plain ports): the COM ports of its
/// USB interfaces 0, 1 and 2; 0 for one that has no port, or one above 255, which no byte holds.
///   pPorts        the bytes
///   piDeviceCount out: handsets whose three bytes fit whole
///   piByteCount   in: capacity of pPorts; out: bytes written, a handset that does not fit included in part
/// Returns 1; or 0, with both counts as they were, when the device tree cannot be read. No state, any thread.
int FindPhonePorts(unsigned char* pPorts, int* piDeviceCount, int* piByteCount);
