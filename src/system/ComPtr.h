#pragma once

#include "base/Errors.h"

#include <objbase.h>
#include <utility>
#include <windows.h>

namespace tessera {

// Throws HostError when the code means failure.
void checkResult(HRESULT result);

// Owns one reference to a COM object.
template <class Interface>
class ComPtr {
public:
    ComPtr() = default;
    ComPtr(std::nullptr_t) {}
    // Adds a reference of its own.
    explicit ComPtr(Interface* object) : m_object(object)
    {
        if (m_object) {
            m_object->AddRef();
        }
    }
    ~ComPtr() { reset(); }
    ComPtr(const ComPtr& other) : ComPtr(other.m_object) {}
    ComPtr(ComPtr&& other) noexcept : m_object(other.detach()) {}
    ComPtr& operator=(ComPtr other) noexcept
    {
        std::swap(m_object, other.m_object);
        return *this;
    }

    Interface* get() const { return m_object; }
    Interface* operator->() const { return m_object; }
    Interface& operator*() const { return *m_object; }
    explicit operator bool() const { return m_object != nullptr; }

    // Where a call puts the object that it hands out; what was held is released first.
    Interface** put()
    {
        reset();
        return &m_object;
    }
    void** putVoid() { return reinterpret_cast<void**>(put()); }
    // Takes over a reference that the caller owned.
    void attach(Interface* object)
    {
        reset();
        m_object = object;
    }
    // The caller owns the reference from now on.
    Interface* detach() { return std::exchange(m_object, nullptr); }
    void reset()
    {
        if (Interface* old = std::exchange(m_object, nullptr)) {
            old->Release();
        }
    }

    // Null when the object does not offer the interface, or there is no object.
    template <class Other>
    ComPtr<Other> query() const
    {
        return query<Other>(__uuidof(Other));
    }
    template <class Other>
    ComPtr<Other> query(const IID& id) const
    {
        ComPtr<Other> other;
        if (m_object && FAILED(m_object->QueryInterface(id, other.putVoid()))) {
            other.detach(); // a failed query may leave anything behind
        }
        return other;
    }

private:
    Interface* m_object = nullptr;
};

// COM on this thread for as long as the object lives.
class ComInit {
public:
    explicit ComInit(DWORD model = COINIT_APARTMENTTHREADED);
    ~ComInit();
    ComInit(const ComInit&) = delete;
    ComInit& operator=(const ComInit&) = delete;

private:
    bool m_initialised;
};

// The same with what drag and drop and the folder browser need.
class OleInit {
public:
    OleInit();
    ~OleInit();
    OleInit(const OleInit&) = delete;
    OleInit& operator=(const OleInit&) = delete;

private:
    bool m_initialised;
};

} // namespace tessera
