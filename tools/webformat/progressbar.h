#pragma once

#include <chrono>

namespace tov {

// Shows on standard error how far some work has come: only where that is a terminal, and only once the work has taken
// longer than a second. Redrawn ten times a second at most, wiped at the end.
class ProgressBar
{
public:
    ProgressBar();
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    // `fDone` is the finished share of the work, 0 to 1. Cheap enough to be called for every row.
    void update(double fDone);

private:
    using Clock = std::chrono::steady_clock;

    bool m_bTerminal;
    bool m_bShown = false;
    Clock::time_point m_tNext;
};

}  // namespace tov
