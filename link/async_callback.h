// The callback that sees received packets.
#pragma once

/// Receives every packet of at least two bytes (iLength bytes with the two FCS bytes), on the delivery
/// thread.
using AsyncMessageCallBack = void (*)(unsigned short iLength, unsigned char* pPacket, void* pUserData);
