#include "system/Border.h"

#include "base/Text.h"
#include "system/MessageBoxes.h"

#include <new>

namespace tessera {

HRESULT caughtResult() noexcept
{
    try {
        throw;
    } catch (const HostError& error) {
        return FAILED(error.code()) ? error.code() : E_FAIL;
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (const Cancelled&) {
        return E_ABORT;
    } catch (...) {
        return E_FAIL;
    }
}

std::string caughtMessage() noexcept
{
    try {
        try {
            throw;
        } catch (const HostError& error) {
            return resultMessage(error.code());
        } catch (const Cancelled&) {
            return "";
        } catch (const std::bad_alloc&) {
            return "There is not enough memory.";
        } catch (const std::exception& error) {
            return error.what();
        }
    } catch (...) {
        return "";
    }
}

std::string resultMessage(HRESULT result)
{
    char* text = nullptr;
    const DWORD length = FormatMessageA(
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
        static_cast<DWORD>(result), 0, reinterpret_cast<char*>(&text), 0, nullptr);
    const struct Free {
        ~Free() { LocalFree(text); }
        char* text;
    } freeAtEnd{text};
    const std::string explanation(trimRight(std::string_view(text ? text : "", length)));
    const std::string number = format("0x%08lX", static_cast<unsigned long>(result));
    const std::string sentence = "Media Jukebox reported an error (" + number + ").";
    return explanation.empty() ? sentence : sentence + "\n\n" + explanation;
}

void reportCaught(HWND owner) noexcept
{
    quietBorder(0, [owner] {
        const std::string text = caughtMessage();
        return text.empty() ? 0 : showMessage(owner, MB_OK | MB_ICONSTOP, text);
    });
}

} // namespace tessera
