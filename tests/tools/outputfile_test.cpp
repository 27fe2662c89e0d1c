#include "tools/webformat/outputfile.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace tov {

TEST(OutputFile, KeepsScratchFilesFromOthersAndRemovesThem)
{
    std::string sPath;
    {
        const OutputFile tScratch = OutputFile::scratch();
        sPath = tScratch.temporaryPath();
        struct stat tStatus = {};
        ASSERT_EQ(stat(sPath.c_str(), &tStatus), 0);
        EXPECT_EQ(tStatus.st_mode & 07777, 0600u);
        EXPECT_EQ(tStatus.st_size, 0);
    }
    struct stat tStatus = {};
    EXPECT_NE(stat(sPath.c_str(), &tStatus), 0);
}

}  // namespace tov
