#include "utilities/messagefilesregistry.h"

namespace tov {

namespace {

bool registerMessages()
{
    MessageFilesRegistry::getInstance().registerMessageFiles({"formattermessages.xml"});
    return true;
}

// At load only the name is remembered, by a registry that makes itself on first use; the file is read when a text is
// first asked for. So it does not matter which file's static objects are made first.
[[maybe_unused]] const bool s_bRegistered = registerMessages();

}  // namespace

}  // namespace tov
