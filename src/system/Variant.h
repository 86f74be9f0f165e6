#pragma once

#include "system/ComPtr.h"

#include <cstdint>
#include <oleauto.h>
#include <string>
#include <string_view>
#include <windows.h>

namespace tessera {

// Views the characters of the system's wide strings as ours; both are 16-bit units.
std::u16string_view wideView(const wchar_t* text, std::size_t length);
std::u16string_view wideView(const wchar_t* text);
const wchar_t* systemWide(const std::u16string& text);

// Owns an automation string. Throws std::bad_alloc when memory is short.
class Bstr {
public:
    Bstr() = default;
    explicit Bstr(std::string_view text); // from the code page
    explicit Bstr(std::u16string_view wide);
    ~Bstr() { SysFreeString(m_text); }
    Bstr(Bstr&& other) noexcept : m_text(other.release()) {}
    Bstr& operator=(Bstr&& other) noexcept;
    Bstr(const Bstr&) = delete;
    Bstr& operator=(const Bstr&) = delete;

    BSTR get() const { return m_text; }
    BSTR* put();
    BSTR release() { return std::exchange(m_text, nullptr); }

    std::u16string_view wide() const;
    std::string text() const; // in the code page

private:
    BSTR m_text = nullptr;
};

std::string bstrText(BSTR text);

// Owns a VARIANT. What cannot be converted throws HostError(DISP_E_TYPEMISMATCH and the like).
class Variant {
public:
    Variant() { VariantInit(&m_value); }
    Variant(std::int32_t number);
    Variant(bool flag);
    Variant(double number);
    Variant(std::string_view text);
    Variant(const std::string& text) : Variant(std::string_view(text)) {}
    Variant(const char* text) : Variant(std::string_view(text)) {}
    Variant(std::u16string_view wide);
    Variant(const char16_t* wide) : Variant(std::u16string_view(wide)) {}
    Variant(const void*) = delete; // would become a flag
    Variant(IDispatch* object);    // adds a reference
    template <class Interface>
    Variant(const ComPtr<Interface>& object) : Variant(static_cast<IDispatch*>(object.get()))
    {
    }
    // A copy of a caller's argument; what it refers to is followed.
    static Variant copyOf(const VARIANT& value);
    ~Variant() { VariantClear(&m_value); }
    Variant(Variant&& other) noexcept;
    Variant& operator=(Variant&& other) noexcept;
    Variant(const Variant& other);
    Variant& operator=(const Variant&) = delete;

    const VARIANT& get() const { return m_value; }
    VARIANT* put();
    // The caller owns the value from now on.
    VARIANT release();

    // Nothing, a null and an empty variant read as 0, false, "" and no object.
    std::int32_t number() const;
    bool boolean() const;
    std::string text() const; // in the code page
    std::u16string wide() const;
    ComPtr<IDispatch> object() const;
    bool isEmpty() const { return m_value.vt == VT_EMPTY || m_value.vt == VT_NULL; }

private:
    VARIANT m_value;
};

} // namespace tessera
