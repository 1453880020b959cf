// The callback for received packets.
#pragma once

/// Called on the delivery thread with every received packet of at least two bytes; iLength includes the two
/// FCS bytes.
using AsyncMessageCallBack = void (*)(unsigned short iLength, unsigned char* pPacket, void* pUserData);
