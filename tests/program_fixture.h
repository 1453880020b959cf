// Runs a program as its users do: from a shell, in a folder of its own.
#pragma once

#include <gmock/gmock.h>
#include <sys/wait.h>

#include <cstdio>
#include <string>
#include <vector>

#include "phone_fixture.h"

struct ProgramOutcome {
    int status = -1;
    std::string output; // both streams
};

/// Shell runs a command line and waits for it.
inline ProgramOutcome Shell(const std::string& sCommandLine) {
    ProgramOutcome outcome;
    FILE* pipe = popen(("{ " + sCommandLine + "; } 2>&1").c_str(), "r");
    if (!pipe)
        return outcome;
    char buffer[4096];
    while (const size_t iCount = fread(buffer, 1, sizeof buffer, pipe))
        outcome.output.append(buffer, iCount);
    const int iStatus = pclose(pipe);
    outcome.status = WIFEXITED(iStatus) ? WEXITSTATUS(iStatus) : -1;
    return outcome;
}

/// ProgramTest runs a program with arguments and checks its exit status and output.
class ProgramTest : public testing::Test {
protected:
    struct Step {
        std::string arguments;
        int status;
        std::string says; // part of the output
    };

    /// `sProgram`: the program, with the arguments that all runs have in common.
    explicit ProgramTest(std::string sProgram) : m_program(std::move(sProgram)) {}

    ProgramOutcome Run(const std::string& sArguments) const {
        return Shell("cd '" + m_local.Path() + "' && " + m_settings + " " + m_program + " " + sArguments);
    }

    void Expect(const std::vector<Step>& steps) const {
        for (const Step& step : steps) {
            const ProgramOutcome outcome = Run(step.arguments);
            EXPECT_EQ(outcome.status, step.status) << step.arguments << "\n" << outcome.output;
            EXPECT_THAT(outcome.output, testing::HasSubstr(step.says)) << step.arguments;
        }
    }

    const std::string m_program;
    LocalFolder m_local;
    std::string m_settings; // environment variables, placed before the program's name
};
