#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "support/collected.h"
#include "support/newprocess.h"
#include "utilities/messagefilesregistry.h"

namespace tov {
namespace {

// A directory with a file formattermessages.xml of these contents.
std::string directoryWith(const char* pContents)
{
    const std::filesystem::path tDirectory = std::filesystem::path(::testing::TempDir()) / "formattermessages_test";
    std::filesystem::create_directories(tDirectory);
    std::ofstream(tDirectory / "formattermessages.xml") << pContents;
    return tDirectory.string();
}

TEST(FormatterMessages, AreReadFromTheFileRegisteredAtLoad)
{
    expectInNewProcess(
        []
        {
            MessageFilesRegistry& tRegistry = MessageFilesRegistry::getInstance();
            tRegistry.addDirectory(directoryWith(
                "<messages><language tag='en'><message id='probe'>found</message></language></messages>"));
            const String* psText = tRegistry.getMessageTable()->findText(L"probe", L"en-US");
            return psText && *psText == L"found";
        });
}

TEST(FormatterMessages, AreNotNeeded)
{
    expectInNewProcess(
        []
        {
            const CollectedLog tLog;
            MessageFilesRegistry& tRegistry = MessageFilesRegistry::getInstance();
            tRegistry.addDirectory(directoryWith("<messages><broken"));
            const bool bEmpty = tRegistry.getMessageTable()->size() == 0;
            tRegistry.getMessageTable();
            return bEmpty && tLog.count() == 1 && tLog.all()[0].eSeverity == Logger::kWarning &&
                   tLog.all()[0].sText.find(L"formattermessages.xml") != String::npos;
        });
}

}  // namespace
}  // namespace tov
