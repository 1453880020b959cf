// How long an operation holds the file manager when the phone falls silent, wherever it does: the longest of
// the sums of the time-outs that are waited for, one after the other. docs/USING.md tells them to users.
#include <algorithm>

#include "host_fixture.h"
#include "line_tap.h"

namespace {

class TimeBounds : public HostTest {
protected:
    ~TimeBounds() override { TheLineTap() = {}; }

    void Reset() {
        FsDisconnect(nullptr);
        m_phone.phone.Unplug(); // what is still on the line is not to be carried out
        m_phone.phone.Behave();
        m_phone.phone.WithFiles([](handset::FileSystem& files) {
            files.Clear();
            files.AddFile("d/f", Pattern(2000));
            files.AddFile("d/e", Pattern(0));
            files.AddFolder("d/empty");
            files.AddLink("d/l", "empty");
        });
        m_phone.phone.Replug();
        Connect();
        std::filesystem::remove(m_local.Path("copy"));
        TheLineTap() = {};
    }

    /// The time-outs in ms of `act` when the phone answers no request but the first iAnswered.
    unsigned WaitedFor(const std::function<void()>& act, int iAnswered) {
        Reset();
        TheLineTap().goesUnanswered = [=, this, iLeft = iAnswered](const Bytes&) mutable {
            if (iLeft-- == 0)
                m_phone.Misbehave(Action::Ignore, "", -1);
            return iLeft < 0;
        };
        act();
        TheLineTap().goesUnanswered = nullptr;
        return TheLineTap().iWaited_ms;
    }

    static void Do(std::string sName, std::string sVerb) {
        sName.resize(MAX_PATH);
        FsExecuteFile(nullptr, sName.data(), sVerb.data());
    }

    LocalFolder m_local;
};

TEST_F(TimeBounds, PhoneThatFallsSilentAnywhere) {
    std::string sFile = "d/f";
    std::string sFolder = "d/empty";
    const std::string sSource = m_local.Write("source", Pattern(1000));
    const std::string sCopy = m_local.Path("copy");
    const struct {
        const char* sOperation;
        std::function<void()> act;
        unsigned iLongest_ms;
    } rows[] = {
        {"connect", [] { FsDisconnect(nullptr), FsStatusInfo(nullptr, FS_STATUS_START, 0); }, 480},
        {"check", [] { FsStatusInfo(nullptr, FS_STATUS_START, 0); }, 960},
        {"idle tick", [] { Tick(); }, 480},
        {"disconnect", [] { FsDisconnect(nullptr); }, 0},
        {"list", [] { List("/d"); }, 12000},
        {"get", [&] { Get("/d/f", sCopy); }, 12000},
        {"get and delete", [&] { Get("/d/f", sCopy, FS_COPYFLAGS_MOVE); }, 12000},
        {"put", [&] { Put(sSource, "/d/new"); }, 24000},
        {"put over", [&] { Put(sSource, "/d/f", FS_COPYFLAGS_OVERWRITE); }, 24000},
        {"delete", [=]() mutable { FsDeleteFile(sFile.data()); }, 4960},
        {"mkdir", [=]() mutable { FsMkDir(sFolder.data()); }, 6960},
        {"rmdir", [=]() mutable { FsRemoveDir(sFolder.data()); }, 4960},
        {"move", [] { Move("/d/f", "/d/g", 1, 0); }, 4000},
        {"cd", [] { Do("/", "quote cd d"); }, 4000},
        {"ln", [] { Do("/d/", "quote ln f g"); }, 4000},
        {"open", [] { Do("/d/l", "open"); }, 8000},
        {"properties", [] { Do("/d/f", "properties"); }, 4000},
    };
    constexpr int kMostRequests = 12; // of an operation that succeeds
    for (const auto& row : rows) {
        unsigned iLongest_ms = 0;
        for (int iAnswered = 0; iAnswered < kMostRequests; ++iAnswered)
            iLongest_ms = std::max(iLongest_ms, WaitedFor(row.act, iAnswered));
        EXPECT_EQ(iLongest_ms, row.iLongest_ms) << row.sOperation;
    }
}

} // namespace
