#include "progressbar.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <string>

namespace tov {

namespace {

constexpr int knCells = 40;

}  // namespace

ProgressBar::ProgressBar() : m_bTerminal(isatty(STDERR_FILENO) != 0), m_tNext(Clock::now() + std::chrono::seconds(1)) {}

ProgressBar::~ProgressBar()
{
    if (m_bShown)
        std::fprintf(stderr, "\r%*s\r", knCells + 8, "");
}

void ProgressBar::update(double fDone)
{
    if (!m_bTerminal || Clock::now() < m_tNext)
        return;
    m_tNext = Clock::now() + std::chrono::milliseconds(100);
    m_bShown = true;
    const double fShown = std::clamp(fDone, 0.0, 1.0);
    const std::string sFull(static_cast<std::size_t>(fShown * knCells), '#');
    std::fprintf(stderr, "\r[%-*s] %3d %%", knCells, sFull.c_str(), static_cast<int>(fShown * 100));
}

}  // namespace tov
