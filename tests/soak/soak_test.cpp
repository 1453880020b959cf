// The soak: random operations of a file manager on a handset that misbehaves in every way at random. A model
// tells after each operation what the phone may hold.
//
// What the wire cannot tell is left out. The client knows an answer by its first byte alone, so no late or
// doubled answer of a file command may reach a later request. STAT and RENAME are read from their end: more
// bytes there, and less than an error number, are taken for what they are not. A refused STAT says that
// nothing is there.

#include <chrono>
#include <iostream>
#include <random>
#include <sstream>

#include "eventually.h"
#include "host_fixture.h"
#include "line_tap.h"
#include "tree.h"

namespace {

/// It ends after so many operations or seconds, whichever comes first; the same seed makes the same
/// operations and faults again.
struct {
    uint64_t iSeed = 1;
    uint64_t iOperations = 500;
    uint64_t iSeconds = 24 * 60 * 60;
} options;

using Clock = std::chrono::steady_clock;
using handset::Errnum;
using handset::FileSystem;

// File commands by their numbers; other requests.
constexpr int kOther = 0;
constexpr int kOpenCommand = 2;
constexpr int kLinkCommand = 6;
constexpr int kUnlinkCommand = 8;
constexpr int kRemoveFolderCommand = 10;
constexpr int kStatCommand = 15;
constexpr int kRenameCommand = 14;

/// The number of a file command; kOther for other requests.
int CommandOf(const Bytes& request) {
    return handset::BeginsWith(request, {0x4B, 0x13}) ? request.at(2) : kOther;
}

size_t CountIn(const char* sFolder) {
    const std::filesystem::directory_iterator entries(sFolder);
    return static_cast<size_t>(std::distance(begin(entries), end(entries)));
}

/// What an operation does, what it does to a phone that behaves, and what else may come of it.
struct Step {
    std::string sText;
    std::function<bool()> act;              // true: reported as done
    std::function<bool(FileSystem&)> model; // true: to be reported as done
    int iBlind = kOther;                    // the command whose refusal does not show in the report
    bool bMayAbort = false;                 // the report of a phone that behaves is open
    std::function<bool(const Tree& now)> isPartial = [](const Tree&) { return false; };
};

class Soak : public HostTest {
protected:
    Soak() : m_random(options.iSeed) {
        m_phone.phone.SetRecordLimit(0);
        m_phone.phone.WithFiles([](FileSystem& files) { files.SetOpenLimit(100000); });
        Connect();
        TheLineTap().goesUnanswered = [this](const Bytes& request) { return Disturb(request); };
    }
    ~Soak() override { TheLineTap().goesUnanswered = nullptr; }

    unsigned Dice(unsigned iSides) { return static_cast<unsigned>(m_random() % iSides); }
    template <class T>
    T OneOf(const std::vector<T>& all) {
        return all[Dice(static_cast<unsigned>(all.size()))];
    }
    std::string AnyFolder() { return OneOf<std::string>({"", "/a", "/b", "/a/c"}); }
    std::string AnyPath() {
        return AnyFolder() + OneOf<std::string>({"/f", "/a file.bin", "/a", "/b", "/c"});
    }
    Bytes AnyBytes(unsigned iSize) {
        Bytes bytes(iSize);
        for (uint8_t& iByte : bytes)
            iByte = static_cast<uint8_t>(m_random());
        return bytes;
    }
    Bytes AnyContent() {
        return AnyBytes(OneOf<unsigned>({0, 1, 511, 512, 513, 1536, 3072, Dice(2000), Dice(12000)}));
    }

    bool Disturb(const Bytes& request);
    bool Misbehave(const Bytes& request, Action eAction);
    Tree Held() {
        Tree tree;
        m_phone.phone.WithFiles([&](FileSystem& files) { tree = TreeOf(files); });
        return tree;
    }
    void Run(const Step& step);
    void ComeBack();
    void Settle();
    void Judge(const Step& step, bool bDone, bool bExpected, const Tree& after);

