#pragma once

#include "system/ComPtr.h"

#include <functional>
#include <ole2.h>
#include <shellapi.h>
#include <string>
#include <utility>
#include <vector>

namespace tessera::test {

// Keeps what is dragged over it, and takes it. The hooks are called once.
class DropTarget final : public IDropTarget {
public:
    STDMETHODIMP QueryInterface(REFIID id, void** object) override
    {
        *object = id == IID_IUnknown || id == IID_IDropTarget ? this : nullptr;
        return *object ? S_OK : E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return 2; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
    STDMETHODIMP DragEnter(IDataObject* dragged, DWORD, POINTL, DWORD* effect) override
    {
        data = ComPtr<IDataObject>(dragged);
        *effect = DROPEFFECT_COPY;
        return S_OK;
    }
    STDMETHODIMP DragOver(DWORD, POINTL, DWORD* effect) override
    {
        ++overs;
        if (onOver)
            std::exchange(onOver, nullptr)();
        *effect = DROPEFFECT_COPY;
        return S_OK;
    }
    STDMETHODIMP DragLeave() override
    {
        over = true;
        return S_OK;
    }
    STDMETHODIMP Drop(IDataObject*, DWORD, POINTL, DWORD* effect) override
    {
        if (onDrop)
            std::exchange(onDrop, nullptr)();
        *effect = DROPEFFECT_COPY;
        over = true;
        return S_OK;
    }

    // Of what was dragged over it last; none when it cannot be had.
    std::vector<std::string> files() const
    {
        FORMATETC format{CF_HDROP, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};
        STGMEDIUM medium{};
        std::vector<std::string> names;
        if (!data || data->GetData(&format, &medium) != S_OK)
            return names;
        const auto list = static_cast<HDROP>(medium.hGlobal);
        for (UINT i = 0; i < DragQueryFileA(list, 0xFFFFFFFF, nullptr, 0); ++i) {
            char name[MAX_PATH] = "";
            DragQueryFileA(list, i, name, MAX_PATH);
            names.emplace_back(name);
        }
        ReleaseStgMedium(&medium);
        return names;
    }

    std::function<void()> onOver;
    std::function<void()> onDrop;
    ComPtr<IDataObject> data;
    int overs = 0;
    bool over = false; // left or dropped
};

} // namespace tessera::test
