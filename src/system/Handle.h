#pragma once

#include <utility>
#include <windows.h>

namespace tessera {

// Owns one handle of the system; Traits names its type, the value that means none and the closing.
template <class Traits>
class UniqueHandle {
public:
    using Type = typename Traits::Type;

    UniqueHandle() = default;
    explicit UniqueHandle(Type value) : m_value(value) {}
    ~UniqueHandle() { reset(); }
    UniqueHandle(UniqueHandle&& other) noexcept : m_value(other.release()) {}
    UniqueHandle& operator=(UniqueHandle&& other) noexcept
    {
        if (this != &other) {
            reset(other.release());
        }
        return *this;
    }
    UniqueHandle(const UniqueHandle&) = delete;
    UniqueHandle& operator=(const UniqueHandle&) = delete;

    Type get() const { return m_value; }
    explicit operator bool() const { return m_value != Traits::none(); }

    // Where a system call puts the handle that it makes; what was held is closed first.
    Type* put()
    {
        reset();
        return &m_value;
    }
    // The caller owns the handle from now on.
    Type release() { return std::exchange(m_value, Traits::none()); }
    void reset(Type value = Traits::none())
    {
        const Type old = std::exchange(m_value, value);
        if (old != Traits::none() && old != value) {
            Traits::close(old);
        }
    }

private:
    Type m_value = Traits::none();
};

struct KernelTraits {
    using Type = HANDLE;
    static Type none() { return nullptr; }
    static void close(Type handle) { CloseHandle(handle); }
};

struct FileTraits {
    using Type = HANDLE;
    static Type none() { return INVALID_HANDLE_VALUE; }
    static void close(Type handle) { CloseHandle(handle); }
};

struct FindTraits {
    using Type = HANDLE;
    static Type none() { return INVALID_HANDLE_VALUE; }
    static void close(Type handle) { FindClose(handle); }
};

struct KeyTraits {
    using Type = HKEY;
    static Type none() { return nullptr; }
    static void close(Type key) { RegCloseKey(key); }
};

struct ModuleTraits {
    using Type = HMODULE;
    static Type none() { return nullptr; }
    static void close(Type module) { FreeLibrary(module); }
};

struct ViewTraits {
    using Type = void*;
    static Type none() { return nullptr; }
    static void close(Type view) { UnmapViewOfFile(view); }
};

struct MenuTraits {
    using Type = HMENU;
    static Type none() { return nullptr; }
    static void close(Type menu) { DestroyMenu(menu); }
};

struct IconTraits {
    using Type = HICON;
    static Type none() { return nullptr; }
    static void close(Type icon) { DestroyIcon(icon); }
};

struct GlobalTraits {
    using Type = HGLOBAL;
    static Type none() { return nullptr; }
    static void close(Type block) { GlobalFree(block); }
};

template <class GdiType>
struct GdiTraits {
    using Type = GdiType;
    static Type none() { return nullptr; }
    static void close(Type object) { DeleteObject(object); }
};

using KernelHandle = UniqueHandle<KernelTraits>; // events, threads, mutexes, mappings
using FileHandle = UniqueHandle<FileTraits>;
using FindHandle = UniqueHandle<FindTraits>;
using KeyHandle = UniqueHandle<KeyTraits>;
using ModuleHandle = UniqueHandle<ModuleTraits>;
using ViewHandle = UniqueHandle<ViewTraits>;
using MenuHandle = UniqueHandle<MenuTraits>;
using GlobalHandle = UniqueHandle<GlobalTraits>; // movable memory
using IconHandle = UniqueHandle<IconTraits>;
using FontHandle = UniqueHandle<GdiTraits<HFONT>>;
using BitmapHandle = UniqueHandle<GdiTraits<HBITMAP>>;
using BrushHandle = UniqueHandle<GdiTraits<HBRUSH>>;
using PenHandle = UniqueHandle<GdiTraits<HPEN>>;
using RegionHandle = UniqueHandle<GdiTraits<HRGN>>;

} // namespace tessera
