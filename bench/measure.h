// Stopwatches, and the pair of floor and client that every topic measures.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "bench/bare_line.h"
#include "bench/handset_process.h"
#include "bench/report.h"
#include "qlib/diag_ftm.h"

/// Time of one piece of work. Processor time counts all threads of this process.
struct Usage {
    double fWall_us = 0;
    double fCpu_us = 0;
};

/// Replaces `best` by `usage` when that was faster, or the first.
void KeepFaster(Usage& best, const Usage& usage);

/// Rounds of the same work.
class Rounds {
public:
    void Add(const Usage& usage);
    /// The medians of both times.
    Usage Median();

private:
    std::vector<double> m_wall_us;
    std::vector<double> m_cpu_us;
};

Usage Measure(const std::function<void()>& work);

/// Throws std::runtime_error(sWhat) unless bHolds.
void Require(bool bHolds, const char* sWhat);

/// The value below which the fraction fPart (0 to 1) of the values lies. Sorts `values`.
double Percentile(std::vector<double>& values, double fPart);

/// The behaviour of the handset, whether the client writes its text log, and the goal of one exchange.
struct Condition {
    const char* sName;
    unsigned iLatency_us;
    unsigned iChatter; // log records before every response
    bool bLog;
    Goal goal;

    bool IsPlain() const { return iChatter == 0 && !bLog; }
};

constexpr Condition kAtOnce{"at once", 0, 0, false, {.fFactor = 1.5, .fAdded_us = 25}};
constexpr Condition kAtOnceWithLog{"at once, log", 0, 0, true, kNoGoal};
constexpr Condition kAtOnceInFlood{"at once, flood", 0, 20, false, {.fFactor = 1.5}};
constexpr Condition kAfter200us{"after 200 us", 200, 0, false, {.fFactor = 1.1}};
constexpr Condition kAfter1ms{"after 1 ms", 1000, 0, false, {.fFactor = 1.04}};
constexpr Condition kConditions[] = {
    kAtOnce,
    kAtOnceWithLog,
    kAtOnceInFlood,
    kAfter200us,
    kAfter1ms,
    {"1 ms, log", 1000, 0, true, kNoGoal},
    {"1 ms, flood", 1000, 20, false, kNoGoal},
};

/// Exchanges that each side makes before a round.
constexpr size_t kNotMeasured = 1;

/// Shared by the topics. Make the handset's process before anything else.
struct Bench {
    HandsetProcess phone;
    Report report;
    bool bFull = false;

    std::string Local(const char* sName) const { return phone.Folder() + "/" + sName; }
    void Set(const Condition& condition);

    /// Runs both sides in turn, iRounds times each, and returns the median round of each side. Does not
    /// measure opening the port and a first exchange, during which the client's threads start.
    struct Pair {
        Usage bare;
        Usage client;
    };
    Pair Compare(const Condition& condition, size_t iRounds, const std::function<void(BareLine&)>& bare,
                 const std::function<void(Diag_FTM&)>& client);
    /// A useful number of rounds for work of iExchanges exchanges.
    size_t RoundsFor(const Condition& condition, size_t iExchanges) const;
};

// The topics, one per source file.
void MeasureExchanges(Bench& bench);
void MeasureListings(Bench& bench);
void MeasureTransfers(Bench& bench);
void MeasureFraming(Bench& bench);
void MeasureIdle(Bench& bench);
void MeasureMemory(Bench& bench);
void MeasurePortSearch(Bench& bench);
void MeasurePrograms(Bench& bench);
void MeasureMounted(Bench& bench);

/// A connection to COM1, with the text log of the condition. Throws when the port cannot be opened.
class Client {
public:
    Client(const Bench& bench, const Condition& condition);
    Diag_FTM& operator*() { return m_diag; }

private:
    Diag_FTM m_diag{1};
};

/// The client's side of the work. Throws when the result is wrong.
void ClientStatus(Diag_FTM& diag, const std::string& sPath);
void ClientListing(Diag_FTM& diag, const std::string& sFolder, size_t iEntries);
void ClientDownload(Diag_FTM& diag, const std::string& sPath, const std::string& sLocal);
void ClientUpload(Diag_FTM& diag, const std::string& sLocal, const std::string& sPath);
