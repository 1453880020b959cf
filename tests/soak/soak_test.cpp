// The soak: random operations of a file manager on a handset that misbehaves at random. After each operation,
// a model determines what the phone may hold.
//
// Faults that the client cannot detect are left out. The client recognises a response by its first byte
// alone, so no late or duplicate response to a file command may reach a later request. Responses to STAT and
// RENAME are read backwards from their end, so extra bytes and truncated error numbers are misread. A refused
// STAT means that the entry does not exist.

#include <chrono>
#include <iostream>
#include <random>

#include "host_fixture.h"
#include "line_tap.h"
#include "tree.h"

namespace {

/// The soak ends after so many operations or seconds, whichever comes first. The same seed repeats the same
/// operations and faults.
std::map<std::string, uint64_t> options = {{"--seed", 1}, {"--operations", 500}, {"--seconds", 24 * 60 * 60}};

using Clock = std::chrono::steady_clock;
using handset::Errnum;
using handset::FileSystem;

/// The numbers of file commands; Other for all other requests.
enum class Command { Other, Open = 2, Link = 6, Unlink = 8, RemoveFolder = 10, Rename = 14, Stat = 15 };

Command CommandOf(const Bytes& request) {
    return handset::BeginsWith(request, {0x4B, 0x13}) ? Command{request.at(2)} : Command::Other;
}

/// An operation, its effect on a phone without faults, and the partial results that faults may cause.
struct Step {
    std::string sText;
    std::function<bool()> act;              // returns true if reported as done
    std::function<bool(FileSystem&)> model; // returns true if it must be reported as done
    Command eBlind = Command::Other;        // the command whose refusal is not reported
    std::function<bool(const Tree& now)> isPartial = [](const Tree&) { return false; };
};

class Soak : public HostTest {
protected:
    Soak() : m_random(options["--seed"]) {
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

    Tree Held() {
        Tree tree;
        m_phone.phone.WithFiles([&](FileSystem& files) { tree = TreeOf(files); });
        return tree;
    }

    /// Serves as LineTap::goesUnanswered. Requests are answered at once or not at all. One unanswered request
    /// in 300 is really waited for.
    bool Disturb(const Bytes& request) {
        using enum handset::Misbehaviour::Action;
        if (m_bGone) {
            if (Dice(10) == 0)
                ComeBack();
            return true; // this line remains unusable
        }
        const Command eCommand = CommandOf(request);
        m_bOpened |= eCommand == Command::Open;
        if (!m_bFaults || Dice(6) != 0)
            return false;
        std::vector<Action> actions = {Drop, Ignore, Delay, Corrupt, ProtocolError, Before};
        if (Dice(4) == 0)
            actions.push_back(Unplug);
        if (eCommand == Command::Other)
            actions.insert(actions.end(), {Late, Duplicate, Cut, Enlarge});
        else if (eCommand == Command::Stat)
            actions.push_back(Cut);
        else
            actions.insert(actions.end(), {Refuse, Refuse, Refuse});
        if (eCommand != Command::Other && eCommand != Command::Stat && eCommand != Command::Rename)
            actions.insert(actions.end(), {Cut, Enlarge});
        return Misbehave(request, OneOf(actions));
    }

    bool Misbehave(const Bytes& request, Action eAction) {
        using enum handset::Misbehaviour::Action;
        handset::Misbehaviour rule{.action = eAction, .prefix = request};
        rule.value =
            eAction == Refuse ? OneOf<uint32_t>({2, 13, 17, 28}) : 1 + Dice(eAction == Delay ? 3 : 40);
        if (eAction == Cut && Dice(3) == 0)
            rule.value = Dice(1600); // in the middle of a block
        if (eAction == ProtocolError)
            rule.value = 0x13;
        if (eAction == Before)
            rule.packets = {AnyBytes(2 + Dice(100)), {0x60, 2, 0, 1, 0}};
        for (Bytes& packet : rule.packets)
            packet[0] = packet[0] % 2 ? 0x10 : 0x79; // an unsolicited packet
        if (eAction == Unplug)
            m_phone.phone.Unplug();
        else
            m_phone.phone.Misbehave(rule);
        ++m_iFaults;
        if (eAction == Delay || eAction == Before || eAction == Duplicate || eAction == Enlarge)
            return false;
        m_bHarmed = true;
        m_iHarmedOpens += CommandOf(request) == Command::Open ? 1 : 0;
        m_bRefused |= CommandOf(request) == m_eBlind && !handset::CarriesOut(eAction);
        m_bWentAway |= m_bGone = eAction == Unplug;
        return eAction != Refuse && eAction != Cut && Dice(300) != 0;
    }

    void ComeBack() {
        m_phone.phone.Replug();
        m_bGone = false;
    }

    /// Stops the faults and waits until the phone has carried out everything that was sent.
    void Settle() {
        m_bFaults = false;
        m_host.onProgress = nullptr;
        if (m_bHarmed)
            Tick();
        m_phone.phone.Behave();
        m_phone.phone.SetChatter(0);
        StopIdleTick(front.IdleTimerId);
        if (m_bHarmed)
            m_phone.phone.WithFiles([](FileSystem& files) { files.CloseAll(); });
        m_host.TakeLog();
        m_host.TakePercents();
    }

    /// Decides whether the user aborts, whether faults occur and what noise is on the line, and resets the
    /// state of the previous operation.
    void Prepare(const Step& step) {
        const int iAbortAt = Dice(6) == 0 ? static_cast<int>(Dice(101)) : 101;
        m_host.onProgress = [=, this](int iPercent) {
            m_bAborted |= iPercent >= iAbortAt;
            return m_bAborted ? 1 : 0;
        };
        m_eBlind = step.eBlind;
        m_bWentAway = m_bHarmed = m_bGone;
        m_iHarmedOpens = 0;
        m_bRefused = m_bOpened = m_bAborted = false;
        m_bFaults = Dice(2) == 0;
        m_phone.phone.SetChatter(static_cast<int>(Dice(3)));
        Bytes noise = AnyBytes(Dice(20));
        noise.push_back(0x7E);
        m_phone.phone.SendWire(noise);
    }

    /// Without a fault, a request fails only if the machine stalls for its whole time-out, at least 80 ms.
    bool IsDisturbed() const { return m_bHarmed || Clock::now() - m_start >= std::chrono::milliseconds(80); }

    void Run(const Step& step) {
        if (m_bGone && Dice(2) == 0)
            ComeBack();
        m_before = Held();
        FileSystem mirror;
        Plant(m_before, mirror);
        const bool bExpected = step.model(mirror);
        Prepare(step);
        m_start = Clock::now();
        FsStatusInfo(nullptr, FS_STATUS_START, 0);
        const bool bDone = step.act();
        FsStatusInfo(nullptr, FS_STATUS_END, 0);
        const bool bDisturbed = IsDisturbed();
        Settle();
        m_bHarmed = bDisturbed;
        Judge(step, bDone, bExpected, TreeOf(mirror));
    }

    void Judge(const Step& step, bool bDone, bool bExpected, const Tree& after) {
        const Tree now = Held();
        SCOPED_TRACE(step.sText + (m_bHarmed ? ", disturbed" : ""));
        EXPECT_TRUE(m_bHarmed || m_bAborted || bDone == bExpected) << "reported as done: " << bDone;
        EXPECT_TRUE(m_bHarmed || m_phone.OpenCount() == 0) << "files or folders left open";
        EXPECT_TRUE(!bDone || now == after || (m_bRefused && now == m_before))
            << "reported as done, but not there";
        EXPECT_TRUE(bDone || now == m_before || (m_bHarmed && now == after) || step.isPartial(now))
            << "reported as failed, but something is there";
    }

    // The operations.

    Step Upload() {
        const std::string sPath = AnyPath();
        const Bytes content =
            AnyBytes(OneOf<unsigned>({0, 1, 511, 512, 513, 1536, 3072, Dice(2000), Dice(12000)}));
        const std::string sLocal = m_local.Write("up", content);
        const int iFlags = OneOf<int>({0, FS_COPYFLAGS_OVERWRITE, FS_COPYFLAGS_RESUME});
        Step step{"put " + sPath + " " + std::to_string(iFlags),
                  [=] { return Put(sLocal, sPath, iFlags) == 0; },
                  [=](FileSystem& files) {
                      int32_t iFile = -1;
                      uint32_t iWritten = 0;
                      return (iFlags != 0 || !files.Exists(sPath)) &&
                             files.Open(sPath, 0x241, 0666, iFile) == Errnum::None &&
                             files.Write(iFile, 0, content, iWritten) == Errnum::None;
                  },
                  Command::Unlink};
        step.isPartial = [=, this](Tree now) {
            const std::string sWhat = now[sPath];
            const bool bStays = m_bRefused || m_bWentAway || m_iHarmedOpens >= 5;
            const std::string sWhole = "f" + std::string(content.begin(), content.end());
            Tree others = m_before;
            others.erase(sPath);
            now.erase(sPath);
            return m_bOpened && now == others && (sWhat.empty() || (bStays && sWhole.starts_with(sWhat)));
        };
        return step;
    }

    Step Download() {
        const std::string sPath = AnyPath();
        const bool bMove = Dice(4) == 0;
        const Bytes old = AnyBytes(Dice(2) * 20000);
        std::filesystem::remove(m_local.Path("down"));
        if (!old.empty())
            m_local.Write("down", old);
        const int iFlags = (old.empty() ? 0 : FS_COPYFLAGS_OVERWRITE) | (bMove ? FS_COPYFLAGS_MOVE : 0);
        const auto act = [=, this] {
            const int iResult = Get(sPath, m_local.Path("down"), iFlags);
            const Bytes local = m_local.Read("down");
            const std::string sContent = m_before.contains(sPath) ? m_before[sPath].substr(1) : "";
            const std::string sLocal(local.begin(), local.end());
            EXPECT_TRUE(local == old || sContent.starts_with(sLocal)) << sPath << " left garbage";
            EXPECT_TRUE(iResult != FS_FILE_OK || (m_local.Has("down") && sLocal == sContent));
            EXPECT_TRUE(iResult != FS_FILE_USERABORT || !m_local.Has("down") || local == old);
            return iResult == FS_FILE_OK;
        };
        const auto model = [=](FileSystem& files) {
            int32_t iFile = -1;
            const bool bIsFile = files.Open(sPath, 0, 0, iFile) == Errnum::None;
            if (bIsFile && bMove)
                files.Unlink(sPath);
            return bIsFile;
        };
        return {"get " + sPath + " " + std::to_string(iFlags), act, model, Command::Unlink};
    }

    Step Remove() {
        std::string sPath = Dice(3) == 0 ? AnyFolder() + "/f.lnk" : AnyPath();
        const bool bFolder = Dice(3) == 0;
        return {(bFolder ? "rmdir " : "rm ") + sPath,
                [=]() mutable { return (bFolder ? FsRemoveDir : FsDeleteFile)(sPath.data()) != 0; },
                [=](FileSystem& files) {
                    bFolder ? files.RemoveFolder(sPath) : files.Unlink(sPath);
                    return true;
                },
                bFolder ? Command::RemoveFolder : Command::Unlink};
    }

    Step MakeFolder() {
        std::string sPath = AnyPath();
        return {"mkdir " + sPath, [=]() mutable { return FsMkDir(sPath.data()) != 0; },
                [=](FileSystem& files) {
                    files.MakeFolder(sPath, 0777);
                    return TreeOf(files)[sPath] == "d";
                }};
    }

    Step Rename() {
        const std::string sOld = AnyPath();
        const std::string sNew = AnyPath();
        const bool bOverWrite = Dice(2) == 0;
        return {"mv " + sOld + " " + sNew, [=] { return Move(sOld, sNew, 1, bOverWrite) == FS_FILE_OK; },
                [=](FileSystem& files) {
                    return (bOverWrite || !files.Exists(sNew)) && files.Rename(sOld, sNew) == Errnum::None;
                }};
    }

    Step MakeLink() {
        const std::string sFolder = AnyFolder() + "/";
        return {"ln in " + sFolder, [=] { return Execute(sFolder, "quote ln f f").first == FS_EXEC_OK; },
                [=](FileSystem& files) {
                    if (!files.Exists(sFolder + "f"))
                        return false;
                    files.MakeLink(sFolder + "f.lnk", sFolder + "f");
                    return true;
                },
                Command::Link};
    }

    Step ListFolder() {
        const std::string sFolder = AnyFolder();
        const auto act = [=, this] {
            std::map<std::string, size_t> listed, held;
            for (const HostEntry& entry : List(sFolder + "/"))
                listed[entry.sName + (entry.iAttributes != 0 ? "/" : "")] = entry.iSize;
            for (const auto& [sPath, sWhat] : m_before)
                if (sPath.substr(0, sPath.rfind('/')) == sFolder)
                    held[sPath.substr(sFolder.size() + 1) + (sWhat[0] == 'd' ? "/" : "")] = sWhat.size() - 1;
            EXPECT_TRUE(listed == held || (listed.empty() && IsDisturbed()))
                << "wrong listing of " << sFolder << ": " << testing::PrintToString(listed);
            return listed == held;
        };
        return {"ls " + sFolder, act, [](FileSystem&) { return true; }};
    }

    /// An operation that changes nothing: opening, showing properties, changing the folder, disconnecting or
    /// idling.
    Step LookOrLeave() {
        const std::string sName = AnyFolder() + "/f.lnk";
        const std::string sVerb =
            OneOf<std::string>({"open", "properties", "quote cd c", "disconnect", "idle"});
        const auto act = [=] {
            if (sVerb == "disconnect")
                FsDisconnect(nullptr);
            else if (sVerb == "idle")
                Tick(kIdleTicks);
            else
                Execute(sName, sVerb);
            return true;
        };
        return {sVerb + " " + sName, act, [](FileSystem&) { return true; }};
    }

    Step AnyStep() {
        static const std::vector<Step (Soak::*)()> operations = {
            &Soak::Upload, &Soak::Upload,     &Soak::Download,   &Soak::Download, &Soak::Remove,
            &Soak::Remove, &Soak::MakeFolder, &Soak::Rename,     &Soak::MakeLink, &Soak::ListFolder,
            &Soak::Upload, &Soak::MakeFolder, &Soak::LookOrLeave};
        return (this->*OneOf(operations))();
    }

    std::mt19937_64 m_random;
    LocalFolder m_local;
    Tree m_before;
    bool m_bFaults = false; // faults occur now
    bool m_bGone = false;   // the phone is unplugged
    // The running operation:
    Command m_eBlind = Command::Other;
    bool m_bWentAway = false;
    Clock::time_point m_start; // of the operation
    bool m_bHarmed = false;    // a request got no usable response
    int m_iHarmedOpens = 0;    // requests to open a file among these
    bool m_bRefused = false;   // `m_eBlind` was not carried out
    bool m_bOpened = false;    // a file may have been opened for the client
    bool m_bAborted = false;   // the user aborted
    int m_iFaults = 0;         // in the whole run
};

TEST_F(Soak, ReportsAreTrue) {
    const size_t iDescriptors = CountIn("/proc/self/fd");
    const auto end = Clock::now() + std::chrono::seconds(options["--seconds"]);
    uint64_t iDone = 0;
    for (; iDone < options["--operations"] && Clock::now() < end && !HasFailure(); ++iDone)
        Run(AnyStep());
    std::cout << "soak: --seed " << options["--seed"] << ": " << iDone << " operations, " << m_iFaults
              << " faults\n";
    if (m_bGone)
        ComeBack();
    FsStatusInfo(nullptr, FS_STATUS_START, 0);
    EXPECT_EQ(CountIn("/proc/self/fd"), iDescriptors);
}

} // namespace

/// soak [--seed N] [--operations N] [--seconds N]
int main(int iCount, char** aArguments) {
    testing::InitGoogleTest(&iCount, aArguments);
    InstallLineTap();
    for (int i = 1; i + 1 < iCount; i += 2)
        options.at(aArguments[i]) = std::stoull(aArguments[i + 1]);
    return RUN_ALL_TESTS();
}
