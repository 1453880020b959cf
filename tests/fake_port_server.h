// A port server inside the test program, which the test controls. Unless the test replaces `exchange`, its
// phone returns each request with four zeros appended.
#pragma once

#include <atomic>
#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>
#include <set>
#include <thread>
#include <utility>

#include "handset/bytes.h"
#include "portserver/port_server.h"

/// FakeProgram is the server program, which all views share. It is attached during the object's lifetime.
class FakeProgram {
public:
    /// What a function of the server does instead of its work. With Hang it blocks until the value changes.
    enum class Trouble { None, Refuse, ComError, OddThrow, Hang };

    FakeProgram();
    ~FakeProgram() { AttachPortServer(nullptr); }

    void Set(const std::string& sFunction, Trouble eTrouble) {
        const std::lock_guard lock(m_lock);
        m_troubles[sFunction] = eTrouble;
        m_changed.notify_all();
    }
    /// Returns the calls since the last TakeCalls, such as "selectPort COM5".
    std::vector<std::string> TakeCalls() {
        const std::lock_guard lock(m_lock);
        return std::exchange(m_calls, {});
    }
    /// Returns every thread that created, called or destroyed the server.
    std::set<std::thread::id> Threads() {
        const std::lock_guard lock(m_lock);
        return m_threads;
    }
    int Views() const { return m_iViews; }

    /// Kill ends the program: every call of an existing view throws, even after Start. No view can be created
    /// until Start.
    void Kill() {
        ++m_iLife;
        m_bRuns = false;
    }
    void Start() { m_bRuns = true; }

    // A test sets these before it uses the server.
    std::function<bool(const handset::Bytes& request, DWORD iTimeOut_ms, handset::Bytes& response)> exchange =
        [](const handset::Bytes& request, DWORD, handset::Bytes& response) {
            response = request;
            response.resize(response.size() + 4);
            return true;
        };
    std::function<void(TaskEvents&)> task = [](TaskEvents& events) { events.finished(true); };
    /// The client that attached last for the phone's unsolicited packets.
    std::shared_ptr<PacketEvents> pPacketEvents;

private:
    class View;

    /// Returns false when the function is to refuse.
    bool Enter(const std::string& sFunction, const std::string& sArguments = "") {
        std::unique_lock lock(m_lock);
        m_threads.insert(std::this_thread::get_id());
        m_calls.push_back(sFunction + (sArguments.empty() ? "" : " " + sArguments));
        const Trouble& eTrouble = m_troubles[sFunction];
        m_changed.wait(lock, [&] { return eTrouble != Trouble::Hang; });
        if (eTrouble == Trouble::ComError)
            throw ComException("the server is gone");
        if (eTrouble == Trouble::OddThrow)
            throw 42;
        return eTrouble != Trouble::Refuse;
    }
    void CountView(int iChange) {
        const std::lock_guard lock(m_lock);
        m_threads.insert(std::this_thread::get_id());
        m_iViews += iChange;
    }

    std::mutex m_lock;
    std::condition_variable m_changed;
    std::map<std::string, Trouble> m_troubles;
    std::vector<std::string> m_calls;
    std::set<std::thread::id> m_threads;
    std::atomic<int> m_iViews{0};
    std::atomic<int> m_iLife{0};
    std::atomic<bool> m_bRuns{true};
};

/// One client's view of the program.
class FakeProgram::View : public PortServer {
public:
    explicit View(FakeProgram& program) : m_program(program) { m_program.CountView(1); }
    ~View() override { m_program.CountView(-1); }

    bool attach(const std::string& sClientName, const std::shared_ptr<PacketEvents>& pEvents) override {
        if (pEvents)
            m_program.pPacketEvents = pEvents;
        return Enter("attach", sClientName);
    }
    bool selectPort(const std::string& sPortName, DWORD) override { return Enter("selectPort", sPortName); }
    std::vector<std::string> portNames() override {
        Enter("portNames");
        return {"COM5", "COM300"};
    }
    std::vector<PhoneEntry> phones() override {
        Enter("phones");
        return {{"COM300", "b", "c", "d"}, {"COM7", "", "", ""}};
    }

    bool sendSync(std::span<const unsigned char> request, DWORD iTimeOut_ms,
                  std::vector<unsigned char>& response) override {
        const handset::Bytes bytes(request.begin(), request.end());
        return Enter("sendSync", handset::ToHex(bytes)) && m_program.exchange(bytes, iTimeOut_ms, response);
    }
    bool readNv(unsigned short iItem, std::vector<unsigned char>& data) override {
        data = {1, 2, 3};
        return Enter("readNv", std::to_string(iItem));
    }
    bool writeNv(unsigned short iItem, std::span<const unsigned char> data) override {
        return Enter("writeNv", std::to_string(iItem) + ": " + handset::ToHex({data.begin(), data.end()}));
    }
    bool control(PhoneControl eControl, const std::string& sText, DWORD& iValue) override {
        iValue = 8;
        return Enter("control", std::to_string(static_cast<int>(eControl)) + sText);
    }
    ResetOutcome reset(DWORD) override {
        return Enter("reset") ? ResetOutcome::Done : ResetOutcome::NeverReset;
    }

    bool begin(ServerTask eTask, const std::vector<std::string>& arguments,
               const std::shared_ptr<TaskEvents>& pEvents) override {
        std::string sText = std::to_string(static_cast<int>(eTask));
        for (const std::string& sArgument : arguments)
            sText += "|" + sArgument;
        if (!Enter("begin", sText))
            return false;
        m_program.task(*pEvents);
        return true;
    }
    void abort() override { Enter("abort"); }

private:
    bool Enter(const std::string& sFunction, const std::string& sArguments = "") {
        if (m_iLife != m_program.m_iLife)
            throw ComException("the server is gone");
        return m_program.Enter(sFunction, sArguments);
    }

    FakeProgram& m_program;
    const int m_iLife = m_program.m_iLife;
};

inline FakeProgram::FakeProgram() {
    AttachPortServer([this] { return Enter("make") && m_bRuns ? std::make_shared<View>(*this) : nullptr; });
}
