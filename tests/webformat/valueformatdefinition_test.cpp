#include "webformat/valueformatdefinition.h"

#include <gtest/gtest.h>

#include <atomic>
#include <random>
#include <thread>
#include <typeinfo>
#include <vector>

#include "definitiontesting.h"
#include "intl/ktwuilanguage.h"
#include "intl/locale.h"
#include "support/collected.h"
#include "webformat/dateformatters.h"
#include "webformat/numericformatter.h"

namespace tov {

namespace {

using DefType = WebValueFormatDefinition::DefType;
using Number = WebNumberFormatDefinition;
using Percent = WebPercentFormatDefinition;
using Currency = WebCurrencyFormatDefinition;
using Conditional = WebConditionalCurrencyFormatDefinition;
using Custom = WebCustomFormatDefinition;
using Text = WebTextFormatDefinition;
using Whistler = WebWhistlerFormatDefinition;
using Date = WebDateFormatDefinition;

struct TypeRow
{
    int nLine;
    int nValue;
    const wchar_t* pName;
};

constexpr TypeRow kTypeRows[] = {
    {__LINE__, 0, L"none"},
    {__LINE__, 1, L"custom"},
    {__LINE__, 2, L"text"},
    {__LINE__, 3, L"number"},
    {__LINE__, 4, L"date"},
    {__LINE__, 5, L"whistler"},
    {__LINE__, 6, L"currency"},
    {__LINE__, 7, L"percent"},
    {__LINE__, 8, L"datetime"},
    {__LINE__, 9, L"time"},
    {__LINE__, 10, L"conditionalcurrency"},
};

TEST(ValueFormatDefinition, NamesItsTypesBothWays)
{
    for (const TypeRow& tRow : kTypeRows)
    {
        EXPECT_EQ(WebValueFormatDefinition::typeFromName(tRow.pName), tRow.nValue) << "row at line " << tRow.nLine;
        EXPECT_STREQ(WebValueFormatDefinition::typeName(static_cast<DefType>(tRow.nValue)), tRow.pName);
    }
    EXPECT_EQ(WebValueFormatDefinition::kLastDef, 11);
    EXPECT_STREQ(WebValueFormatDefinition::typeName(WebValueFormatDefinition::kLastDef), L"");
}

TEST(ValueFormatDefinition, TakesAnyOtherNameForNone)
{
    for (const wchar_t* pName : {L"", L"Number", L"numbe", L"numbers", L"tov:number", L" number", L"zzz", L"aaa"})
        EXPECT_EQ(WebValueFormatDefinition::typeFromName(pName), WebValueFormatDefinition::kNone) << toUtf8(pName);
}

TEST(ValueFormatDefinition, HasTheConstantsOfExcelStyles)
{
    EXPECT_STREQ(WebValueFormatDefinition::ksMsoNumberFormat, L"mso-number-format:'");
    EXPECT_STREQ(WebValueFormatDefinition::ksQuotedPercent, L"&quot;%&quot;");
    EXPECT_EQ(WebValueFormatDefinition::kFormatPatternNormal, 0);
    EXPECT_EQ(WebValueFormatDefinition::kFormatPatternExcel, 1);
}

template <class Class>
bool isExactly(const Definition& hDefinition)
{
    const WebValueFormatDefinition* const pDefinition = hDefinition.getPointer();
    return pDefinition && typeid(*pDefinition) == typeid(Class);
}

struct ReadRow
{
    int nLine;
    const char* pRest;
    bool (*pIsExactly)(const Definition&);
    int nType;
};

constexpr ReadRow kReadRows[] = {
    {__LINE__, "xsi:type='tov:custom'/>", &isExactly<Custom>, 1},
    {__LINE__, "xsi:type='tov:text'/>", &isExactly<Text>, 2},
    {__LINE__, "xsi:type='tov:number'/>", &isExactly<Number>, 3},
    {__LINE__, "xsi:type='tov:date' biFormat='date'/>", &isExactly<Date>, 4},
    {__LINE__, "xsi:type='tov:whistler'/>", &isExactly<Whistler>, 5},
    {__LINE__, "xsi:type='tov:currency'/>", &isExactly<Currency>, 6},
    {__LINE__, "xsi:type='tov:percent'/>", &isExactly<Percent>, 7},
    // The types of timestamps and times are date definitions.
    {__LINE__, "xsi:type='tov:datetime' biFormat='timeStamp'/>", &isExactly<Date>, 4},
    {__LINE__, "xsi:type='tov:time' biFormat='time'/>", &isExactly<Date>, 4},
    {__LINE__,
     "xsi:type='tov:conditionalcurrency'><tov:currencyTagColumn><tovx:expr/></tov:currencyTagColumn></tov:dataFormat>",
     &isExactly<Conditional>, 10},
    {__LINE__, "xsi:type='number'/>", &isExactly<Number>, 3},        // a prefix is not needed
    {__LINE__, "xsi:type=' tov:number '/>", &isExactly<Number>, 3},  // blanks around a name do not count
};

TEST(ValueFormatDefinition, ReadsTheClassThatTheTypeNames)
{
    for (const ReadRow& tRow : kReadRows)
    {
        const Definition hDefinition = definitionOf(tRow.pRest);
        ASSERT_FALSE(hDefinition.isNull()) << "row at line " << tRow.nLine;
        EXPECT_TRUE(tRow.pIsExactly(hDefinition)) << "row at line " << tRow.nLine;
        EXPECT_EQ(hDefinition->GetDefType(), tRow.nType) << "row at line " << tRow.nLine;
    }
}

TEST(ValueFormatDefinition, ReadsANullHandleWhereNoTypeIsKnown)
{
    const CollectedAssertions tAssertions;
    for (const char* pRest : {"/>", "xsi:type='tov:none'/>", "xsi:type=''/>", "xsi:type='tov:unheard'/>",
                              "xsi:type='tov:Number'/>", "type='tov:number'/>"})
        EXPECT_TRUE(definitionOf(pRest).isNull()) << pRest;
    EXPECT_EQ(tAssertions.count(), 0u);
}

TEST(ValueFormatDefinition, WritesOneTypedElementIntoItsParent)
{
    XmlElement tColumn(schemas::Report::kqnColumn);
    tColumn.declarePrefix(L"tov", schemas::Report::kTovNamespace);
    const Definition hDefinition(new Custom(L"0.0"));
    XmlElement& tElement = WebValueFormatDefinition::setDataFormatElement(tColumn, hDefinition);
    EXPECT_EQ(&tElement, tColumn.findChild(schemas::Report::kqnDataFormat));
    const String* const pType = tElement.getAttribute(schemas::Instance::kXsiNamespace, schemas::Instance::kType);
    ASSERT_NE(pType, nullptr);
    EXPECT_EQ(*pType, L"tov:custom");
    EXPECT_EQ(tElement.getAttributeOr(L"customFormat"), L"0.0");
}

TEST(ValueFormatDefinition, WritesOverTheElementThatIsThere)
{
    XmlElement tColumn(schemas::Report::kqnColumn);
    Number* const pScaled = new Number(Number::kRed, true, 1, 3);
    pScaled->setScale(-3);
    const Definition hScaled(pScaled);
    const Definition hPlain(new Number(Number::kRed, true, 1, 3));
    XmlElement& tFirst = WebValueFormatDefinition::setDataFormatElement(tColumn, hScaled);
    XmlElement& tSecond = WebValueFormatDefinition::setDataFormatElement(tColumn, hPlain);
    EXPECT_EQ(&tFirst, &tSecond);
    EXPECT_EQ(tColumn.children().size(), 1u);
    EXPECT_FALSE(tSecond.hasAttribute(L"scale")) << "an older scale would still be read";
    EXPECT_EQ(WebValueFormatDefinition::CompareDefinitions(WebValueFormatDefinition::DynamicReadXML(tSecond), hPlain),
              0);
}

TEST(ValueFormatDefinition, RefusesToWriteANullHandle)
{
    const CollectedAssertions tAssertions;
    XmlElement tColumn(schemas::Report::kqnColumn);
    EXPECT_THROW(WebValueFormatDefinition::setDataFormatElement(tColumn, nullptr), InvalidHandleException);
    ASSERT_EQ(tAssertions.count(), 1u);
    EXPECT_EQ(tAssertions.all()[0].sExpression, "!hDef.isNull()");
    EXPECT_EQ(tAssertions.all()[0].sSource, "webformat/valueformatdefinition");
    EXPECT_TRUE(tColumn.children().empty());
}

TEST(ValueFormatDefinition, SortsNullFirstAndThenByType)
{
    const Definition hNull;
    const Definition hNumber(new Number(Number::kRedMinus, true, 9, 9));
    const Definition hDate(new Date(Date::kShortDate));
    EXPECT_EQ(WebValueFormatDefinition::CompareDefinitions(hNull, hNull), 0);
    EXPECT_EQ(WebValueFormatDefinition::CompareDefinitions(hNull, hNumber), -1);
    EXPECT_EQ(WebValueFormatDefinition::CompareDefinitions(hNumber, hNull), 1);
    EXPECT_EQ(WebValueFormatDefinition::CompareDefinitions(hNumber, hDate), -1);
    EXPECT_EQ(WebValueFormatDefinition::CompareDefinitions(hDate, hNumber), 1);
    EXPECT_EQ(WebValueFormatDefinition::CompareDefinitions(hNumber, hNumber), 0);
}

// A definition whose settings come from few values, so that equal ones are found among many.
class DefinitionMaker
{
public:
    explicit DefinitionMaker(unsigned nSeed) : m_tRandom(nSeed) {}

