#include "utilities/config.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

#include "support/collected.h"
#include "temporarydirectory.h"

namespace tov {
namespace {

constexpr PathFilter kPath(L"Limits");

std::shared_ptr<ConfigReader> readerOf(int nValue)
{
    return ConfigReader::fromText("<r><Limits n='" + std::to_string(nValue) + "'/></r>");
}

// Takes the global reader away at the end of a test.
class GlobalReader
{
public:
    explicit GlobalReader(std::shared_ptr<ConfigReader> pReader)
    {
        ConfigReader::setGlobalInstance(std::move(pReader));
    }
    ~GlobalReader() { ConfigReader::setGlobalInstance(nullptr); }
};

class Limits
{
public:
    Limits() { m_tConfig.init(*this, &Limits::loadConfig); }

    std::atomic<int> m_nValue{-1};
    std::atomic<int> m_nLoads{0};
    std::atomic<int> m_nKind{-1};
    bool m_bAccept = true;
    bool m_bThrow = false;

private:
    bool loadConfig(const ConfigReader& tReader, EConfig eKind)
    {
        ++m_nLoads;
        m_nKind = eKind;
        if (m_bThrow)
            throw std::runtime_error("no good");
        m_nValue = ConfigValueExtractor(tReader, kPath).getInt(L"n", 0);
        return m_bAccept;
    }

    Config<Limits> m_tConfig;
};

TEST(Config, WithoutAReaderNothingIsLoaded)
{
    const Limits tLimits;
    EXPECT_FALSE(ConfigReader::getGlobalInstance());
    EXPECT_EQ(tLimits.m_nLoads, 0);
}

TEST(Config, LoadsAtOnceWhereThereIsAReader)
{
    const GlobalReader tGlobal(readerOf(5));
    const Limits tLimits;
    EXPECT_EQ(tLimits.m_nValue, 5);
    EXPECT_EQ(tLimits.m_nLoads, 1);
    EXPECT_EQ(tLimits.m_nKind, ConfigBase::kLoad);
}

TEST(Config, LoadsWhenAReaderIsSetAndKeepsItsValuesWhenItIsTakenAway)
{
    const Limits tLimits;
    {
        const GlobalReader tGlobal(readerOf(6));
        EXPECT_EQ(tLimits.m_nValue, 6);
        EXPECT_EQ(tLimits.m_nKind, ConfigBase::kLoad);
    }
    EXPECT_EQ(tLimits.m_nValue, 6);
    EXPECT_EQ(tLimits.m_nLoads, 1);
}

TEST(Config, LoadsAgainAtAReloadOfTheGlobalReaderOnly)
{
    const TemporaryDirectory tDirectory;
    const std::shared_ptr<ConfigReader> pGlobal =
        ConfigReader::fromFile(tDirectory.write("c.xml", "<r><Limits n='1'/></r>"));
    const std::shared_ptr<ConfigReader> pOther = ConfigReader::fromFile(tDirectory.pathOf("c.xml"));
    const GlobalReader tGlobal(pGlobal);
    const Limits tLimits;
    tDirectory.write("c.xml", "<r><Limits n='2'/></r>");
    EXPECT_TRUE(pOther->reload());
    EXPECT_EQ(tLimits.m_nValue, 1);
    EXPECT_TRUE(pGlobal->reload());
    EXPECT_EQ(tLimits.m_nValue, 2);
    EXPECT_EQ(tLimits.m_nKind, ConfigBase::kReload);
    tDirectory.write("c.xml", "<r>");
    EXPECT_FALSE(pGlobal->reload());
    EXPECT_EQ(tLimits.m_nLoads, 2);
}

TEST(Config, AReaderMadeFromATextReloadsTheSame)
{
    const std::shared_ptr<ConfigReader> pReader = readerOf(8);
    const GlobalReader tGlobal(pReader);
    Limits tLimits;
    tLimits.m_nValue = 0;
    EXPECT_TRUE(pReader->reload());
    EXPECT_EQ(tLimits.m_nValue, 8);
    EXPECT_EQ(tLimits.m_nKind, ConfigBase::kReload);
}

TEST(Config, ABindingThatHasEndedIsNotLoaded)
{
    auto pLimits = std::make_unique<Limits>();
    const Limits tOther;
    pLimits.reset();
    const GlobalReader tGlobal(readerOf(9));
    EXPECT_EQ(tOther.m_nValue, 9);
}

TEST(Config, ALoadThatIsRefusedIsLogged)
{
    Limits tLimits;
    tLimits.m_bAccept = false;
    const CollectedLog tLog;
    const GlobalReader tGlobal(readerOf(1));
    ASSERT_EQ(tLog.count(), 1u);
    EXPECT_EQ(tLog.all()[0].eSeverity, Logger::kWarning);
}

TEST(Config, AnExceptionIsLoggedAndPassedOnAfterTheOthersWereLoaded)
{
    Limits tBad;
    tBad.m_bThrow = true;
    const Limits tGood;
    const CollectedLog tLog;
    EXPECT_THROW(ConfigReader::setGlobalInstance(readerOf(3)), std::runtime_error);
    EXPECT_EQ(tGood.m_nValue, 3);
    ASSERT_EQ(tLog.count(), 1u);
    EXPECT_EQ(tLog.all()[0].eSeverity, Logger::kError);
    EXPECT_EQ(tLog.all()[0].sText, L"loading the configuration failed: no good");
    tBad.m_bThrow = false;
    ConfigReader::setGlobalInstance(nullptr);
}

// A load that ends a binding that would have been next, and makes another.
class Changer
{
public:
    Changer()
    {
        m_tConfig.init(*this, &Changer::loadConfig);
        m_pEnds = std::make_unique<Limits>();
    }
    std::unique_ptr<Limits> m_pEnds;
    std::unique_ptr<Limits> m_pMade;

private:
    bool loadConfig(const ConfigReader&, EConfig)
    {
        m_pEnds.reset();
        m_pMade = std::make_unique<Limits>();
        return true;
    }

