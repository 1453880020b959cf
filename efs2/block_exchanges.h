// One block of a file, read or written through a descriptor of the phone.
#pragma once

#include <cstddef>
#include <span>

#include "platform/types.h"

class CommandFrame;

/// The most bytes that one READ asks for, and that one WRITE carries.
constexpr size_t kEfs2ReadBlock = 1536;
constexpr size_t kEfs2WriteBlock = 512;

/// ReadOneBlock requests area.size() bytes (kEfs2ReadBlock at most) at an offset, once. False when no usable
/// response arrived: none at all, one that ends early, or one that claims more bytes than it carries or than
/// were requested. True with iErrorNo 0: area holds iBytesRead bytes, fewer than requested at the file's end.
/// True with another iErrorNo: the phone refused, and the rest is unchanged.
bool ReadOneBlock(CommandFrame& frame, LONG iDescriptor, DWORD iOffset, std::span<unsigned char> area,
                  DWORD& iBytesRead, DWORD& iErrorNo);

/// WriteOneBlock sends a block (kEfs2WriteBlock bytes at most, not empty) for an offset, up to kEfs2Attempts
/// times. True with iErrorNo 0: the phone accepted iBytesWritten bytes, at least one. True with another
/// iErrorNo: the last usable response refused. False when no response was usable; one that acknowledges
/// nothing, or more than was sent, is not. iBytesWritten and iErrorNo are unchanged then.
bool WriteOneBlock(CommandFrame& frame, LONG iDescriptor, DWORD iOffset, std::span<const unsigned char> block,
                   DWORD& iBytesWritten, DWORD& iErrorNo);
