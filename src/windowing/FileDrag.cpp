#include "windowing/FileDrag.h"

#include "system/Border.h"
#include "system/ComPtr.h"
#include "system/ModuleUse.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <shlobj.h>

namespace tessera {

namespace {

// Reference counting for objects that live as long as somebody refers to them, and keep their code
// loaded as long: a target may hold on to what was dropped.
template <class Interface>
class Counted : public Interface {
public:
    virtual ~Counted() = default;
    STDMETHODIMP QueryInterface(REFIID id, void** object) override
    {
        if (!object)
            return E_POINTER;
        const bool known = id == IID_IUnknown || id == __uuidof(Interface);
        *object = known ? this : nullptr;
        if (!known)
            return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++m_references; }
    STDMETHODIMP_(ULONG) Release() override
    {
        const ULONG left = --m_references;
        if (left == 0)
            delete this;
        return left;
    }

private:
    std::atomic<ULONG> m_references{0};
    ModuleUse m_use;
};

const FORMATETC kFileList{CF_HDROP, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};

class FileData final : public Counted<IDataObject> {
public:
    explicit FileData(const std::vector<std::string>& paths) : m_paths(paths) {}

    STDMETHODIMP GetData(FORMATETC* format, STGMEDIUM* medium) override
    {
        if (!format || !medium)
            return E_POINTER;
        if (const HRESULT result = QueryGetData(format); result != S_OK)
            return result;
        return comBorder([&]() -> HRESULT {
            *medium = {};
            medium->tymed = TYMED_HGLOBAL;
            medium->hGlobal = makeFileList(m_paths);
            return medium->hGlobal ? S_OK : E_OUTOFMEMORY;
        });
    }
    STDMETHODIMP GetDataHere(FORMATETC*, STGMEDIUM*) override { return DATA_E_FORMATETC; }
    STDMETHODIMP QueryGetData(FORMATETC* format) override
    {
        if (!format)
            return E_POINTER;
        if (format->cfFormat != CF_HDROP || format->dwAspect != DVASPECT_CONTENT)
            return DV_E_FORMATETC;
        return (format->tymed & TYMED_HGLOBAL) != 0 ? S_OK : DV_E_TYMED;
    }
    STDMETHODIMP GetCanonicalFormatEtc(FORMATETC*, FORMATETC* out) override
    {
        if (out)
            out->ptd = nullptr;
        return E_NOTIMPL;
    }
    STDMETHODIMP SetData(FORMATETC*, STGMEDIUM*, BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP EnumFormatEtc(DWORD direction, IEnumFORMATETC** formats) override
    {
        return direction == DATADIR_GET ? SHCreateStdEnumFmtEtc(1, &kFileList, formats) : E_NOTIMPL;
    }
    STDMETHODIMP DAdvise(FORMATETC*, DWORD, IAdviseSink*, DWORD*) override
    {
        return OLE_E_ADVISENOTSUPPORTED;
    }
    STDMETHODIMP DUnadvise(DWORD) override { return OLE_E_ADVISENOTSUPPORTED; }
    STDMETHODIMP EnumDAdvise(IEnumSTATDATA**) override { return OLE_E_ADVISENOTSUPPORTED; }

private:
    const std::vector<std::string> m_paths;
};

class DragSource final : public Counted<IDropSource> {
public:
    void end() { m_ended = true; }
    STDMETHODIMP QueryContinueDrag(BOOL escape, DWORD keys) override
    {
        if (escape || m_ended)
            return DRAGDROP_S_CANCEL;
        return (keys & MK_LBUTTON) == 0 ? DRAGDROP_S_DROP : S_OK;
    }
    STDMETHODIMP GiveFeedback(DWORD) override { return DRAGDROP_S_USEDEFAULTCURSORS; }

private:
    bool m_ended = false;
};

// The drag that goes on; it has the pointer, so that there is never a second one.
constinit DragSource* g_source = nullptr;

} // namespace

HGLOBAL makeFileList(const std::vector<std::string>& paths)
{
    std::size_t size = sizeof(DROPFILES) + 1;
    for (const std::string& path : paths)
        size += path.size() + 1;
    const HGLOBAL block = GlobalAlloc(GHND, size); // zeroed, so the terminators are there
    auto* const bytes = static_cast<char*>(block ? GlobalLock(block) : nullptr);
    if (!bytes)
        return nullptr;
    DROPFILES header{};
    header.pFiles = sizeof header;
    std::memcpy(bytes, &header, sizeof header);
    char* at = bytes + sizeof header;
    for (const std::string& path : paths) {
        at = std::copy(path.begin(), path.end(), at) + 1;
    }
    GlobalUnlock(block);
    return block;
}

DWORD dragFiles(const std::vector<std::string>& paths)
{
    const OleInit ole;
    const ComPtr<IDataObject> data(new FileData(paths));
    const ComPtr<DragSource> source(new DragSource);
    g_source = source.get();
    DWORD effect = DROPEFFECT_NONE;
    const HRESULT result = DoDragDrop(data.get(), source.get(), DROPEFFECT_COPY | DROPEFFECT_LINK, &effect);
    g_source = nullptr;
    return result == DRAGDROP_S_DROP ? effect : DROPEFFECT_NONE;
}

// The source is asked when the pointer moves or a key is pressed: the window that has the pointer for
// the drag gets an Escape.
void endDrag()
{
    if (!g_source)
        return;
    g_source->end();
    if (const HWND dragging = GetCapture())
        PostMessageA(dragging, WM_KEYDOWN, VK_ESCAPE, 1);
}

} // namespace tessera
