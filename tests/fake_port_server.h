// A port server in the process: it talks to a simulated handset with the handset's own framing, and does
// what a test tells it.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "handset/framing.h"
#include "handset/handset.h"
#include "portserver/port_server.h"

/// FakeProgram is the server program that all views of it share. It is attached while it lives.
class FakeProgram {
public:
    /// What a function of the server does instead of its work.
    enum class Trouble { None, Refuse, ComError, Exception, OddThrow, Hang };

    FakeProgram() {
        AttachPortServer([this] { return MakeView(); });
    }
    ~FakeProgram() {
        AttachPortServer(nullptr);
        Release();
    }

    void Set(const std::string& sFunction, Trouble eTrouble) {
        const std::lock_guard lock(m_lock);
        m_troubles[sFunction] = eTrouble;
    }
    /// Lets go of the calls that hang.
    void Release() {
        const std::lock_guard lock(m_lock);
        m_bReleased = true;
        m_released.notify_all();
    }
    /// The calls since the last time, such as "selectPort COM5".
    std::vector<std::string> TakeCalls() {
        const std::lock_guard lock(m_lock);
        return std::exchange(m_calls, {});
    }
    /// Every thread on which the server was made, called or destroyed.
    std::set<std::thread::id> Threads() {
        const std::lock_guard lock(m_lock);
        return m_threads;
    }
    int Views() {
        const std::lock_guard lock(m_lock);
        return m_iViews;
    }
    /// The phone sends a packet by itself.
    void SendByItself(handset::Bytes packet) {
        packet.insert(packet.end(), 2, 0); // the FCS that this server has stripped
        std::shared_ptr<PacketEvents> pEvents;
        {
            const std::lock_guard lock(m_lock);
            pEvents = m_pPacketEvents;
        }
        pEvents->packetReceived(packet);
    }

    /// False when the function is to refuse.
    bool Enter(const std::string& sFunction, const std::string& sArguments = "") {
        std::unique_lock lock(m_lock);
        m_threads.insert(std::this_thread::get_id());
        m_calls.push_back(sFunction + (sArguments.empty() ? "" : " " + sArguments));
        switch (m_troubles[sFunction]) {
            case Trouble::ComError:
                throw ComException("the server is gone");
            case Trouble::Exception:
                throw std::runtime_error("something else");
            case Trouble::OddThrow:
                throw 42;
            case Trouble::Hang:
                m_released.wait(lock, [this] { return m_bReleased; });
                return true;
            case Trouble::Refuse:
                return false;
            case Trouble::None:
                break;
        }
        return true;
    }
    void CountView(int iChange) {
        const std::lock_guard lock(m_lock);
        m_threads.insert(std::this_thread::get_id());
        m_iViews += iChange;
    }
    void SetPacketEvents(const std::shared_ptr<PacketEvents>& pEvents) {
        const std::lock_guard lock(m_lock);
        if (pEvents)
            m_pPacketEvents = pEvents;
    }

    // Set up by a test before it uses the server.
    handset::Handset phone;
    std::vector<std::string> portNames = {"COM5", "COM300"};
    std::vector<PhoneEntry> phones = {{"COM300", "b", "c", "d"}, {"COM7", "", "", ""}};
    ResetOutcome eReset = ResetOutcome::Done;
    std::vector<EfsDirItem> entries;
    int iProgressReports = 0;
    bool bTasksSucceed = true;
    bool bTasksEnd = true;

private:
    std::shared_ptr<PortServer> MakeView();

    std::mutex m_lock;
    std::condition_variable m_released;
    bool m_bReleased = false;
    std::map<std::string, Trouble> m_troubles;
    std::vector<std::string> m_calls;
    std::set<std::thread::id> m_threads;
    int m_iViews = 0;
    std::shared_ptr<PacketEvents> m_pPacketEvents;
};

/// One client's view of the program.
class FakeView : public PortServer {
public:
    explicit FakeView(FakeProgram& program) : m_program(program) { m_program.CountView(1); }
    ~FakeView() override { m_program.CountView(-1); }

