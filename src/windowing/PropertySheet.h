#pragma once

#include "windowing/Dialog.h"

#include <memory>
#include <prsht.h>
#include <string>
#include <vector>

// The system's macro would rename our class.
#undef PropertySheet

namespace tessera {

class PropertySheet;

// A page of a sheet or wizard: a dialog that is created when it is first shown and dies with the
// sheet. Texts that must outlive the sheet are kept by the page's creator in members.
class PropertyPage : public DialogBase {
public:
    // The caption is the tab's text, and the title of a wizard while the page is shown.
    explicit PropertyPage(std::string caption) : m_caption(std::move(caption)) {}
    ~PropertyPage() override = default;

    const std::string& caption() const { return m_caption; }
    PropertySheet& sheet() const { return *m_sheet; } // only inside `run`
    int index() const { return m_index; }             // from 0
    Handled route(const Message& message) override;

protected:
    // The page's controls; style DialogTemplate::kPageStyle, 275 x 175.
    virtual DialogTemplate pattern() const = 0;

    // True, or nothing, lets the user go on; false keeps the page.
    virtual void onSetActive() {}
    virtual bool onKillActive() { return true; }
    virtual bool onWizardNext() { return true; }
    virtual bool onWizardBack() { return true; }
    virtual bool onWizardFinish() { return true; }
    virtual bool onApply() { return true; } // OK and Apply of a sheet
    virtual bool onQueryCancel() { return true; }
    virtual void onReset() {} // cancelled

private:
    friend class PropertySheet;
    Handled onSheetNotification(const NMHDR& header);
    static INT_PTR CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;

    std::string m_caption;
    PropertySheet* m_sheet = nullptr;
    int m_index = 0;
};

enum class SheetKind { Tabs, Wizard };

// A modal property sheet (OK and Cancel) or wizard. Pages are referred to, not owned.
class PropertySheet {
public:
    PropertySheet(SheetKind kind, std::string caption) : m_kind(kind), m_caption(std::move(caption)) {}
    virtual ~PropertySheet() = default;
    PropertySheet(const PropertySheet&) = delete;
    PropertySheet& operator=(const PropertySheet&) = delete;

    void add(PropertyPage& page) { m_pages.push_back(&page); }
    int pageCount() const { return static_cast<int>(m_pages.size()); }

    // True: OK or Finish; false: cancelled or the sheet could not be created.
    bool run(HWND owner, int firstPage = 0);
    // The sheet's window, while it runs.
    HWND handle() const { return m_handle; }
    // Ends `run` as Cancel does, from any place; no page can refuse.
    void close();
    bool closing() const { return m_closing; }

    // PSWIZB_BACK, PSWIZB_NEXT, PSWIZB_FINISH.
    void setWizardButtons(DWORD buttons) const;
    void pressButton(int button) const; // PSBTN_*
    void setTitle(const std::string& title) const;

protected:
    // The window is there and is about to show its first page.
    virtual void onInitialised() {}

private:
    friend class PropertyPage;
    void pageCreated(HWND page);
    PROPSHEETPAGEA pageRecord(PropertyPage& page, const DialogTemplate& pattern) const;

    SheetKind m_kind;
    std::string m_caption;
    std::vector<PropertyPage*> m_pages;
    HWND m_handle = nullptr;
    std::unique_ptr<Subclass> m_placing; // of the sheet
    bool m_closing = false;
};

} // namespace tessera
