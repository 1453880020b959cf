// Checks for programs that run on Windows, and a way for them to reach the world outside Windows.
#pragma once

#include <functional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

/// A check is a function with a name. It fails if it calls Fail.
struct Check {
    const char* sName;
    void (*pfnRun)();
};

/// Runs the checks and prints "ok NAME" or "FAILED NAME" for each one. Returns the program's exit status: 0
/// if all passed.
int RunChecks(const std::vector<Check>& checks);

/// Prints what is wrong and marks the running check as failed; the check continues. Any thread.
void Fail(const char* sFile, int iLine, const std::string& sWhat);

/// Prints a line of information. Any thread.
void Inform(const std::string& sWhat);

/// Sends a request such as "handset unplug" to the script that started the program (session.py), which
/// performs it outside Windows. Returns the script's answer without line ends.
std::string Ask(const std::string& sRequest);

/// Waits until `condition` holds. Returns false when that takes longer than 30 seconds.
bool Eventually(const std::function<bool()>& condition);

template <class A, class B>
void ExpectEqual(const char* sFile, int iLine, const char* sExpression, const A& actual, const B& expected) {
    if (actual == expected)
        return;
    std::ostringstream text;
    text << sExpression << " is [" << actual << "] instead of [" << expected << "]";
    Fail(sFile, iLine, text.str());
}

#define EXPECT(condition) ((condition) ? void() : Fail(__FILE__, __LINE__, #condition))
#define EXPECT_EQ(actual, expected) ExpectEqual(__FILE__, __LINE__, #actual, actual, expected)
