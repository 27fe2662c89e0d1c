#include "xml/xmlparser.h"

#include <libxml/parser.h>
#include <libxml/parserInternals.h>

#include <algorithm>
#include <cstring>
#include <exception>
#include <new>
#include <string>
#include <utility>

#include "webbedrock/utf8.h"
#include "xml/schemas.h"
#include "xml/xmltext.h"
#include "xml/xsitype.h"

namespace tov {

namespace {

struct ContextDeleter
{
    void operator()(xmlParserCtxt* pContext) const
    {
        xmlFreeDoc(pContext->myDoc);
        xmlFreeParserCtxt(pContext);
    }
};

String wide(const xmlChar* pText, std::size_t nLength)
{
    return fromUtf8({reinterpret_cast<const char*>(pText), nLength}).value_or(L"\xFFFD");
}

String wide(const xmlChar* pText)
{
    return pText ? wide(pText, std::strlen(reinterpret_cast<const char*>(pText))) : String();
}

// Without entity substitution the parser hands "&" inside attribute values and namespaces over as "&#38;", and nothing
// else that way.
String withAmpersands(String sValue)
{
    constexpr std::wstring_view kAmpersand = L"&#38;";
    std::size_t nTo = 0;
    for (std::size_t nFrom = 0; nFrom < sValue.size();)
    {
        const bool bAmpersand = std::wstring_view(sValue).substr(nFrom, kAmpersand.size()) == kAmpersand;
        sValue[nTo++] = sValue[nFrom];
        nFrom += bAmpersand ? kAmpersand.size() : 1;
    }
    sValue.resize(nTo);
    return sValue;
}

String namespaceUri(const xmlChar* pUri)
{
    return withAmpersands(wide(pUri));
}

// The declarations of those predeclared prefixes that the root does not declare itself.
std::string missingDeclarations(const XmlScan& tScan, const XmlParseOptions& tOptions)
{
    std::string sDeclarations;
    for (const XmlPrefix& tPrefix : tOptions.vPredeclared)
    {
        const std::string sName = tPrefix.sPrefix.empty() ? "xmlns" : "xmlns:" + toUtf8(tPrefix.sPrefix);
        const std::vector<std::string>& vDeclared = tScan.vRootDeclarations;
        if (std::find(vDeclared.begin(), vDeclared.end(), sName) == vDeclared.end())
            sDeclarations += " " + sName + "=\"" + xmlQuotedText(tPrefix.sNamespace) + "\"";
    }
    return sDeclarations;
}

}  // namespace

// Builds the tree from the parser's events. The first error ends the work: later events are ignored and the rest of the
// input is blanked, so that the parser does not try to make sense of what follows.
class XmlTreeBuilder
{
public:
    XmlTreeBuilder(std::string_view sBytes, const XmlScan& tScan, const XmlParseOptions& tOptions, XmlError& tError)
        : m_sBytes(sBytes), m_tScan(tScan), m_sInserted(missingDeclarations(tScan, tOptions)), m_tError(tError)
    {
    }

    std::unique_ptr<XmlElement> parse();

private:
    void connect();
    void startElement(const xmlChar* pName, const xmlChar* pNamespace, int nDeclarations, const xmlChar** pDeclarations,
                      int nAttributes, const xmlChar** pAttributes);
    void addDeclarations(int nCount, const xmlChar** pDeclarations);
    void addAttributes(int nCount, const xmlChar** pAttributes);
    void checkXsiType();
    void endElement();
    void flushText();
    template <class Error>
    void receiveError(const Error& tError);
    bool isAboutTag(int nDomain, int nCode) const;
    std::size_t offset() const;
    XmlPlace placeOfTag() const;
    void fail(XmlPlace tPlace, String sMessage);
    void stop();

    // Runs one event's work; what it throws must not pass through the parser and is kept for later.
    template <class Work>
    static void handle(void* pUser, Work tWork)
    {
        XmlTreeBuilder& tBuilder = *static_cast<XmlTreeBuilder*>(pUser);
        if (tBuilder.m_bStopped)
            return;
        try
        {
            tWork(tBuilder);
        }
        catch (...)
        {
            tBuilder.m_tException = std::current_exception();
            tBuilder.stop();
        }
    }

