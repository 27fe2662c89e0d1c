#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "webbedrock/export.h"
#include "webbedrock/string.h"

namespace tov {

// The name of an element or attribute: a namespace URI (L"" for none) and a local name. Holds pointers to constants.
struct XmlQualifiedName
{
    const wchar_t* pNamespace;
    const wchar_t* pLocalName;
};

// A place in a document: line and column of its first character, both from 1, columns counted in characters. 0 and 0
// for what was made by code.
struct XmlPlace
{
    int nLine = 0;
    int nColumn = 0;
};

struct XmlAttribute
{
    String sNamespace;  // empty: no namespace
    String sLocalName;
    String sValue;
    XmlPlace tPlace;  // of the value's first character
};

// A prefix and the namespace it stands for; the empty prefix is the default namespace.
struct XmlPrefix
{
    String sPrefix;
    String sNamespace;
};

// One element of an XML tree: its name, attributes, prefix declarations, text and child elements.
//
// Example, for <tov:dataFormat xmlns:tov="urn:tov:schemas:report:v1" minDigits="3">
// <tov:note>x</tov:note></tov:dataFormat>
//     tElement.localName()                       -> "dataFormat"
//     tElement.getUnsignedAttribute(L"minDigits", 2) -> 3
//     tElement.findChild({L"urn:tov:schemas:report:v1", L"note"})->innerText() -> "x"
//
// An element owns its children; their addresses stay the same until they are removed or their parent dies. A copy is
// deep and stands alone: it takes along the prefixes that were in scope where its original stood. Trees are copied and
// destroyed without recursion, whatever their depth. One tree belongs to one thread while it changes; any number of
// threads may read it.
class WEBFORMAT_EXPORT XmlElement
{
public:
    XmlElement(std::wstring_view sNamespace, std::wstring_view sLocalName);
    explicit XmlElement(const XmlQualifiedName& tName) : XmlElement(tName.pNamespace, tName.pLocalName) {}
    XmlElement(const XmlElement& tOther);
    XmlElement& operator=(const XmlElement& tOther);  // the element stays where it stands in its tree
    ~XmlElement();

    const String& localName() const { return m_sLocalName; }
    const String& namespaceUri() const { return *m_pNamespace; }
    bool hasName(const XmlQualifiedName& tName) const;

    // Where the element's "<" stands in its document.
    int lineNumber() const { return m_tPlace.nLine; }
    int columnNumber() const { return m_tPlace.nColumn; }
    XmlPlace place() const { return m_tPlace; }
    void setPlace(XmlPlace tPlace) { m_tPlace = tPlace; }

    // The value of an attribute, or null. Without a namespace argument: the attribute in no namespace. The pointer
    // lives until the attributes change.
    const String* getAttribute(std::wstring_view sName) const { return getAttribute({}, sName); }
    const String* getAttribute(std::wstring_view sNamespace, std::wstring_view sName) const;
    bool hasAttribute(std::wstring_view sName) const { return getAttribute(sName) != nullptr; }
    String getAttributeOr(std::wstring_view sName, std::wstring_view sDefault = {}) const;

    // Typed reads of attributes in no namespace, as XML Schema writes them, blanks around them allowed: numbers are
    // decimal digits with an optional sign, booleans true, false, 1 and 0. What is absent, unreadable or out of the
    // type's range is the default.
    std::uint32_t getUnsignedAttribute(std::wstring_view sName, std::uint32_t nDefault) const;
    std::int32_t getIntAttribute(std::wstring_view sName, std::int32_t nDefault) const;
    bool getBoolAttribute(std::wstring_view sName, bool bDefault) const;

    // All attributes in the order in which they were set; prefix declarations are not among them.
    const std::vector<XmlAttribute>& attributes() const { return m_vAttributes; }
    const XmlAttribute* findAttribute(std::wstring_view sNamespace, std::wstring_view sName) const;

    // Sets an attribute; one that is there keeps its position. The typed forms write what the typed reads read.
    void setAttribute(std::wstring_view sName, std::wstring_view sValue) { setAttribute({}, sName, sValue); }
    void setAttribute(std::wstring_view sNamespace, std::wstring_view sName, std::wstring_view sValue);
    void setUnsignedAttribute(std::wstring_view sName, std::uint32_t nValue);
    void setIntAttribute(std::wstring_view sName, std::int32_t nValue);
    void setBoolAttribute(std::wstring_view sName, bool bValue);  // "true" or "false"

    // Removes an attribute; true if it was there.
    bool removeAttribute(std::wstring_view sName) { return removeAttribute({}, sName); }
    bool removeAttribute(std::wstring_view sNamespace, std::wstring_view sName);

