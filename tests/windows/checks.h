// A list of checks for programs that run on Windows, and their way to the world outside of it.
#pragma once

#include <functional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

/// A check is a function under a name; it fails when it called Fail.
struct Check {
    const char* sName;
    void (*pfnRun)();
};

/// RunChecks runs the checks, prints "ok NAME" or "FAILED NAME" for each, and returns the exit status of the
/// program: 0 when all went well.
int RunChecks(const std::vector<Check>& checks);

/// Fail prints what is wrong and lets the running check fail; the check goes on. Any thread.
void Fail(const char* sFile, int iLine, const std::string& sWhat);

/// Inform prints a line of information. Any thread.
void Inform(const std::string& sWhat);

/// Ask has the script that started the program (session.py) do something outside of Windows, and returns its
/// answer, without the line ends: such as "handset unplug".
std::string Ask(const std::string& sRequest);

/// Eventually waits until `condition` holds; false when that takes longer than 30 seconds.
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