    Config<Changer> m_tConfig;
};

TEST(Config, ALoadMayEndAndMakeOtherBindings)
{
    const Changer tChanger;
    const GlobalReader tGlobal(readerOf(4));
    EXPECT_EQ(tChanger.m_pEnds, nullptr);
    ASSERT_NE(tChanger.m_pMade, nullptr);
    EXPECT_EQ(tChanger.m_pMade->m_nValue, 4);
}

TEST(Config, ValuesHaveDefaultsWhereThereIsNoElement)
{
    const std::shared_ptr<ConfigReader> pReader = ConfigReader::fromText("<r><A n='3' b='1' s='text'> in </A><E/></r>");
    const ConfigValueExtractor tThere(*pReader, PathFilter(L"A"));
    EXPECT_TRUE(tThere.hasElement());
    EXPECT_EQ(tThere.getInt(L"n", 7), 3);
    EXPECT_TRUE(tThere.getBool(L"b", false));
    EXPECT_EQ(tThere.getString(L"s"), L"text");
    EXPECT_EQ(tThere.getText(L"default"), L"in");
    const ConfigValueExtractor tEmpty(*pReader, PathFilter(L"E"));
    EXPECT_EQ(tEmpty.getText(L"default"), L"default");
    EXPECT_EQ(tEmpty.getString(L"s", L"default"), L"default");
    const ConfigValueExtractor tNone(*pReader, PathFilter(L"N"));
    EXPECT_FALSE(tNone.hasElement());
    EXPECT_EQ(tNone.getInt(L"n", 7), 7);
    EXPECT_TRUE(tNone.getBool(L"b", true));
    EXPECT_EQ(tNone.getString(L"s", L"default"), L"default");
    EXPECT_EQ(tNone.getText(L"default"), L"default");
}

TEST(Config, BindingsComeAndGoWhileTheConfigurationIsReloaded)
{
    const TemporaryDirectory tDirectory;
    const std::shared_ptr<ConfigReader> pReader =
        ConfigReader::fromFile(tDirectory.write("c.xml", "<r><Limits n='1'/></r>"));
    const GlobalReader tGlobal(pReader);
    std::atomic<bool> bDone{false};
    std::atomic<int> nWrong{0};
    std::vector<std::thread> vThreads;
    for (int i = 0; i < 4; ++i)
    {
        vThreads.emplace_back(
            [&]
            {
                do
                {
                    const Limits tLimits;
                    if (tLimits.m_nValue < 1 || !ConfigReader::getGlobalInstance())
                        ++nWrong;
                } while (!bDone);
            });
    }
    for (int i = 2; i <= 100; ++i)
    {
        tDirectory.write("c.xml", "<r><Limits n='" + std::to_string(i) + "'/></r>");
        EXPECT_TRUE(pReader->reload());
    }
    bDone = true;
    for (std::thread& tThread : vThreads)
        tThread.join();
    EXPECT_EQ(nWrong, 0);
}

}  // namespace
}  // namespace tov
