#include "outputfile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>

#include "inputerror.h"
#include "webbedrock/utf8.h"

namespace tov {

namespace {

constexpr std::size_t knBufferBytes = 1 << 16;
constexpr std::size_t knLongestPath = 4096;

// The file that a signal removes; a plain array, because a handler may look at nothing else.
char s_aUnfinished[knLongestPath];
volatile std::sig_atomic_t s_bUnfinished = 0;

extern "C" void removeUnfinishedFile(int nSignal)
{
    if (s_bUnfinished)
        unlink(s_aUnfinished);
    std::signal(nSignal, SIG_DFL);
    raise(nSignal);
}

void guardAgainstSignals(const std::string& sPath)
{
    if (sPath.size() >= knLongestPath)
        return;
    std::memcpy(s_aUnfinished, sPath.c_str(), sPath.size() + 1);
    s_bUnfinished = 1;
    for (const int nSignal : {SIGINT, SIGTERM, SIGHUP})
        if (std::signal(nSignal, &removeUnfinishedFile) == SIG_IGN)
            std::signal(nSignal, SIG_IGN);
}

// Holds the signals back that end the process, until the file is known to their handler.
class SignalsHeldBack
{
public:
    SignalsHeldBack()
    {
        sigset_t tSignals;
        sigemptyset(&tSignals);
        for (const int nSignal : {SIGINT, SIGTERM, SIGHUP})
            sigaddset(&tSignals, nSignal);
        pthread_sigmask(SIG_BLOCK, &tSignals, &m_tBefore);
    }
    ~SignalsHeldBack() { pthread_sigmask(SIG_SETMASK, &m_tBefore, nullptr); }

private:
    sigset_t m_tBefore;
};

mode_t permissionsOfNewFile()
{
    const mode_t nMask = umask(0);
    umask(nMask);
    return 0666 & ~nMask;
}

}  // namespace

OutputFile::OutputFile(const std::string& sPath) : m_sPath(sPath), m_sTarget(sPath)
{
    m_sBuffer.reserve(knBufferBytes);
    if (sPath.empty())
    {
        m_sPath = "standard output";
        m_nFile = STDOUT_FILENO;
        return;
    }
    struct stat tStatus = {};
    const bool bExists = stat(sPath.c_str(), &tStatus) == 0;
    if (bExists && S_ISDIR(tStatus.st_mode))
        throw InputError({sPath}, "found a folder, expected the name of a file");
    if (bExists && !S_ISREG(tStatus.st_mode))
    {
        m_nFile = open(sPath.c_str(), O_WRONLY | O_CLOEXEC);
        if (m_nFile < 0)
            fail("cannot be opened");
        return;
    }
    std::error_code tError;
    if (bExists)
        m_sTarget = std::filesystem::canonical(sPath, tError).string();
    openTemporary();
    fchmod(m_nFile, bExists ? tStatus.st_mode & 07777 : permissionsOfNewFile());
}

OutputFile::OutputFile(Scratch) : m_sPath("a temporary file")
{
    std::error_code tError;
    m_sTarget = (std::filesystem::temp_directory_path(tError) / "webformat").string();
    openTemporary();
}

void OutputFile::openTemporary()
{
    const std::size_t nName = m_sTarget.rfind('/') + 1;
    m_sTemporary = m_sTarget.substr(0, nName) + "." + m_sTarget.substr(nName) + ".XXXXXX";
    const SignalsHeldBack tHeldBack;
    m_nFile = mkostemp(m_sTemporary.data(), O_CLOEXEC);
    if (m_nFile < 0)
    {
        m_sTemporary.clear();
        fail("cannot be made");
    }
    guardAgainstSignals(m_sTemporary);
}

OutputFile::~OutputFile()
{
    if (m_nFile >= 0 && m_nFile != STDOUT_FILENO)
        close(m_nFile);
    if (m_sTemporary.empty())
        return;
    unlink(m_sTemporary.c_str());
    s_bUnfinished = 0;
}

void OutputFile::fail(const char* pWhat) const
{
    throw InputError({m_sPath}, std::string(pWhat) + ": " + std::strerror(errno));
}

void OutputFile::write(std::string_view sBytes)
{
    m_sBuffer += sBytes;
    if (m_sBuffer.size() >= knBufferBytes)
        flush();
}

void OutputFile::write(std::wstring_view sText)
{
    write(toUtf8(sText));
}

void OutputFile::flush()
{
    for (std::size_t nWritten = 0; nWritten < m_sBuffer.size();)
    {
        const ssize_t nStep = ::write(m_nFile, m_sBuffer.data() + nWritten, m_sBuffer.size() - nWritten);
        if (nStep < 0 && errno != EINTR)
            fail("cannot be written");
        nWritten += nStep > 0 ? static_cast<std::size_t>(nStep) : 0;
    }
    m_sBuffer.clear();
}

void OutputFile::commit()
{
    flush();
    if (m_sTemporary.empty())
        return;
    if (fsync(m_nFile) != 0)
        fail("cannot be written");
    if (rename(m_sTemporary.c_str(), m_sTarget.c_str()) != 0)
        fail("cannot be made");
    s_bUnfinished = 0;
    m_sTemporary.clear();
}

}  // namespace tov
