// What the broadcast receiver tells about its flows and channels, as records and as they stand in an answer.
#pragma once

#include "platform/types.h"

// In an answer the fields of a record stand in the order in which they are declared, little-endian and
// without gaps, each as wide as it is here; the flow id takes three bytes.

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

/// Where an MLC stands in the present super-frame.
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
