#include "shell/Registration.h"

#include "shell/Identifiers.h"
#include "system/ComPtr.h"
#include "system/Handle.h"
#include "system/Module.h"
#include "system/Variant.h"

#include <array>
#include <oleauto.h>
#include <string>

namespace tessera {

namespace {

// Wide here, unlike elsewhere: the module may lie in a folder that the code page cannot name.
using Wide = std::wstring;

constexpr const wchar_t* kPluginKey =
    L"Software\\J. River\\Music Exchange\\1.0\\Media Jukebox\\Plugins\\Interface\\Tessera 2.0";

// A null name is the key's default value; a null text leaves an empty key. Texts hold the marks
// {CLSID}, {LIBID} and {MODULE}.
struct ClassEntry {
    const wchar_t* key;
    const wchar_t* text;
    const wchar_t* name = nullptr;
};

constexpr std::array kClassEntries{
    ClassEntry{L"Tessera2.Interface.1", L"Interface Class"},
    ClassEntry{L"Tessera2.Interface.1\\CLSID", L"{CLSID}"},
    ClassEntry{L"Tessera2.Interface", L"Interface Class"},
    ClassEntry{L"Tessera2.Interface\\CLSID", L"{CLSID}"},
    ClassEntry{L"Tessera2.Interface\\CurVer", L"Tessera2.Interface.1"},
    ClassEntry{L"CLSID\\{CLSID}", L"Interface Class"},
    ClassEntry{L"CLSID\\{CLSID}\\ProgID", L"Tessera2.Interface.1"},
    ClassEntry{L"CLSID\\{CLSID}\\VersionIndependentProgID", L"Tessera2.Interface"},
    ClassEntry{L"CLSID\\{CLSID}\\Programmable", nullptr},
    ClassEntry{L"CLSID\\{CLSID}\\Control", nullptr},
    ClassEntry{L"CLSID\\{CLSID}\\Insertable", nullptr},
    ClassEntry{L"CLSID\\{CLSID}\\InprocServer32", L"{MODULE}"},
    ClassEntry{L"CLSID\\{CLSID}\\InprocServer32", L"Apartment", L"ThreadingModel"},
    ClassEntry{L"CLSID\\{CLSID}\\ToolboxBitmap32", L"{MODULE}, 102"},
    ClassEntry{L"CLSID\\{CLSID}\\MiscStatus", L"0"},
    ClassEntry{L"CLSID\\{CLSID}\\MiscStatus\\1", L"131473"},
    ClassEntry{L"CLSID\\{CLSID}\\TypeLib", L"{LIBID}"},
    ClassEntry{L"CLSID\\{CLSID}\\Version", L"1.0"},
};
static_assert(kMiscStatus == 131473);

// What a registration replaces and an unregistration removes, each with everything below it.
constexpr std::array kClassRoots{L"CLSID\\{CLSID}", L"Tessera2.Interface.1", L"Tessera2.Interface"};

// A null text stands for the number.
struct PluginEntry {
    const wchar_t* name;
    const wchar_t* text;
    DWORD number = 0;
};

constexpr std::array kPluginEntries{
    PluginEntry{L"CLSID", L"{CLSID}"},
    PluginEntry{L"IVersion", nullptr, 1},
    PluginEntry{L"Company", L"The Tessera developers"},
    PluginEntry{L"Version", L"2.00.00"},
    PluginEntry{L"URL", L"http://www.jriver.com"},
    PluginEntry{L"Copyright", L"Copyright \u00A9 2026 The Tessera developers"},
    PluginEntry{L"PluginMode", nullptr, 1},
};

Wide guidText(const GUID& guid)
{
    std::array<wchar_t, 40> text{};
    StringFromGUID2(guid, text.data(), static_cast<int>(text.size()));
    return text.data();
}

Wide modulePathWide()
{
    Wide path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length =
            GetModuleFileNameW(moduleInstance(), path.data(), static_cast<DWORD>(path.size()));
        if (length < path.size()) {
            path.resize(length);
            return path;
        }
        path.resize(path.size() * 2);
    }
}

void replaceMark(Wide& text, const Wide& mark, const Wide& value)
{
    for (std::size_t at = text.find(mark); at != Wide::npos; at = text.find(mark, at + value.size())) {
        text.replace(at, mark.size(), value);
    }
}

Wide filledIn(const wchar_t* pattern)
{
    Wide text = pattern;
    replaceMark(text, L"{CLSID}", guidText(kInterfaceClass));
    replaceMark(text, L"{LIBID}", guidText(kTypeLibrary));
    replaceMark(text, L"{MODULE}", modulePathWide());
    return text;
}

LSTATUS setText(HKEY key, const wchar_t* name, const Wide& text)
{
    const auto size = static_cast<DWORD>(text.size() + 1) * DWORD{sizeof(wchar_t)};
    return RegSetValueExW(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()), size);
}

