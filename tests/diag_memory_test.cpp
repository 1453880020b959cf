// Reading and writing the phone's memory.
#include <algorithm>

#include "diag_fixture.h"

namespace {

template <class Value, int iCount>
std::string Peek(Diag_FTM& diag) {
    Value aValues[10];
    std::fill(std::begin(aValues), std::end(aValues), static_cast<Value>(0xEE));
    const bool bResult = diag.DIAG_MEMORY_PEEK_F(0x12345678, iCount, aValues);
    return Outcome(bResult, aValues[0], aValues[1], aValues[2], aValues[3], aValues[4]);
}

template <class Value, int iCount>
std::string Poke(Diag_FTM& diag) {
    const Value aValues[10] = {static_cast<Value>(0xAABBCCD1), static_cast<Value>(0xAABBCCD2), 3, 4, 5};
    return Outcome(diag.DIAG_MEMORY_POKE_F(0x12345678, iCount, aValues));
}

using Byte = unsigned char;
using Short = unsigned short;

class DiagMemory : public DiagTest {};

TEST_F(DiagMemory, PeekAndPokeOnTheWire) {
    const std::string sPeek = "QLIB_DIAG_MEMORY_PEEK_F-";
    Check(Peek<Byte, 10>, "02 78 56 34 12 04 00 00 00 00 00", "02 78 56 34 12 04 00 A1 A2 A3 A4 A5",
          "true a1 a2 a3 a4 ee", sPeek + "8bit(iAddress=0x12345678, iNumItems=10)");
    Check(Peek<Short, 3>, "03 78 56 34 12 02 00 00 00 00 00", "03 78 56 34 12 02 00 A1 A2 A3 A4",
          "true a2a1 a4a3 ee ee ee", sPeek + "16bit(iAddress=0x12345678, iNumItems=3)");
    Check(Peek<DWORD, 2>, "04 78 56 34 12 02 00 " + Times(8, "00"),
          "04 78 56 34 12 02 00 A1 A2 A3 A4 01 02 03 04", "true a4a3a2a1 4030201 ee ee ee",
          sPeek + "32bit(iAddress=0x12345678, iNumItems=2)");
    Check(Poke<Byte, 5>, "05 78 56 34 12 04 D1 D2 03 04", "05", "true",
          "QLIB_POKE-8bit(iAddress=0x12345678, iNumBytes=5, data[0]=0xD1)");
    Check(Poke<Short, 1>, "06 78 56 34 12 01 D1 CC 00 00", "06", "true", "");
    Check(Poke<Short, 3>, "06 78 56 34 12 02 D1 CC D2 CC", "06", "true", "");
    Check(Poke<DWORD, 1>, "07 78 56 34 12 01 D1 CC BB AA 00 00 00 00", "07", "true",
          "QLIB_POKE-32 bit(iAddress=0x12345678, iNumBytes=1, data[0]=0xAABBCCD1)");
}

TEST_F(DiagMemory, ShortResponsesYieldTheirCompleteValues) {
    CheckAnswers({{Peek<Byte, 4>, "02 78 56 34 12 04 00 A1 A2", "true a1 a2 ee ee ee"},
                  {Peek<Short, 2>, "03 78 56 34 12 02 00 A1 A2 A3", "true a2a1 ee ee ee ee"},
                  {Peek<Byte, 4>, "02 78 56 34 12 04 00", "false ee ee ee ee ee"},
                  {Peek<DWORD, 2>, "04 78 56 34 12 02 00 A1 A2 A3", "true ee ee ee ee ee"}});
}

} // namespace
