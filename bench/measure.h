// Stop-watches, and the pairs of floor and client that every topic measures.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "bench/bare_line.h"
#include "bench/handset_process.h"
#include "bench/report.h"
#include "qlib/diag_ftm.h"

/// Time of one piece of work; processor time is that of all threads of this process.
struct Usage {
    double fWall_us = 0;
    double fCpu_us = 0;
};

Usage Measure(const std::function<void()>& work);

/// Throws std::runtime_error with that text unless bHolds.
void Require(bool bHolds, const char* sWhat);

/// The value below which that part (0 to 1) of the values lie; `values` is sorted.
double Percentile(std::vector<double>& values, double fPart);

/// How the handset behaves, and whether the client writes its text log.
struct Condition {
    const char* sName;
    unsigned iLatency_us;
    unsigned iChatter; // log records before every answer
    bool bLog;

    bool IsPlain() const { return iChatter == 0 && !bLog; }
    /// The goal of figures under this condition, when they have one.
    Goal GoalOf() const {
        return !IsPlain() ? Goal::None : iLatency_us == 0 ? Goal::Added100 : Goal::Factor115;
    }
};

constexpr Condition kConditions[] = {
    {"at once", 0, 0, false},       {"at once, log", 0, 0, true}, {"at once, flood", 0, 20, false},
    {"after 1 ms", 1000, 0, false}, {"1 ms, log", 1000, 0, true}, {"1 ms, flood", 1000, 20, false},
};

/// What the topics share. The handset's process must have been made before anything else.
struct Bench {
    HandsetProcess phone;
    Report report;
    bool bFull = false;

    std::string Local(const char* sName) const { return phone.Folder() + "/" + sName; }
    void Set(const Condition& condition);

    /// Runs both sides by turns, iRounds times each, and takes the fastest round of each side: the one that
    /// other programs on the machine disturbed least. Opening the port is not measured.
    struct Pair {
        Usage bare;
        Usage client;
    };
    Pair Compare(const Condition& condition, size_t iRounds, const std::function<void(BareLine&)>& bare,
                 const std::function<void(Diag_FTM&)>& client);
    /// So many rounds are worth while for work of so many exchanges.
    size_t RoundsFor(const Condition& condition, size_t iExchanges) const;
};

// The topics, each in a file of its name.
void MeasureExchanges(Bench& bench);
void MeasureListings(Bench& bench);
void MeasureTransfers(Bench& bench);
void MeasureFraming(Bench& bench);
void MeasureIdle(Bench& bench);
void MeasureMemory(Bench& bench);
void MeasurePortSearch(Bench& bench);
void MeasurePrograms(Bench& bench);

/// A connection to COM1 as the measurements use it, with the text log of the condition. Throws when the port
/// cannot be opened.
class Client {
public:
    Client(const Bench& bench, const Condition& condition);
    Diag_FTM& operator*() { return m_diag; }

private:
    Diag_FTM m_diag{1};
};

/// The client's side of the work, with a check of what it did.
void ClientStatus(Diag_FTM& diag, const std::string& sPath);
void ClientListing(Diag_FTM& diag, const std::string& sFolder, size_t iEntries);
void ClientDownload(Diag_FTM& diag, const std::string& sPath, const std::string& sLocal);
void ClientUpload(Diag_FTM& diag, const std::string& sLocal, const std::string& sPath);
