// How long an operation can block the file manager when the phone stops answering at any request: the largest
// sum of consecutive time-outs. docs/USING.md lists these times for users.
#include <algorithm>

#include "host_fixture.h"
#include "line_tap.h"

namespace {

class TimeBounds : public HostTest {
protected:
    ~TimeBounds() override { TheLineTap() = {}; }

    /// Returns the sum of the time-outs of `act` in ms when the phone answers only the first `iAnswered`
    /// requests.
    unsigned WaitedFor(const std::function<void()>& act, int iAnswered) {
        FsDisconnect(nullptr);
        m_phone.phone.Unplug(); // discards what is still on the line
        m_phone.phone.Behave();
        m_phone.phone.WithFiles([](handset::FileSystem& files) {
            files.Clear();
            files.AddFile("d/f", Pattern(2000));
            files.AddFolder("d/empty");
            files.AddLink("d/l", "empty");
        });
        m_phone.phone.Replug();
        Connect();
        TheLineTap().iWaited_ms = 0;
        TheLineTap().goesUnanswered = [=, this, iLeft = iAnswered](const Bytes&) mutable {
            if (iLeft-- == 0)
                m_phone.Misbehave(Action::Ignore, "", -1);
            return iLeft < 0;
        };
        act();
        return std::exchange(TheLineTap(), {}).iWaited_ms;
    }

    LocalFolder m_local;
};

TEST_F(TimeBounds, PhoneThatStopsAnsweringAtAnyRequest) {
    std::string sName = "d/empty";
    const std::string sSource = m_local.Write("source", Pattern(1000));
    const struct {
        const char* sOperation;
        std::function<void()> act;
        unsigned iLongest_ms;
    } rows[] = {
        {"connect", [] { FsDisconnect(nullptr), FsStatusInfo(nullptr, FS_STATUS_START, 0); }, 480},
        {"check", [] { FsStatusInfo(nullptr, FS_STATUS_START, 0); }, 960},
        {"idle tick", [] { Tick(); }, 480},
        {"list", [] { List("/d"); }, 12000},
        {"get", [&] { Get("/d/f", m_local.Path("copy"), FS_COPYFLAGS_OVERWRITE); }, 12000},
        {"put", [&] { Put(sSource, "/d/new"); }, 24000},
        {"delete", [=]() mutable { FsDeleteFile(sName.data()); }, 4960},
        {"mkdir", [=]() mutable { FsMkDir(sName.data()); }, 6960},
        {"move", [] { Move("/d/f", "/d/g", 1, 0); }, 4000},
        {"cd", [] { Execute("/", "quote cd d"); }, 4000},
        {"ln", [] { Execute("/d/", "quote ln f g"); }, 4000},
        {"open", [] { Execute("/d/l", "open"); }, 8000},
        {"properties", [] { Execute("/d/f", "properties"); }, 4000},
    };
    constexpr int kMostRequests = 12; // of a successful operation
    for (const auto& row : rows) {
        unsigned iLongest_ms = 0;
        for (int iAnswered = 0; iAnswered < kMostRequests; ++iAnswered)
            iLongest_ms = std::max(iLongest_ms, WaitedFor(row.act, iAnswered));
        EXPECT_EQ(iLongest_ms, row.iLongest_ms) << row.sOperation;
    }
}

} // namespace
