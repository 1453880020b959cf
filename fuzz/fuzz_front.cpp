// The file manager's entry points: paths, verbs and arguments from a hostile host, responses from a hostile
// handset.
#include <fstream>

#include "hostile_phone.h"
#include "plugin/entry_points.h"
#include "plugin/front.h"
#include "plugin/listing.h"
#include "plugin/transfer_progress.h"
#include "portserver/port_server.h"
#include "qlib/call_layer.h"

namespace {

Input* pInput = nullptr;
bool bAbort = false;

/// The handset, reached through a port server, so that no line is needed.
class Phone : public PortServer {
public:
    bool attach(const std::string&, const std::shared_ptr<PacketEvents>& pEvents) override {
        m_pEvents = pEvents;
        return true;
    }
    bool sendSync(std::span<const unsigned char> request, DWORD,
                  std::vector<unsigned char>& response) override {
        return TakeResponse(*pInput, request, response,
                            [this](std::span<unsigned char> packet) { m_pEvents->packetReceived(packet); });
    }
    bool selectPort(const std::string&, DWORD) override { return true; }
    std::vector<std::string> portNames() override { return {}; }
    std::vector<PhoneEntry> phones() override { return {}; }
    bool readNv(unsigned short, std::vector<unsigned char>&) override { return false; }
    bool writeNv(unsigned short, std::span<const unsigned char>) override { return false; }
    bool control(PhoneControl, const std::string&, DWORD&) override { return false; }
    ResetOutcome reset(DWORD) override { return ResetOutcome::NeverReset; }
    bool begin(ServerTask, const std::vector<std::string>&, const std::shared_ptr<TaskEvents>&) override {
        return false;
    }
    void abort() override {}

private:
    std::shared_ptr<PacketEvents> m_pEvents;
};

void SetUpHost() {
    setenv("QUILLET_DEVICE_ROOT", "/nonexistent", 1);
    TheFront().state.ProgressProc = [](int, char*, char*, int iPercent) {
        Require(iPercent >= 0 && iPercent <= 100);
        return bAbort ? 1 : 0;
    };
    TheFront().state.LogProc = [](int, int, char* sText) { Require(std::strlen(sText) > 0); };
    TheFront().state.RequestProc = [](int, int, char*, char* sText, char*, int) -> BOOL {
        return *sText != '\0';
    };
}

void Connect() {
    AttachPortServer([] { return std::make_shared<Phone>(); });
    QLIB_SetQpstMode(1);
    TheFront().state.ContextHandle = QLIB_ConnectPort(1);
    QLIB_ConfigureEfsCallbacks(TheFront().state.ContextHandle, TransferProgress, OnDirEntry);
}

/// The host's buffer, with the guaranteed size and no more.
std::unique_ptr<char[]> HostText(const std::string& sText) {
    auto pText = Area<char>(std::max<size_t>(sText.size() + 1, MAX_PATH));
    sText.copy(pText.get(), sText.size());
    return pText;
}

void Execute(Input& input, char* sPath) {
    static const char* const kVerbs[] = {"open", "properties", "quote cd ", "quote ln ", "quote ", ""};
    const size_t iVerb = input.Byte() % std::size(kVerbs);
    std::string sVerb = kVerbs[iVerb];
    if (iVerb >= 2)
        sVerb += input.Text();
    // The properties of the plug-in itself show the banner, which takes seconds.
    if (sVerb != "properties" || std::strlen(sPath) > 1)
        FsExecuteFile(nullptr, sPath, HostText(sVerb).get());
}

void List(char* sPath) {
    const auto pFound = std::make_unique<WIN32_FIND_DATAA>();
    const HANDLE hListing = FsFindFirst(sPath, pFound.get());
    for (bool bFound = true; bFound; bFound = FsFindNext(hListing, pFound.get()) != 0)
        Require(std::strlen(pFound->cFileName) < sizeof pFound->cFileName);
    FsFindClose(hListing);
}

void DoOne(Input& input) {
    constexpr const char* kLocalName = "fuzz-file";
    const unsigned iWhat = input.Byte() % 6;
    const int iFlags = input.Byte();
    const auto pPath = HostText(input.Text());
    char* const sPath = pPath.get();
    bAbort = (iFlags & 0x80) != 0;
    switch (iWhat) {
        case 0:
            return Execute(input, sPath);
        case 1:
            return List(sPath);
        case 2:
            std::remove(kLocalName);
            FsGetFile(sPath, HostText(kLocalName).get(), iFlags, nullptr);
            return;
        case 3:
            std::ofstream(kLocalName) << std::string(static_cast<size_t>(iFlags) * 20, 'x');
            FsPutFile(HostText(kLocalName).get(), sPath, iFlags);
            return;
        case 4:
            FsRenMovFile(sPath, HostText(input.Text()).get(), iFlags & 1, iFlags & 2, nullptr);
            return;
        default:
            FsStatusInfo(sPath, FS_STATUS_START, iFlags);
            FsMkDir(HostText(sPath).get());
            FsDeleteFile(HostText(sPath).get());
            FsRemoveDir(sPath);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t iSize) {
    SetUpHost();
    Input input(pData, iSize);
    pInput = &input;
    if (input.Byte() % 8 != 0)
        Connect();
    for (int i = 0; i < 6 && !input.IsEmpty(); ++i)
        DoOne(input);
    FsDisconnect(nullptr);
    return 0;
}
