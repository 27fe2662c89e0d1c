#include "corefacade/serverzone.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <system_error>

#include "webbedrock/utf8.h"

namespace tov {

namespace {

constexpr std::size_t kMaxZoneFile = 256 * 1024;

std::size_t findName(const ZoneList& tList, std::string_view sName)
{
    const std::optional<String> sWide = fromUtf8(sName);
    return sWide ? tList.find(*sWide) : tList.all().size();
}

// The part of a path behind the folder of zone data, whatever comes before that: "../usr/share/zoneinfo/Asia/Tokyo".
std::string_view behindZoneFolder(std::string_view sPath)
{
    constexpr std::string_view kFolder = "/zoneinfo/";
    const std::size_t nFolder = sPath.rfind(kFolder);
    return nFolder == sPath.npos ? std::string_view() : sPath.substr(nFolder + kFolder.size());
}

std::size_t findByContents(const ZoneList& tList, const std::string& sFolder, const std::string& sLocalTime)
{
    const std::string sContents = readSmallFile(sLocalTime, kMaxZoneFile);
    if (sContents.empty())
        return tList.all().size();
    for (std::size_t n = 0; n < tList.all().size(); ++n)
    {
        const ZoneList::Zone& tZone = tList.all()[n];
        if (tZone.nTarget == n && readSmallFile(sFolder + '/' + toUtf8(tZone.sId), kMaxZoneFile) == sContents)
            return n;
    }
    return tList.all().size();
}

std::size_t findLocalTime(const ZoneList& tList, const std::string& sFolder, const std::string& sLocalTime)
{
    std::error_code tError;
    const std::string sTarget = std::filesystem::read_symlink(sLocalTime, tError).string();
    const std::size_t nFound = findName(tList, behindZoneFolder(sTarget));
    return nFound < tList.all().size() ? nFound : findByContents(tList, sFolder, sLocalTime);
}

}  // namespace

std::string readSmallFile(const std::string& sPath, std::size_t nLimit)
{
    std::error_code tError;
    if (!std::filesystem::is_regular_file(sPath, tError))
        return {};
    const std::uintmax_t nSize = std::filesystem::file_size(sPath, tError);
    if (tError || nSize > nLimit)
        return {};
    std::string sBytes(static_cast<std::size_t>(nSize), '\0');
    std::ifstream tFile(sPath, std::ios::binary);
    tFile.read(sBytes.data(), static_cast<std::streamsize>(nSize));
    return tFile.gcount() == static_cast<std::streamsize>(nSize) ? sBytes : std::string();
}

std::size_t findServerZone(const ZoneList& tList, const std::string& sFolder, const std::string& sLocalTime)
{
    const char* const pTz = std::getenv("TZ");
    if (!pTz)
        return findLocalTime(tList, sFolder, sLocalTime);
    std::string_view sName = pTz;
    if (sName.starts_with(':'))
        sName.remove_prefix(1);
    if (sName == sLocalTime)
        return findLocalTime(tList, sFolder, sLocalTime);
    if (sName.starts_with(sFolder + '/'))
        sName.remove_prefix(sFolder.size() + 1);
    return findName(tList, sName);
}

}  // namespace tov
