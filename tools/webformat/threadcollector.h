#pragma once

#include <string>
#include <vector>

#include "jsonvalue.h"

namespace tov {

// Collects the assertions and log lines that are raised on the thread that made it, as long as it lives. One a thread
// at a time; other threads are not affected. Where no collector lives, both go where they went before.
class ThreadCollector
{
public:
    ThreadCollector();
    ~ThreadCollector();
    ThreadCollector(const ThreadCollector&) = delete;
    ThreadCollector& operator=(const ThreadCollector&) = delete;

    // Adds "assertions": [{"expression","source"}] and "log": [text] where there are any.
    void addTo(JsonObject& tResponse) const;

    // Makes the process report to collectors; once, before the first of them.
    static void install();

private:
    friend struct CollectorEvents;

    std::vector<JsonObject> m_vAssertions;
    std::vector<std::string> m_vLog;
};

// The members as a JSON array: [{...},{...}].
std::string jsonArray(const std::vector<JsonObject>& vObjects);

// Texts as a JSON array of strings.
std::string jsonArray(const std::vector<std::string>& vTexts);

}  // namespace tov