    bool attach(const std::string& sClientName, const std::shared_ptr<PacketEvents>& pEvents) override {
        m_program.SetPacketEvents(pEvents);
        return m_program.Enter("attach", sClientName);
    }
    bool selectPort(const std::string& sPortName, DWORD) override {
        return m_program.Enter("selectPort", sPortName);
    }
    std::vector<std::string> portNames() override {
        return m_program.Enter("portNames") ? m_program.portNames : std::vector<std::string>();
    }
    std::vector<PhoneEntry> phones() override {
        return m_program.Enter("phones") ? m_program.phones : std::vector<PhoneEntry>();
    }

    bool sendSync(std::span<const unsigned char> request, DWORD iTimeOut_ms,
                  std::vector<unsigned char>& response) override {
        if (!m_program.Enter("sendSync"))
            return false;
        const int fd = open(m_program.phone.TtyPath().c_str(), O_RDWR | O_NOCTTY);
        if (fd < 0)
            throw ComException("the port is gone");
        const handset::Bytes frame = handset::Frame({request.begin(), request.end()});
        bool bAnswered = write(fd, frame.data(), frame.size()) == static_cast<ssize_t>(frame.size());
        bAnswered = bAnswered && Receive(fd, iTimeOut_ms, response);
        close(fd);
        return bAnswered;
    }
    bool readNv(unsigned short iItem, std::vector<unsigned char>& data) override {
        data = {1, 2, 3};
        return m_program.Enter("readNv", std::to_string(iItem));
    }
    bool writeNv(unsigned short iItem, std::span<const unsigned char> data) override {
        return m_program.Enter("writeNv", std::to_string(iItem) + ": " +
                                              handset::ToHex(handset::Bytes(data.begin(), data.end())));
    }
    bool control(PhoneControl eControl, const std::string& sText, DWORD& iValue) override {
        iValue = 8;
        return m_program.Enter("control", std::to_string(static_cast<int>(eControl)) + sText);
    }
    ResetOutcome reset(DWORD) override {
        m_program.Enter("reset");
        return m_program.eReset;
    }

    bool begin(ServerTask eTask, const std::vector<std::string>& arguments,
               const std::shared_ptr<TaskEvents>& pEvents) override {
        std::string sText = std::to_string(static_cast<int>(eTask));
        for (const std::string& sArgument : arguments)
            sText += "|" + sArgument;
        if (!m_program.Enter("begin", sText))
            return false;
        for (const EfsDirItem& item : m_program.entries)
            pEvents->entryListed(item);
        for (int i = 1; i <= m_program.iProgressReports; ++i)
            pEvents->progressed(static_cast<DWORD>(i), 10);
        if (m_program.bTasksEnd)
            pEvents->finished(m_program.bTasksSucceed);
        m_pEvents = pEvents;
        return true;
    }
    void abort() override {
        m_program.Enter("abort");
        if (m_pEvents)
            m_pEvents->finished(false);
    }

private:
    static bool Receive(int fd, DWORD iTimeOut_ms, std::vector<unsigned char>& response) {
        using Clock = std::chrono::steady_clock;
        const auto deadline = Clock::now() + std::chrono::milliseconds(iTimeOut_ms);
        handset::Deframer deframer;
        uint8_t aBytes[512];
        for (;;) {
            const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
            pollfd line{fd, POLLIN, 0};
            if (left <= 0 || poll(&line, 1, static_cast<int>(left)) <= 0)
                return false;
            const ssize_t iRead = read(fd, aBytes, sizeof aBytes);
            if (iRead <= 0)
                throw ComException("the port is gone");
            size_t iUsed = 0;
            if (const auto packet = deframer.Take(aBytes, static_cast<size_t>(iRead), iUsed)) {
                response = *packet;
                return true;
            }
        }
    }

    FakeProgram& m_program;
    std::shared_ptr<TaskEvents> m_pEvents;
};

inline std::shared_ptr<PortServer> FakeProgram::MakeView() {
    return Enter("make") ? std::make_shared<FakeView>(*this) : nullptr;
}