    Step Upload();
    Step Download();
    Step Remove();
    Step MakeFolder();
    Step Rename();
    Step MakeLink();
    Step ListFolder();
    Step LookOrLeave();
    Step AnyStep();

    std::mt19937_64 m_random;
    LocalFolder m_local;
    Tree m_before;
    bool m_bFaults = false; // the phone misbehaves now
    bool m_bGone = false;   // it is not there
    // Of the running operation:
    bool m_bWentAway = false;
    int m_iHarmed = 0;           // requests without a usable answer
    bool m_bRefused = false;     // the blind command was not carried out
    bool m_bOpened = false;      // a file may have been opened for the client
    std::map<int, int> m_harmed; // by command
    int m_iBlind = kOther;
    // Of the run:
    int m_iFaults = 0;
    int m_iStalls = 0;
};

/// LineTap's question. Answers come at once, or not at all; one silent request in 300 is waited for.
bool Soak::Disturb(const Bytes& request) {
    using enum handset::Misbehaviour::Action;
    static const std::vector<Action> kForAll = {Drop, Ignore, Delay, Corrupt, ProtocolError, Before};
    if (m_bGone) {
        if (Dice(10) == 0)
            ComeBack();
        return true; // this line stays dead
    }
    const int iCommand = CommandOf(request);
    m_bOpened |= iCommand == kOpenCommand;
    if (!m_bFaults || Dice(6) != 0)
        return false;
    std::vector<Action> actions = kForAll;
    if (Dice(4) == 0)
        actions.push_back(Unplug);
    if (iCommand == kOther)
        actions.insert(actions.end(), {Late, Duplicate, Cut, Enlarge});
    else if (iCommand == kStatCommand)
        actions.push_back(Cut);
    else
        actions.insert(actions.end(), {Refuse, Refuse, Refuse});
    if (iCommand != kOther && iCommand != kStatCommand && iCommand != kRenameCommand)
        actions.insert(actions.end(), {Cut, Enlarge});
    return Misbehave(request, OneOf(actions));
}

bool Soak::Misbehave(const Bytes& request, Action eAction) {
    using enum handset::Misbehaviour::Action;
    handset::Misbehaviour rule{.action = eAction, .prefix = request};
    rule.value = eAction == Refuse ? OneOf<uint32_t>({2, 13, 17, 28}) : 1 + Dice(eAction == Delay ? 3 : 40);
    if (eAction == Cut && Dice(3) == 0)
        rule.value = Dice(1600); // in the middle of a block
    if (eAction == ProtocolError)
        rule.value = 0x13;
    if (eAction == Before)
        rule.packets = {AnyBytes(2 + Dice(100)), {0x60, 2, 0, 1, 0}};
    for (Bytes& packet : rule.packets)
        packet[0] = packet[0] % 2 ? 0x10 : 0x79; // what a phone sends by itself
    if (eAction == Unplug)
        m_phone.phone.Unplug();
    else
        m_phone.phone.Misbehave(rule);
    ++m_iFaults;
    if (eAction == Delay || eAction == Before || eAction == Duplicate || eAction == Enlarge)
        return false;
    ++m_iHarmed;
    const int iCommand = CommandOf(request);
    ++m_harmed[iCommand];
    m_bRefused |= iCommand == m_iBlind && !handset::CarriesOut(eAction);
    m_bWentAway |= m_bGone = eAction == Unplug;
    return eAction != Refuse && eAction != Cut && Dice(300) != 0;
}

void Soak::ComeBack() {
    m_phone.phone.Replug();
    m_bGone = false;
}

/// The faults stop, and everything that was sent is carried out.
void Soak::Settle() {
    m_bFaults = false;
    m_host.onProgress = nullptr;
    if (m_iHarmed != 0)
        Tick();
    m_phone.phone.Behave();
    m_phone.phone.SetChatter(0);
    StopIdleTick(front.IdleTimerId);
    if (m_iHarmed != 0)
        m_phone.phone.WithFiles([](FileSystem& files) { files.CloseAll(); });
    m_host.TakeLog();
    m_host.TakePercents();
}

void Soak::Run(const Step& step) {
    if (m_bGone && Dice(2) == 0)
        ComeBack();
    m_before = Held();
    FileSystem mirror;
    Plant(m_before, mirror);
    const bool bExpected = step.model(mirror);
    m_bWentAway = m_bGone;
    m_iHarmed = m_bGone ? 1 : 0;
    m_bRefused = m_bOpened = false;
    m_harmed.clear();
    m_iBlind = step.iBlind;
    m_bFaults = Dice(2) == 0;
    m_phone.phone.SetChatter(static_cast<int>(Dice(3)));
    Bytes noise = AnyBytes(Dice(20));
    noise.push_back(0x7E);
    m_phone.phone.SendWire(noise);
    const auto start = Clock::now();
    FsStatusInfo(nullptr, FS_STATUS_START, 0);
    const bool bDone = step.act();
    FsStatusInfo(nullptr, FS_STATUS_END, 0);
    // Without a fault a request fails only after its time-out, 80 ms at least: then the machine stood still.
    const bool bStalled = m_iHarmed == 0 && Clock::now() - start >= std::chrono::milliseconds(80);
    Settle();
    m_iStalls += bStalled ? 1 : 0;
    m_iHarmed += bStalled ? 1 : 0;
    Judge(step, bDone, bExpected, TreeOf(mirror));
}

void Soak::Judge(const Step& step, bool bDone, bool bExpected, const Tree& after) {
    const Tree now = Held();
    SCOPED_TRACE(step.sText + (m_iHarmed != 0 ? ", disturbed" : ""));
    if (m_iHarmed == 0 && !step.bMayAbort) {
        EXPECT_EQ(bDone, bExpected);
    }
    if (m_iHarmed == 0) {
        EXPECT_EQ(m_phone.OpenCount(), 0u);
    }
    if (bDone) {
        EXPECT_TRUE(now == after || (m_bRefused && now == m_before)) << "reported as done, but not there";
    } else {
        EXPECT_TRUE(now == m_before || (m_iHarmed != 0 && now == after) || step.isPartial(now))
            << "reported as failed, but something is there";
    }
}

// --- The operations ---------------------------------------------------------------------------------------

Step Soak::Upload() {
    const std::string sPath = AnyPath();
    const Bytes content = AnyContent();
    const std::string sLocal = m_local.Write("up", content);
    const int iFlags = OneOf<int>({0, FS_COPYFLAGS_OVERWRITE, FS_COPYFLAGS_RESUME});
    const int iAbortAt = Dice(6) == 0 ? static_cast<int>(Dice(101)) : 101;
    m_host.onProgress = [=](int iPercent) { return iPercent >= iAbortAt ? 1 : 0; };
    Step step{"put " + sPath + " " + std::to_string(iFlags), [=] { return Put(sLocal, sPath, iFlags) == 0; },
              [=](FileSystem& files) {
                  int32_t iFile = -1;
                  uint32_t iWritten = 0;
                  return (iFlags != 0 || !files.Exists(sPath)) &&
                         files.Open(sPath, 0x241, 0666, iFile) == Errnum::None &&
                         files.Write(iFile, 0, content, iWritten) == Errnum::None;
              }};
    step.iBlind = kUnlinkCommand;
    step.bMayAbort = iAbortAt <= 100;
    step.isPartial = [=, this](Tree now) {
        const std::string sWhat = now[sPath];
        const bool bStays = m_bRefused || m_bWentAway || m_harmed[kOpenCommand] >= 5;
        Tree others = m_before;
        others.erase(sPath);
        now.erase(sPath);
        return m_bOpened && now == others &&
               (sWhat.empty() ||
                (bStays && ("f" + std::string(content.begin(), content.end())).starts_with(sWhat)));
    };
    return step;
}

Step Soak::Download() {
    const std::string sPath = AnyPath();
    const bool bMove = Dice(4) == 0;
    const Bytes old = AnyBytes(Dice(2) * 20000);
    std::filesystem::remove(m_local.Path("down"));
    if (!old.empty())
        m_local.Write("down", old);
    const int iFlags = (old.empty() ? 0 : FS_COPYFLAGS_OVERWRITE) | (bMove ? FS_COPYFLAGS_MOVE : 0);
    const int iAbortAt = Dice(6) == 0 ? static_cast<int>(Dice(101)) : 101;
    m_host.onProgress = [=](int iPercent) { return iPercent >= iAbortAt ? 1 : 0; };
    const auto act = [=, this] {
        const int iResult = Get(sPath, m_local.Path("down"), iFlags);
        const Bytes local = m_local.Read("down");
        const auto held = m_before.find(sPath);
        const std::string sContent = held == m_before.end() ? "" : held->second.substr(1);
        const std::string sLocal(local.begin(), local.end());
        if (iResult == FS_FILE_OK) {
            EXPECT_TRUE(m_local.Has("down") && sLocal == sContent) << sPath << " arrived wrong";
        } else {
            EXPECT_TRUE(local == old || sContent.starts_with(sLocal)) << sPath << " left garbage";
        }
        EXPECT_TRUE(iResult != FS_FILE_USERABORT || !m_local.Has("down") || local == old);
        return iResult == FS_FILE_OK;
    };
    Step step{"get " + sPath + " " + std::to_string(iFlags), act, [=](FileSystem& files) {
                  int32_t iFile = -1;
                  if (files.Open(sPath, 0, 0, iFile) != Errnum::None)
                      return false;
                  if (bMove)
                      files.Unlink(sPath);
                  return true;
              }};
    step.iBlind = kUnlinkCommand;
    step.bMayAbort = iAbortAt <= 100;
    return step;
}

Step Soak::Remove() {
    std::string sPath = Dice(3) == 0 ? AnyFolder() + "/f.lnk" : AnyPath();
    if (Dice(3) == 0)
        return {"rmdir " + sPath, [=]() mutable { return FsRemoveDir(sPath.data()) != 0; },
                [=](FileSystem& files) { return files.RemoveFolder(sPath), true; }, kRemoveFolderCommand};
    return {"rm " + sPath, [=]() mutable { return FsDeleteFile(sPath.data()) != 0; },
            [=](FileSystem& files) { return files.Unlink(sPath), true; }, kUnlinkCommand};
}

Step Soak::MakeFolder() {
    std::string sPath = AnyPath();
    return {"mkdir " + sPath, [=]() mutable { return FsMkDir(sPath.data()) != 0; },
            [=](FileSystem& files) {
                handset::Status status;
                files.MakeFolder(sPath, 0777);
                return files.Stat(sPath, status) == Errnum::None && (status.mode & 0xF000) == 0x4000;
            }};
}

Step Soak::Rename() {
    const std::string sOld = AnyPath();
    const std::string sNew = AnyPath();
    const bool bOverWrite = Dice(2) == 0;
    return {"mv " + sOld + " " + sNew, [=] { return Move(sOld, sNew, 1, bOverWrite) == FS_FILE_OK; },
            [=](FileSystem& files) {
                return (bOverWrite || !files.Exists(sNew)) && files.Rename(sOld, sNew) == Errnum::None;
            }};
}

Step Soak::MakeLink() {
    const std::string sFolder = AnyFolder() + "/";
    return {"ln in " + sFolder,
            [=] {
                std::string sDirectory = sFolder;
                sDirectory.resize(MAX_PATH);
                char sVerb[] = "quote ln f f";
                return FsExecuteFile(nullptr, sDirectory.data(), sVerb) == FS_EXEC_OK;
            },
            [=](FileSystem& files) {
                if (!files.Exists(sFolder + "f"))
                    return false;
                files.MakeLink(sFolder + "f.lnk", sFolder + "f");
                return true;
            },
            kLinkCommand};
}

Step Soak::ListFolder() {
    const std::string sFolder = AnyFolder();
    const auto act = [=, this] {
        std::map<std::string, size_t> listed;
        std::map<std::string, size_t> held;
        for (const HostEntry& entry : List(sFolder + "/"))
            listed[entry.sName + (entry.iAttributes != 0 ? "/" : "")] = entry.iSize;
        for (const auto& [sPath, sWhat] : m_before)
            if (sPath.substr(0, sPath.rfind('/')) == sFolder)
                held[sPath.substr(sFolder.size() + 1) + (sWhat[0] == 'd' ? "/" : "")] = sWhat.size() - 1;
        EXPECT_TRUE(listed == held || (listed.empty() && m_iHarmed != 0)) << "wrong listing of " << sFolder;
        return listed == held;
    };
    return {"ls " + sFolder, act, [](FileSystem&) { return true; }};
}

/// What changes nothing, whatever comes of it: looking around, disconnecting, being idle.
Step Soak::LookOrLeave() {
    const std::string sName = AnyFolder() + "/f.lnk";
    std::string sVerb = OneOf<std::string>({"open", "properties", "quote cd c", "disconnect", "idle"});
    const auto act = [=]() mutable {
        std::string sText = sName;
        sText.resize(MAX_PATH);
        if (sVerb == "disconnect")
            FsDisconnect(nullptr);
        else if (sVerb == "idle")
            Tick(kIdleTicks);
        else
            FsExecuteFile(nullptr, sText.data(), sVerb.data());
        return true;
    };
    return {sVerb + " " + sName, act, [](FileSystem&) { return true; }};
}

Step Soak::AnyStep() {
    static const std::vector<Step (Soak::*)()> operations = {
        &Soak::Upload, &Soak::Upload,     &Soak::Download,   &Soak::Download, &Soak::Remove,
        &Soak::Remove, &Soak::MakeFolder, &Soak::Rename,     &Soak::MakeLink, &Soak::ListFolder,
        &Soak::Upload, &Soak::MakeFolder, &Soak::LookOrLeave};
    return (this->*OneOf(operations))();
}

TEST_F(Soak, ReportsAreTrue) {
    const size_t iThreads = CountIn("/proc/self/task");
    const size_t iDescriptors = CountIn("/proc/self/fd");
    const auto end = Clock::now() + std::chrono::seconds(options.iSeconds);
    uint64_t iDone = 0;
    for (; iDone < options.iOperations && Clock::now() < end && !HasFailure(); ++iDone)
        Run(AnyStep());
    std::cout << "soak: --seed " << options.iSeed << ": " << iDone << " operations, " << m_iFaults
              << " faults, " << m_iStalls << " times the machine stood still\n";
    if (m_bGone)
        ComeBack();
    FsStatusInfo(nullptr, FS_STATUS_START, 0);
    EXPECT_TRUE(Eventually([=] { return CountIn("/proc/self/task") <= iThreads; }));
    EXPECT_EQ(CountIn("/proc/self/fd"), iDescriptors);
}

} // namespace

/// soak [--seed N] [--operations N] [--seconds N]
int main(int iCount, char** aArguments) {
    testing::InitGoogleTest(&iCount, aArguments);
    const std::map<std::string, uint64_t*> values = {
        {"--seed", &options.iSeed}, {"--operations", &options.iOperations}, {"--seconds", &options.iSeconds}};
    for (int i = 1; i < iCount; i += 2) {
        const auto value = values.find(aArguments[i]);
        if (value == values.end() || i + 1 == iCount ||
            !(std::istringstream(aArguments[i + 1]) >> *value->second)) {
            std::cerr << "usage: soak [--seed N] [--operations N] [--seconds N]\n";
            return 2;
        }
    }
    return RUN_ALL_TESTS();
}
