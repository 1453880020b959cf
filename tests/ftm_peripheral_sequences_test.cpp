// Lists and records of the broadcast receiver, data in pieces, log records, and what is made of several
// commands.
#include <cstring>
#include <set>
#include <thread>

#include "eventually.h"
#include "ftm_rows.h"
#include "handset/state.h"

namespace {

class FtmPeripheralSequencesTest : public FtmRowsTest {
protected:
    handset::Peripherals Phone() {
        handset::Peripherals copy;
        m_phone.phone.WithState([&](handset::State& state) { copy = state.peripherals; });
        return copy;
    }
    std::set<uint16_t> LogTypes() {
        std::set<uint16_t> copy;
        m_phone.phone.WithState([&](handset::State& state) { copy = state.radio.logTypes; });
        return copy;
    }
    void ChangePhone(const std::function<void(handset::Peripherals&)>& change) {
        m_phone.phone.WithState([&](handset::State& state) { change(state.peripherals); });
    }
    /// Sends log records (payloads behind the time stamp) and waits until they are queued.
    void Queue(const std::vector<Bytes>& payloads) {
        for (const Bytes& payload : payloads)
            EXPECT_TRUE(m_phone.phone.EmitLog(kFtmLogCode, payload));
        EXPECT_TRUE(Eventually([&] {
            DWORD iWaiting = 0;
            m_diag.DIAG_GetPhoneLogQueueSize(iWaiting);
            return iWaiting >= payloads.size();
        }));
    }
};

// --- Data in pieces --------------------------------------------------------------------------------------

TEST_F(FtmPeripheralSequencesTest, PiecesThatWereNotAskedForAreRefused) {
    const struct {
        const char* sPiece; // offset, size, data; a picture's status follows
        const char* sStatus;
        bool bPicture;
        bool bRecording;
        unsigned short iSize;
    } cases[] = {
        {"04 03 02 01 03 00 0A 0B 0C", " 00 00", true, true, 3},
        {"04 03 02 01 02 00 0A 0B", " 00 00", true, true, 2},
        {"04 03 02 01 00 00", " 00 00", true, true, 0},
        {"04 03 02 01 04 00 0A 0B 0C 0D", " 00 00", false, false, 3}, // larger
        {"04 03 02 01 03 00 0A 0B", " 00 00", false, false, 3},       // not all there
        {"04 03 02 01 FF FF 0A 0B 0C", " 00 00", false, false, 3},
        {"05 03 02 01 03 00 0A 0B 0C", " 00 00", false, false, 3}, // of another place
        {"04 03 02 01 03 00 0A 0B 0C", " 01 00", false, true, 3},  // refused
        {"04 03 02 01 03", "", false, false, 3},
        {"", "", false, false, 3},
    };
    for (const auto& test : cases) {
        const Bytes piece = Hex(test.sPiece);
        const auto check = [&](bool bResult, unsigned short iSize, const Bytes& data, bool bExpected) {
            EXPECT_EQ(bResult, bExpected) << test.sPiece << test.sStatus;
            EXPECT_EQ(iSize, bExpected ? test.iSize : 3) << test.sPiece;
            Bytes expected(6, 0x77);
            if (bExpected)
                std::copy_n(piece.begin() + 6, test.iSize, expected.begin());
            EXPECT_EQ(data, expected) << test.sPiece;
        };
        Bytes data(6, 0x77);
        unsigned short iSize = 3;
        unsigned short iStatus = 0;
        m_phone.phone.ClearRequests();
        m_phone.Answer("", Hex(std::string("4B 0B 0F 00 07 00 10 00 15 00 ") + test.sPiece + test.sStatus));
        bool bResult = m_diag.FTM_CAMERA_GET_PICTURE(0x1020304, iSize, data.data(), iStatus);
        check(bResult, iSize, data, test.bPicture);
        data.assign(6, 0x77);
        iSize = 3;
        // The recording's answers carry no status: cut off where it would be.
        m_phone.Answer("", Hex(std::string("4B 0B 0E 00 08 00 06 00 13 00 ") + test.sPiece));
        bResult = m_diag.FTM_AUDIO_GET_PCM_CAPTURE_DATA(0x1020304, iSize, data.data());
        check(bResult, iSize, data, test.bRecording);
        EXPECT_EQ(m_phone.Requests(),
                  (std::vector<std::string>{"4B 0B 0F 00 07 00 10 00 15 00 04 03 02 01 03 00",
                                            "4B 0B 0E 00 08 00 06 00 13 00 04 03 02 01 03 00"}));
    }
}

TEST_F(FtmPeripheralSequencesTest, PictureIsTakenAndFetched) {
    const Bytes picture = Pattern(10000);
    const FTM_Camera_PictureSettings settings = {1, 2, 640, 480, 176, 80, 1};
    for (const bool bWasOn : {false, true}) {
        ChangePhone([&](handset::Peripherals& phone) {
            phone.picture = picture;
            phone.isCameraOn = bWasOn;
        });
        for (const unsigned short iTransferSize : {700, 4076, 65535}) {
            m_phone.phone.ClearRequests();
            DWORD iSize = 0;
            unsigned short iStatus = 9;
            ASSERT_TRUE(m_diag.FTM_CAMERA_PerformTakePictureSequence(settings, iSize, iStatus));
            EXPECT_EQ(iStatus, 0);
            ASSERT_EQ(iSize, picture.size());
            EXPECT_TRUE(m_diag.IsCameraStarted());
            Bytes fetched(picture.size());
            EXPECT_TRUE(m_diag.FTM_CAMERA_GetEntirePicture(iSize, iTransferSize, fetched.data()));
            EXPECT_TRUE(fetched == picture);
            EXPECT_FALSE(m_diag.IsCameraStarted());
            EXPECT_FALSE(Phone().isCameraOn);
            std::string sSteps;
            for (const Bytes& request : m_phone.phone.Requests())
                sSteps += static_cast<char>('0' + request.at(4));
            const size_t iPieces = iTransferSize == 700 ? 15 : 3;
            EXPECT_EQ(sSteps, "010293456" + std::string(iPieces, '7') + "1");
        }
    }
}

TEST_F(FtmPeripheralSequencesTest, PictureThatFailsEndsTheSequence) {
    const FTM_Camera_PictureSettings settings = {1, 2, 640, 480, 176, 80, 1};
    DWORD iSize = 77;
    unsigned short iStatus = 0;
    ChangePhone([](handset::Peripherals& phone) { phone.cameraStart = 9; });
    EXPECT_FALSE(m_diag.FTM_CAMERA_PerformTakePictureSequence(settings, iSize, iStatus));
    EXPECT_EQ(iStatus, 9);
    EXPECT_EQ(m_phone.CountOf("4B 0B 0F 00"), 3); // started, stopped, started
    ChangePhone([](handset::Peripherals& phone) { phone.cameraStart = 0; });
    m_phone.Answer("4B 0B 0F 00 04 00", Hex("4B 0B 0F 00 04 00 00 00 0C 00 03 00"));
    EXPECT_FALSE(m_diag.FTM_CAMERA_PerformTakePictureSequence(settings, iSize, iStatus));
    EXPECT_EQ(iStatus, 3);
    EXPECT_EQ(iSize, 77u);
    EXPECT_EQ(m_phone.CountOf("4B 0B 0F 00 05 00"), 0);

    // The camera is stopped all the same; nothing is written behind the piece that failed.
    const struct {
        const char* sThirdPiece;
        unsigned short iTransferSize;
        int iPieces;
    } cases[] = {{"4B 0B 0F 00 07 00 10 00 1C 00 14 00 00 00 00 00 00 00", 10, 3}, // no progress
                 {"4B 0B 0F 00 07 00 10 00 1C 00 14 00 00 00 0A 00 01 02 00 00", 10, 3},
                 {"", 0, 0}};
    for (const auto& test : cases) {
        m_phone.phone.ClearRequests();
        m_phone.Answer("4B 0B 0F 00 07 00 10 00 1C 00 14", Hex(test.sThirdPiece));
        ChangePhone([](handset::Peripherals& phone) { phone.isPictureTaken = true; });
        Bytes fetched(100, 0x77);
        EXPECT_FALSE(m_diag.FTM_CAMERA_GetEntirePicture(100, test.iTransferSize, fetched.data()));
        EXPECT_EQ(fetched[20], 0x77);
        EXPECT_EQ(m_phone.CountOf("4B 0B 0F 00 07"), test.iPieces);
        EXPECT_EQ(m_phone.CountOf("4B 0B 0F 00 01"), 1);
    }
}

TEST_F(FtmPeripheralSequencesTest, RecordingIsFetchedInPieces) {
    const Bytes recording = Pattern(5000);
    ChangePhone([&](handset::Peripherals& phone) { phone.recording = recording; });
    const struct {
        DWORD iRoom;
        unsigned short iTransferSize;
        DWORD iRead;
        int iPieces;
    } cases[] = {{6000, 1024, 5000, 5}, {6000, 1000, 5000, 6}, {1500, 1000, 1500, 2}, {0, 10, 0, 0}};
    for (const auto& test : cases) {
        m_phone.phone.ClearRequests();
        Bytes data(6000, 0x77);
        DWORD iSize = test.iRoom;
        EXPECT_TRUE(m_diag.FTM_AUDIO_CapturePCMandTransferData(4, 1, test.iTransferSize, data.data(), iSize));
        EXPECT_EQ(iSize, test.iRead);
        EXPECT_TRUE(std::equal(data.begin(), data.begin() + iSize, recording.begin()));
        EXPECT_EQ(data[iSize], 0x77);
        EXPECT_EQ(m_phone.CountOf("4B 0B 0E 00 08"), test.iPieces);
        EXPECT_FALSE(Phone().isRecording);
    }
    Bytes data(6000);
    DWORD iSize = 6000;
    EXPECT_FALSE(m_diag.FTM_AUDIO_CapturePCMandTransferData(4, 0, 0, data.data(), iSize));
    EXPECT_EQ(iSize, 0u);
    // The recording is stopped although a piece of it is broken.
    iSize = 6000;
    m_phone.Answer("4B 0B 0E 00 08 00 06 00 10 04 00 08",
                   Hex("4B 0B 0E 00 08 00 06 00 10 04 00 04 00 00 00 00"));
    EXPECT_FALSE(m_diag.FTM_AUDIO_CapturePCMandTransferData(4, 0, 1024, data.data(), iSize));
    EXPECT_EQ(iSize, 2048u);
    EXPECT_FALSE(Phone().isRecording);
}

// --- Log records -----------------------------------------------------------------------------------------

TEST_F(FtmPeripheralSequencesTest, WaitKeepsTheLastRecordOfItsType) {
    ASSERT_TRUE(m_diag.FTM_LOG_StartFTM_Log(0x1005));
    EXPECT_EQ(LogTypes(), std::set<uint16_t>{0x1005});
    const Bytes whole = Pattern(4076);
    Bytes longest = Hex("05 10");
    longest.insert(longest.end(), whole.begin(), whole.end());
    const struct {
        std::vector<Bytes> payloads;
        Bytes found;
    } cases[] = {
        {{Hex("05 10 01")}, Hex("05 10 01")},
        {{Hex("06 10 01"), Hex("05 10 02 03"), Hex("05 10 04"), Hex("04 10 05")}, Hex("05 10 04")},
        {{Hex("05 10")}, Hex("05 10")},
        {{Hex("05"), {}, Hex("05 11")}, {}},
        {{longest}, longest},
    };
    for (const auto& test : cases) {
        Queue(test.payloads);
        FTM2LogMessage message;
        std::memset(&message, 0x77, sizeof message);
        unsigned short iSize = 9;
        EXPECT_EQ(m_diag.FTM_LOG_WaitForNextLog(0x1005, &message, iSize, 0), !test.found.empty());
        const size_t iFound = test.found.size();
        EXPECT_EQ(iSize, iFound == 0 ? 0 : iFound + FTM2LogMessage::kTail);
        EXPECT_TRUE(
            std::equal(test.found.begin(), test.found.end(), reinterpret_cast<const uint8_t*>(&message)));
        EXPECT_TRUE(m_log.Has(LOG_RET, std::string("QLIB_FTM_LOG_WaitForNextLog( ) -- Log code found: ") +
                                           (iFound == 0 ? "NO" : "YES")));
        DWORD iLeft = 0;
        EXPECT_FALSE(m_diag.DIAG_GetPhoneLogQueueSize(iLeft)); // the others are lost
    }
    Queue({Hex("05 10 01")});
    EXPECT_TRUE(m_diag.FTM_LOG_StopFTM_Log(0x1005));
    FTM2LogMessage message;
    unsigned short iSize = 0;
    EXPECT_FALSE(m_diag.FTM_LOG_WaitForNextLog(0x1005, &message, iSize, 30));
    EXPECT_TRUE(LogTypes().empty());
    EXPECT_EQ(m_log.Of(LOG_FN).back(), "QLIB_FTM_LOG_WaitForNextLog( iLogCode = 4101, iTimeOut_ms = 30)");
}

TEST_F(FtmPeripheralSequencesTest, WaitEndsWithTheRecord) {
    ASSERT_TRUE(m_diag.FTM_LOG_StartFTM_Log(0x1005));
    std::thread phone([this] {
        for (const char* sPayload : {"06 10", "07 10", "05 10 09"})
            m_phone.phone.EmitLog(kFtmLogCode, Hex(sPayload));
    });
    FTM2LogMessage message;
    unsigned short iSize = 0;
    EXPECT_TRUE(m_diag.FTM_LOG_WaitForNextLog(0x1005, &message, iSize, 60000));
    EXPECT_EQ(message.aData[0], 9);
    phone.join();
}

TEST_F(FtmPeripheralSequencesTest, LogIsNotStartedWhenAStepFails) {
    m_diag.ConfigureTimeOut(QMSL_TimeOut_SyncRequest, 30);
    for (const char* sIgnored : {"4B 0B 09", "73"}) {
        m_phone.Misbehave(Action::Ignore, sIgnored, 10);
        EXPECT_FALSE(m_diag.FTM_LOG_StartFTM_Log(0x1005)) << sIgnored;
        m_phone.phone.Behave();
    }
    m_phone.Misbehave(Action::Ignore, "4B 0B 09");
    EXPECT_FALSE(m_diag.FTM_LOG_StopFTM_Log(0x1005));
}

// --- Bluetooth -------------------------------------------------------------------------------------------

TEST_F(FtmPeripheralSequencesTest, BluetoothVersionIsTheChipsEvent) {
    Bluetooth_LocalVersion_struct version = {};
    ASSERT_TRUE(m_diag.BT_GetModuleVersion(version));
    EXPECT_EQ(std::memcmp(&version, Hex("04 0E 0C 01 01 10 00 04 01 02 03 1D 00 05 06").data(), 15), 0);
    EXPECT_EQ(Phone().hciCommands, std::vector<Bytes>{Hex("01 01 10 00")});
    EXPECT_TRUE(LogTypes().empty());
    for (const char* sStep :
         {"DIAG_ClearPhoneLogQueue", "FTM_BT_HCI_USER_CMD", "FTM_BT_HCI_USER_CMD_WithEventResponse"})
        EXPECT_TRUE(m_log.Has(LOG_FN, std::string("    ") + sStep + " = PASS")) << sStep;
    // An event that is one byte too short leaves the record alone.
    m_log.Clear();
    ChangePhone([](handset::Peripherals& phone) { phone.version.pop_back(); });
    Bluetooth_LocalVersion_struct untouched = {1, 2, 3, 4, 5};
    EXPECT_FALSE(m_diag.BT_GetModuleVersion(untouched));
    EXPECT_EQ(untouched.iSubversionHigh, 5);
    EXPECT_TRUE(m_log.Has(LOG_RET, "    Size of bluetooth log was incorrect: 14"));
}

TEST_F(FtmPeripheralSequencesTest, BluetoothEventsThatDoNotComeOrFit) {
    m_diag.ConfigureTimeOut(QMSL_TimeOut_SyncRequest, 200);
    const Bytes command = Hex("01 03 0C 00");
    unsigned char aEvent[16];
    const auto send = [&](unsigned short iRoom) {
        std::memset(aEvent, 0x77, sizeof aEvent);
        unsigned short iLength = iRoom;
        const bool bResult =
            m_diag.FTM_BT_HCI_USER_CMD_WithEventResponse(command.data(), 4, aEvent, iLength, 150);
        return std::pair(bResult, iLength);
    };
    EXPECT_EQ(send(16), std::pair(true, static_cast<unsigned short>(7)));
    EXPECT_EQ(std::memcmp(aEvent, Hex("04 0E 04 01 03 0C 00 77").data(), 8), 0);
    EXPECT_EQ(send(6), std::pair(false, static_cast<unsigned short>(7)));
    EXPECT_EQ(aEvent[0], 0x77);
    m_phone.Answer("4B 0B 04", Hex("4B 0B 04 00")); // taken, but the chip says nothing
    EXPECT_EQ(send(16), std::pair(false, static_cast<unsigned short>(0)));
    m_phone.Misbehave(Action::Ignore, "4B 0B 04");
    EXPECT_EQ(send(16), std::pair(false, static_cast<unsigned short>(0)));
    EXPECT_TRUE(LogTypes().empty()); // the log was stopped in every case
    m_phone.Misbehave(Action::Ignore, "4B 0B 09");
    m_phone.phone.ClearRequests();
    EXPECT_EQ(send(16), std::pair(false, static_cast<unsigned short>(0)));
    EXPECT_EQ(m_phone.CountOf("4B 0B 04"), 0);
    const Bytes tooLong(4090);
    EXPECT_FALSE(m_diag.FTM_BT_HCI_USER_CMD(tooLong.data(), 4090));
    EXPECT_EQ(m_phone.CountOf("4B 0B 04"), 0);
}

TEST_F(FtmPeripheralSequencesTest, BluetoothIsEnabledInThreeSteps) {
    const std::vector<Bytes> steps = {Hex("01 03 0C 00"), Hex("01 1A 0C 01 03"), Hex("01 03 18 00")};
    EXPECT_TRUE(m_diag.FTM_BT_Enable_Bluetooth());
    EXPECT_EQ(Phone().hciCommands, steps);
    m_diag.ConfigureTimeOut(QMSL_TimeOut_SyncRequest, 30);
    m_phone.Misbehave(Action::Ignore, "4B 0B 04", 1, 0, 1);
    m_phone.phone.ClearRequests();
    EXPECT_FALSE(m_diag.FTM_BT_Enable_Bluetooth());
    EXPECT_EQ(m_phone.CountOf("4B 0B 04"), 2);
}

} // namespace