    Definition any()
    {
        switch (below(9))
        {
        case 0: return new Custom(text());
        case 1: return new Text(static_cast<Text::Type>(below(7)));
        case 2: return number<Number>();
        case 3: return new Date(static_cast<Date::Type>(below(20)), text(), String());
        case 4: return new Whistler(text());
        case 5: return scaled(new Currency(text(), negative(), flag(), below(4), below(4)));
        case 6: return number<Percent>();
        case 7: return scaled(new Conditional(text(), negative(), flag(), below(4), below(4), text()));
        default: return scaled(new Number(negative(), flag(), wide(), wide()));
        }
    }

private:
    unsigned below(unsigned nEnd) { return static_cast<unsigned>(m_tRandom() % nEnd); }
    unsigned wide() { return static_cast<unsigned>(m_tRandom()); }
    bool flag() { return below(2) == 0; }
    Number::NegativeFormat negative() { return static_cast<Number::NegativeFormat>(below(5)); }

    template <class Class>
    Definition number()
    {
        return scaled(new Class(negative(), flag(), below(4), below(4)));
    }

    Definition scaled(WebNumberFormatDefinitionBase* pDefinition)
    {
        pDefinition->setScale(static_cast<int>(below(3)) * -3);
        return pDefinition;
    }

    String text()
    {
        constexpr const wchar_t* aTexts[] = {
            L"", L"0", L"#,##0.00;[red](0)", L"a<b>&\"'c", L"  x ", L"é€😀", L"a\tb\nc\rd", L"Z", L"zz", L"yyyy"};
        return aTexts[below(std::size(aTexts))];
    }

