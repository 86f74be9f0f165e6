#include "windowing/Dialog.h"

#include "system/Module.h"
#include "windowing/CarriedPointer.h"
#include "windowing/Control.h"
#include "windowing/Placement.h"

namespace tessera {

std::string DialogBase::itemText(UINT id) const
{
    return windowText(item(id));
}

void DialogBase::setItemText(UINT id, const std::string& text) const
{
    SetWindowTextA(item(id), text.c_str());
}

bool DialogBase::isChecked(UINT id) const
{
    return IsDlgButtonChecked(m_handle, static_cast<int>(id)) == BST_CHECKED;
}

void DialogBase::setChecked(UINT id, bool checked) const
{
    CheckDlgButton(m_handle, static_cast<int>(id), checked ? BST_CHECKED : BST_UNCHECKED);
}

DialogBase* DialogBase::objectOf(HWND window)
{
    return reinterpret_cast<DialogBase*>(GetWindowLongPtrA(window, DWLP_USER));
}

INT_PTR DialogBase::dialogMessage(const Message& message, DialogBase* created) noexcept
{
    if (created) {
        created->m_handle = message.window;
        SetWindowLongPtrA(message.window, DWLP_USER, reinterpret_cast<LONG_PTR>(created));
    } else if (message.id == WM_INITDIALOG) {
        return FALSE; // from somewhere else
    }
    auto* const dialog = objectOf(message.window);
    return dialog ? dialog->answer(message) : FALSE;
}

namespace {

// Their answers are the procedure's own result, not a message result beside it.
bool answersDirectly(UINT message)
{
    return message == WM_INITDIALOG || (message >= WM_CTLCOLORMSGBOX && message <= WM_CTLCOLORSTATIC) ||
           message == WM_CHARTOITEM || message == WM_VKEYTOITEM || message == WM_COMPAREITEM ||
           message == WM_QUERYDRAGICON;
}

} // namespace

INT_PTR DialogBase::answer(const Message& message) noexcept
{
    const ActivationScope activation(m_context);
    const Handled handled = routeGuarded(*this, message);
    if (message.id == WM_NCDESTROY) {
        SetWindowLongPtrA(message.window, DWLP_USER, 0);
        m_handle = nullptr;
        return FALSE;
    }
    if (answersDirectly(message.id)) {
        return static_cast<INT_PTR>(handled.value_or(message.id == WM_INITDIALOG ? TRUE : FALSE));
    }
    if (!handled) {
        return FALSE;
    }
    SetWindowLongPtrA(message.window, DWLP_MSGRESULT, *handled);
    return TRUE;
}

Dialog::~Dialog()
{
    if (handle()) {
        DestroyWindow(handle());
    }
}

INT_PTR Dialog::showModal(HWND owner, UINT resource)
{
    m_modal = true;
    captureContext();
    const CarriedPointer carried(this);
    return DialogBoxParamA(moduleInstance(), MAKEINTRESOURCEA(resource), owner, &Dialog::procedure,
                           reinterpret_cast<LPARAM>(this));
}

INT_PTR Dialog::showModal(HWND owner, const DialogTemplate& pattern)
{
    m_modal = true;
    captureContext();
    const CarriedPointer carried(this);
    return DialogBoxIndirectParamA(moduleInstance(), pattern.get(), owner, &Dialog::procedure,
                                   reinterpret_cast<LPARAM>(this));
}

bool Dialog::create(HWND owner, const DialogTemplate& pattern)
{
    m_modal = false;
    captureContext();
    const CarriedPointer carried(this);
    return CreateDialogIndirectParamA(moduleInstance(), pattern.get(), owner, &Dialog::procedure,
                                      reinterpret_cast<LPARAM>(this)) != nullptr;
}

void Dialog::end(INT_PTR result)
{
    if (m_modal) {
        EndDialog(handle(), result);
    } else if (handle()) {
        DestroyWindow(handle());
    }
}

Handled Dialog::route(const Message& message)
{
    if (message.id == WM_INITDIALOG) {
        const bool first = onInitDialog(); // may change the size
        centreOverOwner(message.window);
        return first;
    }
    if (message.id == WM_COMMAND && LOWORD(message.wParam) == IDOK) {
        onOk();
        return 0;
    }
    if (message.id == WM_COMMAND && LOWORD(message.wParam) == IDCANCEL) {
        onCancel();
        return 0;
    }
    return kDefault;
}

INT_PTR CALLBACK Dialog::procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept
{
    const bool created = message == WM_INITDIALOG && !objectOf(window) && CarriedPointer::isKnown(lParam);
    return dialogMessage({window, message, wParam, lParam},
                         created ? reinterpret_cast<Dialog*>(lParam) : nullptr);
}

} // namespace tessera
