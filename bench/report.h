// The results: a table for people, printed row by row, and a file for programs.
#pragma once

#include <limits>
#include <string>
#include <vector>

/// A figure that a row does not have.
constexpr double kNoFigure = std::numeric_limits<double>::quiet_NaN();

/// The limits of a row; a limit that is kNoFigure does not apply.
struct Goal {
    double fFactor = kNoFigure;   // of the client's cost divided by the floor's
    double fAdded_us = kNoFigure; // per exchange
};
constexpr Goal kNoGoal{};
constexpr Goal kNotMore{.fFactor = 1}; // the floor is itself a limit

/// One measurement: client and floor in the same run.
struct Row {
    std::string sItem;      // the measured item
    std::string sCondition; // the condition under which it was measured
    std::string sUnit;
    double fFloor = kNoFigure;
    double fClient = kNoFigure;
    double fAdded_us = kNoFigure; // added by the client to one exchange
    double fFactor = kNoFigure;   // cost of the client / cost of the floor
    Goal goal{};
    // Processor time of one exchange, all threads of this process together. Other programs on the machine
    // hardly affect it.
    double fFloorCpu_us = kNoFigure;
    double fClientCpu_us = kNoFigure;
};

/// Report prints every row as soon as it is added.
class Report {
public:
    void BeginTopic(const std::string& sTitle);
    void Add(const Row& row);
    /// Adds a time: less is better.
    void AddTime(Row row);
    /// Adds a rate: more is better.
    void AddRate(Row row);
    /// Writes all rows as JSON; false when the file cannot be written.
    bool WriteJson(const std::string& sFile) const;
    /// The number of rows that missed their goal.
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