    std::mt19937 m_tRandom;
};

TEST(ValueFormatDefinition, ReadsBackWhatItWrites)
{
    DefinitionMaker tMaker(20240305);
    for (int i = 0; i < 3000; ++i)
    {
        const Definition hDefinition = tMaker.any();
        const Definition hAgain = throughXml(hDefinition);
        ASSERT_FALSE(hAgain.isNull());
        EXPECT_EQ(WebValueFormatDefinition::CompareDefinitions(hDefinition, hAgain), 0) << i;
        EXPECT_EQ(settingsOf(hDefinition), settingsOf(hAgain)) << i;
        EXPECT_EQ(bytesOf(hDefinition), bytesOf(hAgain)) << i;
    }
}

TEST(ValueFormatDefinition, ClonesAreEqualAndStandAlone)
{
    DefinitionMaker tMaker(7);
    for (int i = 0; i < 500; ++i)
    {
        const Definition hDefinition = tMaker.any();
        const Definition hClone = hDefinition->clone();
        EXPECT_NE(hClone.getPointer(), hDefinition.getPointer());
        EXPECT_EQ(hClone->referenceCount(), 1u);
        const WebValueFormatDefinition& tClone = *hClone;
        const WebValueFormatDefinition& tDefinition = *hDefinition;
        EXPECT_EQ(typeid(tClone), typeid(tDefinition));
        EXPECT_EQ(settingsOf(hClone), settingsOf(hDefinition));
    }
}

int sign(int nOrder)
{
    return (nOrder > 0) - (nOrder < 0);
}

TEST(ValueFormatDefinition, OrdersDefinitionsTotally)
{
    DefinitionMaker tMaker(42);
    std::vector<Definition> vDefinitions(1);
    while (vDefinitions.size() < 90)
        vDefinitions.push_back(tMaker.any());
    const auto order = [&](std::size_t nLeft, std::size_t nRight)
    { return sign(WebValueFormatDefinition::CompareDefinitions(vDefinitions[nLeft], vDefinitions[nRight])); };
    for (std::size_t i = 0; i < vDefinitions.size(); ++i)
    {
        EXPECT_EQ(order(i, i), 0);
        for (std::size_t j = 0; j < vDefinitions.size(); ++j)
        {
            EXPECT_EQ(order(i, j), -order(j, i)) << i << ' ' << j;
            for (std::size_t k = 0; k < vDefinitions.size(); ++k)
            {
                if (order(i, j) <= 0 && order(j, k) <= 0)
                {
                    EXPECT_LE(order(i, k), 0) << i << ' ' << j << ' ' << k;
                    EXPECT_TRUE(order(i, k) < 0 || (order(i, j) == 0 && order(j, k) == 0)) << i << ' ' << j << ' ' << k;
                }
            }
        }
    }
}

TEST(ValueFormatDefinition, LeavesTheFormulaAloneWithoutATagColumn)
{
    for (const Definition& hDefinition :
         {Definition(new Number(Number::kMinus, false, 0, 0)), Definition(new Text), Definition(new Date(Date::kTime)),
          Definition(new Currency(L"EUR", Number::kMinus, false, 0, 0)), Definition(new Whistler(L"x"))})
    {
        String sFormula = L"before";
        hDefinition->populateCurrencyTagColumnFormulaIfApplies(sFormula);
        EXPECT_EQ(sFormula, L"before");
    }
}

TEST(ValueFormatDefinition, IsSharedByManyThreads)
{
    DefinitionMaker tMaker(3);
    std::vector<WebValueFormatDefinitionHandle> vShared;
    for (int i = 0; i < 20; ++i)
        vShared.push_back(tMaker.any());
    std::atomic<int> nWrong{0};
    const auto work = [&]
    {
        for (const WebValueFormatDefinitionHandle& hShared : vShared)
        {
            const WebValueFormatDefinitionHandle hCopy = hShared;
            const WebValueFormatDefinitionHandle hClone = hCopy->clone();
            nWrong += WebValueFormatDefinition::CompareDefinitions(hCopy, hClone) != 0;
            nWrong += WebValueFormatDefinition::CompareDefinitions(hCopy, throughXml(hClone)) != 0;
            nWrong += hCopy->getMsoStyle(Locale::kUSA, KTWUILanguage::kDefaultLanguage) !=
                      hClone->getMsoStyle(Locale::kUSA, KTWUILanguage::kDefaultLanguage);
        }
    };
    std::vector<std::thread> vThreads;
    for (int i = 0; i < 8; ++i)
        vThreads.emplace_back(
            [&]
            {
                for (int j = 0; j < 20; ++j)
                    work();
            });
    for (std::thread& tThread : vThreads)
        tThread.join();
    EXPECT_EQ(nWrong, 0);
    for (const WebValueFormatDefinitionHandle& hShared : vShared)
        EXPECT_EQ(hShared->referenceCount(), 1u);
}

}  // namespace

}  // namespace tov