KeyHandle createKey(HKEY root, const Wide& path, LSTATUS& status)
{
    KeyHandle key;
    status = RegCreateKeyExW(root, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, key.put(), nullptr);
    return key;
}

void writePluginEntry()
{
    LSTATUS status = ERROR_SUCCESS;
    const KeyHandle key = createKey(HKEY_CURRENT_USER, kPluginKey, status);
    if (status != ERROR_SUCCESS) {
        return;
    }
    for (const PluginEntry& entry : kPluginEntries) {
        if (entry.text) {
            setText(key.get(), entry.name, filledIn(entry.text));
        } else {
            RegSetValueExW(key.get(), entry.name, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&entry.number),
                           sizeof entry.number);
        }
    }
}

LSTATUS writeClassEntry(const ClassEntry& entry)
{
    LSTATUS status = ERROR_SUCCESS;
    const KeyHandle key = createKey(HKEY_CLASSES_ROOT, filledIn(entry.key), status);
    if (status == ERROR_SUCCESS && entry.text) {
        status = setText(key.get(), entry.name, filledIn(entry.text));
    }
    return status;
}

LSTATUS removeTree(HKEY root, const Wide& path)
{
    KeyHandle key;
    const LSTATUS opened = RegOpenKeyExW(root, path.c_str(), 0, KEY_ALL_ACCESS, key.put());
    if (opened != ERROR_SUCCESS) {
        return opened == ERROR_FILE_NOT_FOUND ? ERROR_SUCCESS : opened;
    }
    std::array<wchar_t, 256> name{};
    while (RegEnumKeyW(key.get(), 0, name.data(), static_cast<DWORD>(name.size())) == ERROR_SUCCESS) {
        if (const LSTATUS status = removeTree(key.get(), name.data()); status != ERROR_SUCCESS) {
            return status;
        }
    }
    key.reset();
    return RegDeleteKeyW(root, path.c_str());
}

HRESULT writeClass()
{
    removeTree(HKEY_CLASSES_ROOT, filledIn(L"CLSID\\{CLSID}"));
    for (const ClassEntry& entry : kClassEntries) {
        if (const LSTATUS status = writeClassEntry(entry); status != ERROR_SUCCESS) {
            return HRESULT_FROM_WIN32(static_cast<DWORD>(status));
        }
    }
    return S_OK;
}

HRESULT registerLibrary()
{
    ComPtr<ITypeLib> library;
    const Wide path = modulePathWide();
    const HRESULT loaded = LoadTypeLibEx(path.c_str(), REGKIND_NONE, library.put());
    if (FAILED(loaded)) {
        return loaded;
    }
    Wide file = path;
    return RegisterTypeLib(library.get(), file.data(), nullptr);
}

bool libraryRegistered()
{
    Bstr path;
    return SUCCEEDED(QueryPathOfRegTypeLib(kTypeLibrary, kTypeLibraryMajor, kTypeLibraryMinor, LOCALE_NEUTRAL,
                                           path.put()));
}

HRESULT unregisterLibrary()
{
    if (!libraryRegistered()) {
        return S_OK;
    }
    return UnRegisterTypeLib(kTypeLibrary, kTypeLibraryMajor, kTypeLibraryMinor, LOCALE_NEUTRAL, SYS_WIN32);
}

} // namespace

HRESULT registerServer()
{
    writePluginEntry();
    const HRESULT written = writeClass();
    return FAILED(written) ? written : registerLibrary();
}

HRESULT unregisterServer()
{
    HRESULT result = S_OK;
    for (const wchar_t* root : kClassRoots) {
        if (const LSTATUS status = removeTree(HKEY_CLASSES_ROOT, filledIn(root)); status != ERROR_SUCCESS) {
            result = HRESULT_FROM_WIN32(static_cast<DWORD>(status));
        }
    }
    const HRESULT library = unregisterLibrary();
    return FAILED(library) ? library : result;
}

} // namespace tessera
