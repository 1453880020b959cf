// The table that a person reads while it grows, and the file that a program reads.
#pragma once

#include <limits>
#include <string>
#include <vector>

/// A figure that a row does not have.
constexpr double kNoFigure = std::numeric_limits<double>::quiet_NaN();

/// What a row is to keep to.
enum class Goal {
    None,
    Factor110, // the client costs at most 1.1 times what the floor costs
    Factor115, // the same, 1.15 times
    Added100,  // it adds at most 100 microseconds per exchange
};

/// One measurement, the client's beside its floor's of the same run.
struct Row {
    std::string sItem;      // what was measured
    std::string sCondition; // and under which circumstances
    std::string sUnit;
    double fFloor = kNoFigure;
    double fClient = kNoFigure;
    double fAdded_us = kNoFigure; // what the client adds to one exchange
    double fFactor = kNoFigure;   // cost of the client / cost of the floor
    Goal eGoal = Goal::None;
    // Processor time of one exchange, all threads of this process together: it hardly depends on what else
    // the machine does.
    double fFloorCpu_us = kNoFigure;
    double fClientCpu_us = kNoFigure;
};

/// Report prints every row as soon as it is added.
class Report {
public:
    void BeginTopic(const std::string& sTitle);
    void Add(const Row& row);
    /// A time: less is better.
    void AddTime(Row row);
    /// A rate: more is better.
    void AddRate(Row row);
    /// Writes all rows as JSON; false when the file cannot be written.
    bool WriteJson(const std::string& sFile) const;
    /// How many rows missed their goal.
    size_t Missed() const { return m_iMissed; }

private:
    struct Entry {
        std::string sTopic;
        Row row;
        bool bMet;
    };

    std::string m_sTopic;
    std::vector<Entry> m_entries;
    size_t m_iMissed = 0;
};
