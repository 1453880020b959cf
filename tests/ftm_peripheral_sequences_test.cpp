// Data in pieces, log records, and operations made of several commands.
#include <cstring>
#include <set>
#include <thread>

#include "ftm_rows.h"
#include "handset/state.h"
#include "link/log_codes.h"

namespace {

class FtmPeripheralSequencesTest : public FtmRowsTest {
protected:
    handset::State Phone() {
        handset::State copy;
        m_phone.phone.WithState([&](handset::State& state) { copy = state; });
        return copy;
    }
    void ChangePhone(const std::function<void(handset::Peripherals&)>& change) {
        m_phone.phone.WithState([&](handset::State& state) { change(state.peripherals); });
    }
    /// Sends log records with these payloads (the bytes after the time stamp) and waits until they are
    /// queued.
    void Queue(const std::vector<Bytes>& payloads) {
        for (const Bytes& payload : payloads)
            EXPECT_TRUE(m_phone.phone.EmitLog(kFtmLogCode, payload));
        EXPECT_TRUE(m_diag.IsPhoneConnected()); // the response arrives after the records
    }
};

// --- Data in pieces --------------------------------------------------------------------------------------

TEST_F(FtmPeripheralSequencesTest, PiecesThatDoNotMatchTheRequestAreRefused) {
    const std::pair<std::string, bool> cases[] = {
        {"04 03 02 01 03 00 0A 0B 0C", true},     {"04 03 02 01 02 00 0A 0B", true},
        {"04 03 02 01 04 00 0A 0B 0C 0D", false}, // larger than requested
        {"04 03 02 01 03 00 0A 0B", false},       // incomplete
        {"05 03 02 01 03 00 0A 0B 0C", false},    // another offset
    };
    for (const auto& [sPiece, bTaken] : cases) { // offset, size, data
        const Bytes piece = Hex(sPiece);
        Bytes expected(6, 0x77);
        if (bTaken)
            std::copy(piece.begin() + 6, piece.end(), expected.begin());
        Bytes data(6, 0x77);
        unsigned short iSize = 3;
        unsigned short iStatus = 9;
        const std::string sRequest = "4B 0B 0F 00 07 00 10 00 15 00 ";
        m_phone.phone.ClearRequests();
        m_phone.Answer("", Hex(sRequest + sPiece + " 00 00"));
        EXPECT_EQ(m_diag.FTM_CAMERA_GET_PICTURE(0x1020304, iSize, data.data(), iStatus), bTaken);
        EXPECT_EQ(iSize, bTaken ? piece.size() - 6 : 3) << sPiece;
        EXPECT_EQ(iStatus, 0);
        EXPECT_EQ(data, expected) << sPiece;
        EXPECT_EQ(m_phone.Requests(), Lines{sRequest + "04 03 02 01 03 00"});
    }
}

TEST_F(FtmPeripheralSequencesTest, TakingAndFetchingAPicture) {
    const Bytes picture = Pattern(10000);
    const FTM_Camera_PictureSettings settings = {1, 2, 640, 480, 176, 80, 1};
    ChangePhone([&](handset::Peripherals& phone) { phone.picture = picture; });
    for (const unsigned short iTransferSize : {700, 65535}) {
        m_phone.phone.ClearRequests();
        DWORD iSize = 0;
        unsigned short iStatus = 9;
        ASSERT_TRUE(m_diag.FTM_CAMERA_PerformTakePictureSequence(settings, iSize, iStatus));
        ASSERT_EQ(iSize, picture.size());
        EXPECT_TRUE(m_diag.IsCameraStarted());
        Bytes fetched(picture.size());
        EXPECT_TRUE(m_diag.FTM_CAMERA_GetEntirePicture(iSize, iTransferSize, fetched.data()));
        EXPECT_TRUE(fetched == picture);
        EXPECT_FALSE(m_diag.IsCameraStarted() || Phone().peripherals.isCameraOn);
        std::string sSteps;
        for (const Bytes& request : m_phone.phone.Requests())
            sSteps += static_cast<char>('0' + request.at(4));
        EXPECT_EQ(sSteps, "010293456" + std::string(iTransferSize == 700 ? 15 : 3, '7') + "1");
    }
}

TEST_F(FtmPeripheralSequencesTest, FailedPieceEndsThePicture) {
    // The camera is stopped, and nothing is written after the failed piece.
    for (const char* sThirdPiece : {"00 00", "0A 00 01 02"}) { // an empty piece; a truncated piece
        m_phone.phone.ClearRequests();
        m_phone.Answer(
            "4B 0B 0F 00 07 00 10 00 1C 00 14",
            Hex(std::string("4B 0B 0F 00 07 00 10 00 1C 00 14 00 00 00 ") + sThirdPiece + " 00 00"));
        ChangePhone([](handset::Peripherals& phone) { phone.isPictureTaken = true; });
        Bytes fetched(100, 0x77);
        EXPECT_FALSE(m_diag.FTM_CAMERA_GetEntirePicture(100, 10, fetched.data()));
        EXPECT_EQ(fetched[20], 0x77);
        EXPECT_EQ(m_phone.CountOf("4B 0B 0F 00 07"), 3);
        EXPECT_EQ(m_phone.CountOf("4B 0B 0F 00 01"), 1);
    }
}

TEST_F(FtmPeripheralSequencesTest, FetchingARecordingInPieces) {
    const Bytes recording = Pattern(5000);
    ChangePhone([&](handset::Peripherals& phone) { phone.recording = recording; });
    Bytes data;
    DWORD iSize = 0;
    const auto record = [&](DWORD iRoom, unsigned short iTransferSize) {
        m_phone.phone.ClearRequests();
        data.assign(6000, 0x77);
        iSize = iRoom;
        const bool bResult =
            m_diag.FTM_AUDIO_CapturePCMandTransferData(4, 1, iTransferSize, data.data(), iSize);
        EXPECT_TRUE(std::equal(data.begin(), data.begin() + iSize, recording.begin()));
        EXPECT_EQ(data[iSize], 0x77);
        EXPECT_FALSE(Phone().peripherals.isRecording);
        return std::tuple(bResult, iSize, m_phone.CountOf("4B 0B 0E 00 08"));
    };
    EXPECT_EQ(record(6000, 1024), std::tuple(true, 5000u, 5));
    EXPECT_EQ(m_phone.CountOf("4B 0B 0E 00 08 00 06 00 10 04 00 04 00 00 00 04"), 1);
    EXPECT_EQ(record(1500, 1000), std::tuple(true, 1500u, 2));
    EXPECT_EQ(record(6000, 6000), std::tuple(true, 5000u, 2)); // a response holds 4078 of its bytes
    EXPECT_EQ(record(6000, 0), std::tuple(false, 0u, 0));
    // A malformed piece does not keep the recording from being stopped.
    m_phone.Answer("4B 0B 0E 00 08 00 06 00 10 04 00 08",
                   Hex("4B 0B 0E 00 08 00 06 00 10 04 00 04 00 00 00 00"));
    EXPECT_EQ(record(6000, 1024), std::tuple(false, 2048u, 3));
}

// --- Log records -----------------------------------------------------------------------------------------

TEST_F(FtmPeripheralSequencesTest, WaitReturnsTheLastRecordOfItsType) {
    ASSERT_TRUE(m_diag.FTM_LOG_StartFTM_Log(0x1005));
    EXPECT_EQ(Phone().radio.logTypes, std::set<uint16_t>{0x1005});
    FTM2LogMessage message;
    unsigned short iSize = 9;
    Queue({Hex("06 10 01"), Hex("05 10 02 03"), Hex("05 10 04"), Hex("04 10 05")});
    EXPECT_TRUE(m_diag.FTM_LOG_WaitForNextLog(0x1005, &message, iSize, 0));
    EXPECT_EQ(iSize, 3 + FTM2LogMessage::kTail);
    EXPECT_EQ(message.aData[0], 4);
    DWORD iLeft = 0;
    EXPECT_FALSE(m_diag.DIAG_GetPhoneLogQueueSize(iLeft)); // the other records are discarded
    Queue({Hex("05"), {}, Hex("05 11")});
    EXPECT_FALSE(m_diag.FTM_LOG_WaitForNextLog(0x1005, &message, iSize, 0));
    EXPECT_EQ(iSize, 0);
    std::thread phone([this] {
        for (const char* sPayload : {"06 10", "07 10", "05 10 09"})
            m_phone.phone.EmitLog(kFtmLogCode, Hex(sPayload));
    });
    EXPECT_TRUE(m_diag.FTM_LOG_WaitForNextLog(0x1005, &message, iSize, 60000));
    EXPECT_EQ(message.aData[0], 9);
    phone.join();
    EXPECT_TRUE(m_diag.FTM_LOG_StopFTM_Log(0x1005));
    EXPECT_TRUE(Phone().radio.logTypes.empty());
    m_diag.ConfigureTimeOut(QMSL_TimeOut_SyncRequest, 30);
    m_phone.Misbehave(Action::Ignore, "73");
    EXPECT_FALSE(m_diag.FTM_LOG_StartFTM_Log(0x1005));
}

// --- Bluetooth -------------------------------------------------------------------------------------------

TEST_F(FtmPeripheralSequencesTest, BluetoothVersionAndStart) {
    Bluetooth_LocalVersion_struct version = {};
    ASSERT_TRUE(m_diag.BT_GetModuleVersion(version));
    EXPECT_EQ(std::memcmp(&version, Hex("04 0E 0C 01 01 10 00 04 01 02 03 1D 00 05 06").data(), 15), 0);
    EXPECT_EQ(Phone().peripherals.hciCommands, std::vector<Bytes>{Hex("01 01 10 00")});
    EXPECT_TRUE(Phone().radio.logTypes.empty());
    // An event that is one byte too short leaves the record unchanged.
    ChangePhone([](handset::Peripherals& phone) { phone.version.pop_back(); });
    Bluetooth_LocalVersion_struct untouched = {1, 2, 3, 4, 5};
    EXPECT_FALSE(m_diag.BT_GetModuleVersion(untouched));
    EXPECT_EQ(untouched.iSubversionHigh, 5);

    ChangePhone([](handset::Peripherals& phone) { phone.hciCommands.clear(); });
    EXPECT_TRUE(m_diag.FTM_BT_Enable_Bluetooth());
    EXPECT_EQ(Phone().peripherals.hciCommands,
              (std::vector<Bytes>{Hex("01 03 0C 00"), Hex("01 1A 0C 01 03"), Hex("01 03 18 00")}));
}

TEST_F(FtmPeripheralSequencesTest, MissingAndTooLongBluetoothEvents) {
    m_diag.ConfigureTimeOut(QMSL_TimeOut_SyncRequest, 200);
    const Bytes command = Hex("01 03 0C 00");
    Bytes event;
    const auto send = [&](unsigned short iLength) {
        event.assign(16, 0x77);
        const bool bResult =
            m_diag.FTM_BT_HCI_USER_CMD_WithEventResponse(command.data(), 4, event.data(), iLength, 150);
        EXPECT_TRUE(Phone().radio.logTypes.empty()); // the log is stopped in every case
        return std::pair(bResult, +iLength);
    };
    EXPECT_EQ(send(16), std::pair(true, 7));
    EXPECT_EQ(handset::ToHex(event).substr(0, 23), "04 0E 04 01 03 0C 00 77");
    EXPECT_EQ(send(6), std::pair(false, 7));
    m_phone.Answer("4B 0B 04", Hex("4B 0B 04 00")); // the command is accepted, but no event arrives
    EXPECT_EQ(send(16), std::pair(false, 0));
    m_phone.phone.ClearRequests();
    EXPECT_FALSE(m_diag.FTM_BT_HCI_USER_CMD(Bytes(4090).data(), 4090)); // too long
    EXPECT_EQ(m_phone.CountOf("4B 0B 04"), 0);
}

} // namespace
