// The records of the broadcast receiver's flows and channels.
#pragma once

#include "platform/types.h"

// In a response the fields of a record are in the order of their declaration, little-endian and without
// padding, each with the width it has here, except that the flow id has three bytes.

/// A flow that is being received.
struct mftypes_active_flow_info {
    DWORD FlowID;
    unsigned char MlcID;
    unsigned char StreamID;
    unsigned char StreamUsesBothLayers;
    unsigned char ByteInterleaveEnabled;
    unsigned char BindingType;
    unsigned char System;
};

/// Good and erased units before and after error correction, in the base and in the enhancement layer.
struct mftypes_mlc_plp_stats_type {
    // Physical-layer packets.
    DWORD BasePlpsPreRsGood;
    DWORD BasePlpsPreRsErasures;
    DWORD BasePlpsPostRsGood;
    DWORD BasePlpsPostRsErasures;
    DWORD EnhPlpsPreRsGood;
    DWORD EnhPlpsPreRsErasures;
    DWORD EnhPlpsPostRsGood;
    DWORD EnhPlpsPostRsErasures;
    // Code blocks.
    DWORD BaseCbsPreRsGood;
    DWORD BaseCbsPreRsErasures;
    DWORD BaseCbsPostRsGood;
    DWORD BaseCbsPostRsErasures;
    DWORD EnhCbsPreRsGood;
    DWORD EnhCbsPreRsErasures;
    DWORD EnhCbsPostRsGood;
    DWORD EnhCbsPostRsErasures;
};

/// A multiplexed logical channel (MLC) that is being received.
struct mftypes_active_mlc_info {
    unsigned short Base_FFT_Address;
    unsigned char TransmitMode;
    unsigned char OuterCode;
    unsigned short NumCbsInCurrentSF;
    mftypes_mlc_plp_stats_type PlpStats;
};

/// The position of an MLC in the present super-frame.
struct mftypes_mlc_dyn_params_type {
    unsigned char MlcID;
    unsigned short BaseFFTaddress;
    unsigned short SymbolOffset;
    unsigned short StartSlotOffset;
    unsigned char MinSlot;
    unsigned char MaxSlot;
    unsigned short NumSlots;
    unsigned short NumCodeBlocks;
};
