#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace tov {

// A row whose currency tag is unknown.
struct UnknownTag
{
    std::string sTag;    // as messages show it
    std::string sPlace;  // of the cell that holds it, with its column
};

// Picks the unknown tags that are worth a word: each once, a hundred of them, and one more that stands for all others.
// Who reads rows asks before working out where a tag stands, so that data full of unknown tags takes no longer.
class UnknownTagFilter
{
public:
    static constexpr std::size_t knNamed = 100;

    // Whether the tag, as messages show it, is one of these; false for all once there were enough.
    bool takes(const std::string& sTag);
    // Whether no tag is taken any more.
    bool isFull() const { return m_vTags.size() > knNamed; }

private:
    std::vector<std::string> m_vTags;
};

// Says on standard error which currency tags are unknown, each of them once, up to 100.
class UnknownTagWarnings
{
public:
    void add(const std::vector<UnknownTag>& vUnknownTags);

private:
    UnknownTagFilter m_tFilter;
};

}  // namespace tov
