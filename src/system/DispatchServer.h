#pragma once

#include "system/Border.h"
#include "system/Variant.h"

#include <atomic>
#include <span>

namespace tessera {

// What a caller handed to a member of an automation object.
class DispatchCall {
public:
    DispatchCall(DISPID id, WORD kinds, const DISPPARAMS& parameters)
        : m_id(id), m_kinds(kinds), m_parameters(parameters)
    {
    }
    DISPID id() const { return m_id; }
    bool isPut() const { return (m_kinds & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0; }
    std::size_t count() const { return m_parameters.cArgs; }
    // In the order in which the caller wrote them, from 0; the value of a put comes last.
    // Throws HostError(DISP_E_BADPARAMCOUNT) for one that is missing.
    Variant argument(std::size_t index) const;

private:
    DISPID m_id;
    WORD m_kinds;
    const DISPPARAMS& m_parameters;
};

// One line of an automation object's table. Kinds: any of DISPATCH_*; a call that names one of
// them reaches the member.
template <class Object>
struct DispatchEntry {
    DISPID id;
    WORD kinds;
    const wchar_t* name; // for callers that ask by name
    Variant (Object::*member)(const DispatchCall& call);
};

// The common part of DispatchServer, free of the object's type.
class DispatchBase : public IDispatch {
public:
    DispatchBase(const DispatchBase&) = delete;
    DispatchBase& operator=(const DispatchBase&) = delete;

    STDMETHODIMP QueryInterface(REFIID id, void** object) override;
    STDMETHODIMP_(ULONG) AddRef() override { return ++m_references; }
    STDMETHODIMP_(ULONG) Release() override;
    STDMETHODIMP GetTypeInfoCount(UINT* count) override;
    STDMETHODIMP GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override;
    STDMETHODIMP GetIDsOfNames(REFIID id, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) override;
    STDMETHODIMP Invoke(DISPID id, REFIID reserved, LCID locale, WORD kinds, DISPPARAMS* parameters,
                        VARIANT* result, EXCEPINFO* exception, UINT* argument) override;

protected:
    DispatchBase() = default;
    virtual ~DispatchBase() = default;

    // False when the table has no such member.
    virtual bool dispatch(const DispatchCall& call, WORD kinds, Variant& result) = 0;
    virtual DISPID idOfName(std::u16string_view name) const = 0; // DISPID_UNKNOWN: none

private:
    std::atomic<ULONG> m_references{1};
};

bool equalName(const wchar_t* left, std::u16string_view right);

// Base of an automation object that is served from a table: Object has
//   static std::span<const DispatchEntry<Object>> members();
// Calls may come from any thread; the members take care of their own data. Whatever they throw
// becomes an exception of the caller. Objects are made by `makeObject` and die with their last
// reference.
template <class Object>
class DispatchServer : public DispatchBase {
protected:
    bool dispatch(const DispatchCall& call, WORD kinds, Variant& result) override
    {
        for (const DispatchEntry<Object>& entry : Object::members()) {
            if (entry.id == call.id() && (entry.kinds & kinds) != 0) {
                result = (static_cast<Object*>(this)->*entry.member)(call);
                return true;
            }
        }
        return false;
    }
    DISPID idOfName(std::u16string_view name) const override
    {
        for (const DispatchEntry<Object>& entry : Object::members()) {
            if (equalName(entry.name, name)) {
                return entry.id;
            }
        }
        return DISPID_UNKNOWN;
    }
};

// A COM object whose only reference is the pointer.
template <class Object, class... Arguments>
ComPtr<Object> makeObject(Arguments&&... arguments)
{
    ComPtr<Object> object;
    object.attach(new Object(std::forward<Arguments>(arguments)...));
    return object;
}

} // namespace tessera