    // The prefixes that this element itself declares.
    const std::vector<XmlPrefix>& declaredPrefixes() const { return m_vPrefixes; }
    // Declares a prefix on this element, or changes what it stands for here. An empty namespace undoes the default one.
    void declarePrefix(std::wstring_view sPrefix, std::wstring_view sNamespace);
    // What a prefix stands for here: declared on this element or the nearest ancestor; null when it is not declared.
    // The empty prefix without a declaration stands for no namespace (an empty text).
    const String* resolvePrefix(std::wstring_view sPrefix) const;
    // A prefix that stands for the namespace here, not the empty one; null when there is none.
    const String* findPrefix(std::wstring_view sNamespace) const;
    // All prefixes that are declared here: the element's own first, then its ancestors', without those that are hidden.
    std::vector<XmlPrefix> prefixesInScope() const;

    // A range over the children for `for (const XmlElement& tChild : tElement.children())`.
    template <class Element>
    class ChildRange
    {
    public:
        class Iterator
        {
        public:
            using iterator_category = std::forward_iterator_tag;
            using value_type = Element;
            using difference_type = std::ptrdiff_t;
            using pointer = Element*;
            using reference = Element&;

            Iterator() = default;
            explicit Iterator(const std::unique_ptr<XmlElement>* pAt) : m_pAt(pAt) {}
            Element& operator*() const { return **m_pAt; }
            Element* operator->() const { return m_pAt->get(); }
            Iterator& operator++()
            {
                ++m_pAt;
                return *this;
            }
            Iterator operator++(int)
            {
                Iterator tBefore = *this;
                ++m_pAt;
                return tBefore;
            }
            bool operator==(const Iterator&) const = default;

        private:
            const std::unique_ptr<XmlElement>* m_pAt = nullptr;
        };

        explicit ChildRange(const std::vector<std::unique_ptr<XmlElement>>& vChildren)
            : m_pFirst(vChildren.data()), m_pEnd(vChildren.data() + vChildren.size())
        {
        }
        Iterator begin() const { return Iterator(m_pFirst); }
        Iterator end() const { return Iterator(m_pEnd); }
        std::size_t size() const { return static_cast<std::size_t>(m_pEnd - m_pFirst); }
        bool empty() const { return m_pFirst == m_pEnd; }
        Element& operator[](std::size_t nAt) const { return *m_pFirst[nAt]; }

    private:
        const std::unique_ptr<XmlElement>* m_pFirst;
        const std::unique_ptr<XmlElement>* m_pEnd;
    };

    ChildRange<XmlElement> children() { return ChildRange<XmlElement>(m_vChildren); }
    ChildRange<const XmlElement> children() const { return ChildRange<const XmlElement>(m_vChildren); }
    const XmlElement* parent() const { return m_pParent; }

    // The first child of that name, or null.
    XmlElement* findChild(const XmlQualifiedName& tName);
    const XmlElement* findChild(const XmlQualifiedName& tName) const;
    // The first element, in the order of the document, at a path of names below this one, or null. Example:
    //     tElement.findPath({schemas::Report::kqnCurrencyTagColumn, schemas::Expression::kqnExpr})
    const XmlElement* findPath(std::initializer_list<XmlQualifiedName> vPath) const;
    XmlElement* findPath(std::initializer_list<XmlQualifiedName> vPath);

    // Appends a child and returns it.
    XmlElement& addChild(std::wstring_view sNamespace, std::wstring_view sLocalName);
    XmlElement& addChild(const XmlQualifiedName& tName) { return addChild(tName.pNamespace, tName.pLocalName); }
    void removeChildren();

    // All text inside the element and its descendants, in the order of the document: <a>1<b>2</b>3</a> -> "123".
    String innerText() const;
    // Replaces the contents, child elements included, by a text.
    void setInnerText(std::wstring_view sText);

    // The text before the first child, and the text between this element's end and what follows it in its parent.
    const String& text() const { return m_sText; }
    const String& tail() const { return m_sTail; }
    // Appends text at the end of the contents: behind the last child, or to the element's text when it has none.
    void appendText(std::wstring_view sText);

    // Whether two trees have the same names, attributes (in order, places apart), texts and children. Prefixes may
    // differ.
    static bool sameContent(const XmlElement& tLeft, const XmlElement& tRight);

private:
    friend class XmlTreeBuilder;  // appends attributes that are known to be different

    XmlElement(std::shared_ptr<const String> pNamespace, std::wstring_view sLocalName);
    void copyOwn(const XmlElement& tOther);
    void copyChildren(const XmlElement& tOther);
    void releaseChildren() noexcept;
    void swapContents(XmlElement& tOther) noexcept;

    std::shared_ptr<const String> m_pNamespace;  // shared with the parent where it is the same
    String m_sLocalName;
    std::vector<XmlAttribute> m_vAttributes;
    std::vector<XmlPrefix> m_vPrefixes;
    std::vector<std::unique_ptr<XmlElement>> m_vChildren;
    String m_sText;
    String m_sTail;
    XmlElement* m_pParent = nullptr;
    XmlPlace m_tPlace;
};

}  // namespace tov
