// A port server in the process: it talks to a simulated handset with the handset's own framing, and does
// what a test tells it.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <atomic>
#include <condition_variable>
#include <functional>
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

    FakeProgram();
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
    int Views() const { return m_iViews; }

    // Set up by a test before it uses the server.
    handset::Handset phone;
    std::vector<std::string> portNames = {"COM5", "COM300"};
    std::vector<PhoneEntry> phones = {{"COM300", "b", "c", "d"}, {"COM7", "", "", ""}};
    ResetOutcome eReset = ResetOutcome::Done;
    std::function<void(TaskEvents&)> task = [](TaskEvents& events) { events.finished(true); };
    /// Whoever attached last and wanted the packets that the phone sends by itself.
    std::shared_ptr<PacketEvents> pPacketEvents;

private:
    class View;

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
            default:
                return m_troubles[sFunction] != Trouble::Refuse;
        }
    }
    void CountView(int iChange) {
        const std::lock_guard lock(m_lock);
        m_threads.insert(std::this_thread::get_id());
        m_iViews += iChange;
    }

    std::mutex m_lock;
    std::condition_variable m_released;
    bool m_bReleased = false;
    std::map<std::string, Trouble> m_troubles;
    std::vector<std::string> m_calls;
    std::set<std::thread::id> m_threads;
    std::atomic<int> m_iViews{0};
};

/// One client's view of the program.
class FakeProgram::View : public PortServer {
public:
    explicit View(FakeProgram& program) : m_program(program) { m_program.CountView(1); }
    ~View() override { m_program.CountView(-1); }

    bool attach(const std::string& sClientName, const std::shared_ptr<PacketEvents>& pEvents) override {
        if (pEvents)
            m_program.pPacketEvents = pEvents;
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
        const std::shared_ptr<void> closing(nullptr, [fd](void*) { close(fd); });
        const handset::Bytes frame = handset::Frame({request.begin(), request.end()});
        EXPECT_EQ(write(fd, frame.data(), frame.size()), static_cast<ssize_t>(frame.size()));
        handset::Deframer deframer;
        uint8_t iByte = 0;
        size_t iUsed = 0;
        for (pollfd line{fd, POLLIN, 0}; poll(&line, 1, static_cast<int>(iTimeOut_ms)) > 0;) {
            if (read(fd, &iByte, 1) != 1)
                throw ComException("the port is gone");
            if (const auto packet = deframer.Take(&iByte, 1, iUsed)) {
                response = *packet;
                return true;
            }
        }
        return false;
    }
    bool readNv(unsigned short iItem, std::vector<unsigned char>& data) override {
        data = {1, 2, 3};
        return m_program.Enter("readNv", std::to_string(iItem));
    }
    bool writeNv(unsigned short iItem, std::span<const unsigned char> data) override {
        return m_program.Enter("writeNv",
                               std::to_string(iItem) + ": " + handset::ToHex({data.begin(), data.end()}));
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
        m_program.task(*pEvents);
        m_pEvents = pEvents;
        return true;
    }
    void abort() override {
        m_program.Enter("abort");
        if (m_pEvents)
            m_pEvents->finished(false);
    }

private:
    FakeProgram& m_program;
    std::shared_ptr<TaskEvents> m_pEvents;
};

inline FakeProgram::FakeProgram() {
    AttachPortServer([this] { return Enter("make") ? std::make_shared<View>(*this) : nullptr; });
}
