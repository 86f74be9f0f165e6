#include "system/Variant.h"

#include "base/Text.h"

#include <new>

namespace tessera {

static_assert(sizeof(wchar_t) == sizeof(char16_t));

std::u16string_view wideView(const wchar_t* text, std::size_t length)
{
    return {reinterpret_cast<const char16_t*>(text), length};
}

std::u16string_view wideView(const wchar_t* text)
{
    return text ? std::u16string_view(reinterpret_cast<const char16_t*>(text)) : std::u16string_view();
}

const wchar_t* systemWide(const std::u16string& text)
{
    return reinterpret_cast<const wchar_t*>(text.c_str());
}

Bstr::Bstr(std::string_view text) : Bstr(std::u16string_view(toWide(text))) {}

Bstr::Bstr(std::u16string_view wide)
    : m_text(SysAllocStringLen(reinterpret_cast<const wchar_t*>(wide.data()), static_cast<UINT>(wide.size())))
{
    if (!m_text) {
        throw std::bad_alloc();
    }
}

Bstr& Bstr::operator=(Bstr&& other) noexcept
{
    std::swap(m_text, other.m_text);
    return *this;
}

BSTR* Bstr::put()
{
    SysFreeString(release());
    return &m_text;
}

std::u16string_view Bstr::wide() const
{
    return wideView(m_text, SysStringLen(m_text));
}

std::string Bstr::text() const
{
    return bstrText(m_text);
}

std::string bstrText(BSTR text)
{
    return toCodePage(wideView(text, SysStringLen(text)));
}

Variant::Variant(std::int32_t number) : Variant()
{
    m_value.vt = VT_I4;
    m_value.lVal = number;
}

Variant::Variant(bool flag) : Variant()
{
    m_value.vt = VT_BOOL;
    m_value.boolVal = flag ? VARIANT_TRUE : VARIANT_FALSE;
}

Variant::Variant(double number) : Variant()
{
    m_value.vt = VT_R8;
    m_value.dblVal = number;
}

Variant::Variant(std::string_view text) : Variant(std::u16string_view(toWide(text))) {}

Variant::Variant(std::u16string_view wide) : Variant()
{
    m_value.bstrVal = Bstr(wide).release();
    m_value.vt = VT_BSTR;
}

Variant::Variant(IDispatch* object) : Variant()
{
    m_value.vt = VT_DISPATCH;
    m_value.pdispVal = object;
    if (object) {
        object->AddRef();
    }
}

Variant Variant::copyOf(const VARIANT& value)
{
    Variant copy;
    checkResult(VariantCopyInd(&copy.m_value, const_cast<VARIANT*>(&value)));
    return copy;
}

Variant::Variant(const Variant& other) : Variant(copyOf(other.m_value)) {}

Variant::Variant(Variant&& other) noexcept : m_value(other.release()) {}

Variant& Variant::operator=(Variant&& other) noexcept
{
    std::swap(m_value, other.m_value);
    return *this;
}

VARIANT* Variant::put()
{
    VariantClear(&m_value);
    return &m_value;
}

VARIANT Variant::release()
{
    const VARIANT value = m_value;
    VariantInit(&m_value);
    return value;
}

namespace {

Variant converted(const VARIANT& value, VARTYPE type)
{
    Variant result;
    checkResult(VariantChangeType(result.put(), const_cast<VARIANT*>(&value), 0, type));
    return result;
}

} // namespace

std::int32_t Variant::number() const
{
    if (m_value.vt == VT_I4) {
        return m_value.lVal;
    }
    return isEmpty() ? 0 : converted(m_value, VT_I4).m_value.lVal;
}

bool Variant::boolean() const
{
    if (m_value.vt == VT_BOOL) {
        return m_value.boolVal != VARIANT_FALSE;
    }
    return !isEmpty() && converted(m_value, VT_BOOL).m_value.boolVal != VARIANT_FALSE;
}

std::string Variant::text() const
{
    if (m_value.vt == VT_BSTR) {
        return bstrText(m_value.bstrVal);
    }
    return isEmpty() ? std::string() : bstrText(converted(m_value, VT_BSTR).m_value.bstrVal);
}

std::u16string Variant::wide() const
{
    if (m_value.vt == VT_BSTR) {
        return std::u16string(wideView(m_value.bstrVal, SysStringLen(m_value.bstrVal)));
    }
    return isEmpty() ? std::u16string() : converted(m_value, VT_BSTR).wide();
}

ComPtr<IDispatch> Variant::object() const
{
    if (isEmpty()) {
        return nullptr;
    }
    if (m_value.vt == VT_DISPATCH) {
        return ComPtr<IDispatch>(m_value.pdispVal);
    }
    return ComPtr<IDispatch>(converted(m_value, VT_DISPATCH).m_value.pdispVal);
}

} // namespace tessera
