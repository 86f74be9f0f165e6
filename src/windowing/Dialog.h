#pragma once

#include "windowing/DialogTemplate.h"
#include "windowing/Messages.h"
#include "windowing/Window.h"

#include <string>

namespace tessera {

// What dialogs and pages share: the controls inside.
class DialogBase : public MessageTarget {
public:
    DialogBase() = default;
    DialogBase(const DialogBase&) = delete;
    DialogBase& operator=(const DialogBase&) = delete;

    HWND handle() const { return m_handle; }
    HWND item(UINT id) const { return GetDlgItem(m_handle, static_cast<int>(id)); }
    std::string itemText(UINT id) const;
    void setItemText(UINT id, const std::string& text) const;
    bool isChecked(UINT id) const;
    void setChecked(UINT id, bool checked) const;

protected:
    // True: the system gives the focus to the first control.
    virtual bool onInitDialog() { return true; }
    static DialogBase* objectOf(HWND window); // null: not yet, or not any more
    // The body of every dialog procedure; `created` is what WM_INITDIALOG brought when the dialog was made,
    // else null.
    static INT_PTR dialogMessage(const Message& message, DialogBase* created) noexcept;
    void captureContext() { m_context = ActivationContext::current(); }

private:
    INT_PTR answer(const Message& message) noexcept;
    HWND m_handle = nullptr;
    ActivationContext m_context;
};

// A dialog; the HWND lives inside `showModal`, or from `create` until the object's end.
class Dialog : public DialogBase {
public:
    ~Dialog() override;

    // Modal, by a resource of this module or a template in memory. Answers what `end` was called
    // with; -1 when the dialog could not be created.
    INT_PTR showModal(HWND owner, UINT resource);
    INT_PTR showModal(HWND owner, const DialogTemplate& pattern);
    // Modeless.
    bool create(HWND owner, const DialogTemplate& pattern);
    void end(INT_PTR result);

    Handled route(const Message& message) override;

protected:
    virtual void onOk() { end(IDOK); }
    virtual void onCancel() { end(IDCANCEL); }

private:
    static INT_PTR CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
    bool m_modal = false;
};

} // namespace tessera