    std::string_view m_sBytes;
    const XmlScan& m_tScan;
    const std::string m_sInserted;  // stands behind the root's name in what the parser reads
    XmlError& m_tError;
    std::unique_ptr<xmlParserCtxt, ContextDeleter> m_pContext;
    std::unique_ptr<XmlElement> m_pRoot;
    XmlElement* m_pOpen = nullptr;
    std::string m_sText;  // of the place that is being read, until the next tag
    std::size_t m_nElements = 0;
    std::size_t m_nAttributes = 0;
    bool m_bStopped = false;
    std::exception_ptr m_tException;
};

std::unique_ptr<XmlElement> XmlTreeBuilder::parse()
{
    std::string sInput(m_sBytes);
    sInput.insert(m_tScan.nRootNameEnd, m_tScan.nRootNameEnd ? m_sInserted : std::string());
    m_pContext.reset(xmlCreateMemoryParserCtxt(sInput.data(), static_cast<int>(sInput.size())));
    if (!m_pContext)
        throw std::bad_alloc();
    connect();
    xmlParseDocument(m_pContext.get());
    if (m_tException)
        std::rethrow_exception(m_tException);
    const bool bGood = m_pContext->wellFormed && m_pContext->nsWellFormed && m_pRoot && !m_pOpen;
    if (!bGood && !m_bStopped)
        fail(xmlPlaceOf(m_sBytes, offset()), L"the document is not well-formed");
    return m_bStopped ? nullptr : std::move(m_pRoot);
}

void XmlTreeBuilder::connect()
{
    xmlCtxtUseOptions(m_pContext.get(), XML_PARSE_NONET);
    xmlSAXHandler tSax = {};
    tSax.initialized = XML_SAX2_MAGIC;
    tSax.startElementNs = [](void* pUser, const xmlChar* pName, const xmlChar*, const xmlChar* pNamespace,
                             int nDeclarations, const xmlChar** pDeclarations, int nAttributes, int,
                             const xmlChar** pAttributes)
    {
        handle(pUser, [=](XmlTreeBuilder& tBuilder)
               { tBuilder.startElement(pName, pNamespace, nDeclarations, pDeclarations, nAttributes, pAttributes); });
    };
    tSax.endElementNs = [](void* pUser, const xmlChar*, const xmlChar*, const xmlChar*)
    { handle(pUser, [](XmlTreeBuilder& tBuilder) { tBuilder.endElement(); }); };
    tSax.characters = [](void* pUser, const xmlChar* pText, int nLength)
    {
        handle(pUser, [=](XmlTreeBuilder& tBuilder)
               { tBuilder.m_sText.append(reinterpret_cast<const char*>(pText), static_cast<std::size_t>(nLength)); });
    };
    tSax.ignorableWhitespace = tSax.characters;
    tSax.cdataBlock = tSax.characters;
    tSax.serror = [](void* pUser, auto* pError)
    { handle(pUser, [=](XmlTreeBuilder& tBuilder) { tBuilder.receiveError(*pError); }); };
    *m_pContext->sax = tSax;
    m_pContext->userData = this;
}

void XmlTreeBuilder::startElement(const xmlChar* pName, const xmlChar* pNamespace, int nDeclarations,
                                  const xmlChar** pDeclarations, int nAttributes, const xmlChar** pAttributes)
{
    flushText();
    if (m_pOpen)
    {
        m_pOpen = &m_pOpen->addChild(namespaceUri(pNamespace), wide(pName));
    }
    else
    {
        m_pRoot = std::make_unique<XmlElement>(namespaceUri(pNamespace), wide(pName));
        m_pOpen = m_pRoot.get();
    }
    m_pOpen->setPlace(placeOfTag());
    ++m_nElements;
    addDeclarations(nDeclarations, pDeclarations);
    addAttributes(nAttributes, pAttributes);
    checkXsiType();
}

void XmlTreeBuilder::addDeclarations(int nCount, const xmlChar** pDeclarations)
{
    for (int i = 0; i < nCount; ++i)
        m_pOpen->m_vPrefixes.push_back({wide(pDeclarations[2 * i]), namespaceUri(pDeclarations[2 * i + 1])});
}

void XmlTreeBuilder::addAttributes(int nCount, const xmlChar** pAttributes)
{
    m_pOpen->m_vAttributes.reserve(static_cast<std::size_t>(nCount));
    for (int i = 0; i < nCount; ++i, pAttributes += 5)
    {
        const std::size_t nLength = static_cast<std::size_t>(pAttributes[4] - pAttributes[3]);
        XmlAttribute tAttribute = {
            namespaceUri(pAttributes[2]), wide(pAttributes[0]), withAmpersands(wide(pAttributes[3], nLength)), {}};
        if (m_nAttributes < m_tScan.vAttributes.size())
            tAttribute.tPlace = m_tScan.vAttributes[m_nAttributes++];
        m_pOpen->m_vAttributes.push_back(std::move(tAttribute));
    }
}

void XmlTreeBuilder::checkXsiType()
{
    const XmlAttribute* pType = m_pOpen->findAttribute(schemas::Instance::kXsiNamespace, schemas::Instance::kType);
    if (!pType)
        return;
    const XsiTypeName tName = splitXsiType(pType->sValue);
    if (!isXsiTypeDeclared(*m_pOpen, tName))
        fail(pType->tPlace, L"the prefix \"" + String(tName.sPrefix) + L"\" of the type is not declared");
}

void XmlTreeBuilder::endElement()
{
    flushText();
    m_pOpen = const_cast<XmlElement*>(m_pOpen->parent());
}

void XmlTreeBuilder::flushText()
{
    if (m_sText.empty())
        return;
    m_pOpen->appendText(fromUtf8(m_sText).value_or(L"\xFFFD"));
    m_sText.clear();
}

template <class Error>
void XmlTreeBuilder::receiveError(const Error& tError)
{
    if (tError.code == XML_ERR_NO_MEMORY)
        throw std::bad_alloc();
    if (tError.level == XML_ERR_WARNING)
        return;
    String sMessage = wide(reinterpret_cast<const xmlChar*>(tError.message));
    while (sMessage.ends_with(L'\n'))
        sMessage.pop_back();
    const bool bAboutTag = isAboutTag(tError.domain, tError.code);
    fail(bAboutTag ? placeOfTag() : xmlPlaceOf(m_sBytes, offset()), std::move(sMessage));
}

// Errors about a tag as a whole come when the parser has read it; people look for its start.
bool XmlTreeBuilder::isAboutTag(int nDomain, int nCode) const
{
    return m_nElements < m_tScan.vElements.size() &&
           (nDomain == XML_FROM_NAMESPACE || nCode == XML_ERR_ATTRIBUTE_REDEFINED);
}

// How far the parser is, in the bytes as they came.
std::size_t XmlTreeBuilder::offset() const
{
    const xmlParserInput* pInput = m_pContext->input;
    if (!pInput)
        return m_sBytes.size();
    const std::size_t nRead = static_cast<std::size_t>(pInput->cur - pInput->base) + pInput->consumed;
    if (m_tScan.nRootNameEnd == 0 || nRead <= m_tScan.nRootNameEnd)
        return nRead;
    return std::max(m_tScan.nRootNameEnd, nRead - std::min(nRead, m_sInserted.size()));
}

// Of the next element; each tag is counted when it has been read.
XmlPlace XmlTreeBuilder::placeOfTag() const
{
    return m_nElements < m_tScan.vElements.size() ? m_tScan.vElements[m_nElements] : XmlPlace{};
}

void XmlTreeBuilder::fail(XmlPlace tPlace, String sMessage)
{
    m_tError = {std::move(sMessage), tPlace.nLine, tPlace.nColumn};
    stop();
}

void XmlTreeBuilder::stop()
{
    m_bStopped = true;
    m_pContext->disableSAX = 1;
    // xmlStopParser frees the text that the parser's functions on the stack may still look at. The parser ends at a
    // zero byte as well, and its text is a copy of its own.
    if (const xmlParserInput* pInput = m_pContext->input; pInput && pInput->cur && pInput->cur < pInput->end)
        std::memset(const_cast<xmlChar*>(pInput->cur), 0, static_cast<std::size_t>(pInput->end - pInput->cur));
}

std::unique_ptr<XmlElement> parseScannedXml(std::string_view sBytes, const XmlScan& tScan,
                                            const XmlParseOptions& tOptions, XmlError& tError)
{
    // Set up once, before the first parser of any thread.
    static const bool s_bReady = (xmlInitParser(), true);
    static_cast<void>(s_bReady);
    return XmlTreeBuilder(sBytes, tScan, tOptions, tError).parse();
}

}  // namespace tov
