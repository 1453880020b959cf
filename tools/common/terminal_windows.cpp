// The terminal on Windows.
#include <fcntl.h>
#include <io.h>
#include <windows.h>

// Must follow the system's main header, whose types it uses.
#include <shellapi.h>

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <mutex>
#include <thread>

#include "common/failure.h"
#include "common/terminal.h"

namespace tools {
namespace {

/// While a Utf8Console lives, the console shows UTF-8. It shows a character only when all bytes of it are
/// written at once, but the compiler's printf writes single bytes to streams without a buffer. So the streams
/// that lead to a console are buffered, and a thread flushes them soon after.
class Utf8Console {
public:
    Utf8Console() : m_codePage(GetConsoleOutputCP()) {
        SetConsoleOutputCP(CP_UTF8);
        for (std::FILE* stream : {stdout, stderr}) {
            if (!_isatty(_fileno(stream)))
                continue;
            std::setvbuf(stream, nullptr, _IOFBF, kBufferSize);
            // As text, some run-times write each byte as a character. The console ends lines at line feeds.
            _setmode(_fileno(stream), _O_BINARY);
        }
        m_flusher = std::jthread([this](const std::stop_token& stop) { FlushUntil(stop); });
    }
    ~Utf8Console() {
        m_flusher.request_stop();
        m_flusher.join();
        Flush();
        SetConsoleOutputCP(m_codePage);
    }
    Utf8Console(const Utf8Console&) = delete;
    Utf8Console& operator=(const Utf8Console&) = delete;

private:
    static constexpr size_t kBufferSize = 4096;
    static constexpr auto kSoon = std::chrono::milliseconds(30);

    static void Flush() {
        std::fflush(stdout);
        std::fflush(stderr);
    }

    void FlushUntil(const std::stop_token& stop) {
        std::mutex mutex;
        std::unique_lock lock(mutex);
        while (!m_stopping.wait_for(lock, stop, kSoon, [&] { return stop.stop_requested(); }))
            Flush();
    }

    const UINT m_codePage;
    std::condition_variable_any m_stopping;
    std::jthread m_flusher;
};

} // namespace

std::vector<std::string> CommandLineWords(int, char**) {
    // The words of main are in the code page, and names of files have taken the place of patterns.
    int count = 0;
    const std::unique_ptr<wchar_t*, decltype(&LocalFree)> words(CommandLineToArgvW(GetCommandLineW(), &count),
                                                                &LocalFree);
    if (words == nullptr)
        throw Failure("the command line cannot be read", Status::Usage);
    std::vector<std::string> result;
    for (int i = 1; i < count; ++i)
        result.push_back(std::filesystem::path(words.get()[i]).string()); // in UTF-8
    return result;
}

void ShowUtf8() {
    if (GetConsoleOutputCP() != 0)
        static const Utf8Console console;
}

int TerminalWidth() {
    CONSOLE_SCREEN_BUFFER_INFO info = {};
    if (!GetConsoleScreenBufferInfo(GetStdHandle(STD_OUTPUT_HANDLE), &info))
        return 0;
    return info.srWindow.Right - info.srWindow.Left + 1;
}

void LetWritesFail() {} // they do

} // namespace tools
