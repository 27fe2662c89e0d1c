#pragma once

#include <cstddef>
#include <exception>
#include <type_traits>
#include <utility>

#include "webbedrock/export.h"

namespace tov {

// Thrown when a null handle is used as if it held an object.
class WEBFORMAT_EXPORT InvalidHandleException : public std::exception
{
public:
    ~InvalidHandleException() override;
    const char* what() const noexcept override;  // "invalid handle"
};

// Throws InvalidHandleException; kept out of line so that a handle's use stays small.
[[noreturn]] WEBFORMAT_EXPORT void throwInvalidHandle();

// Shared ownership of a reference-counted object: Handle<const Formatter, const Formatter>.
//
// `ConstT` is what a const handle gives access to. Copying raises the count, destruction releases it. One handle object
// belongs to one thread at a time; handles to the same object may live on any number of threads.
template <class T, class ConstT = const T>
class Handle
{
public:
    Handle() = default;
    Handle(std::nullptr_t) {}
    Handle(T* pObject) : m_pObject(pObject) { raise(); }
    Handle(const Handle& hOther) : m_pObject(hOther.m_pObject) { raise(); }
    Handle(Handle&& hOther) noexcept : m_pObject(std::exchange(hOther.m_pObject, nullptr)) {}

    template <class U, class ConstU, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
    Handle(const Handle<U, ConstU>& hOther) : m_pObject(hOther.getPointer())
    {
        raise();
    }

    ~Handle()
    {
        if (m_pObject)
            m_pObject->releaseReference();
    }

    Handle& operator=(Handle hOther) noexcept
    {
        std::swap(m_pObject, hOther.m_pObject);
        return *this;
    }

    bool isNull() const { return m_pObject == nullptr; }

    // The object or null; never throws and does not raise the count.
    T* getPointer() const { return m_pObject; }

    // Throw InvalidHandleException when the handle is null.
    T* operator->() { return checked(); }
    T& operator*() { return *checked(); }
    ConstT* operator->() const { return checked(); }
    ConstT& operator*() const { return *checked(); }

    // Two handles are equal when they hold the same object.
    friend bool operator==(const Handle& hLeft, const Handle& hRight) { return hLeft.m_pObject == hRight.m_pObject; }

private:
    void raise() const
    {
        if (m_pObject)
            m_pObject->addReference();
    }

    T* checked() const
    {
        if (!m_pObject)
            throwInvalidHandle();
        return m_pObject;
    }

    T* m_pObject = nullptr;
};

}  // namespace tov
