#include "artwork/CoverLoader.h"

#include "system/Border.h"
#include "system/ComPtr.h"
#include "system/Module.h"

#include <algorithm>
#include <atomic>
#include <deque>
#include <iterator>

namespace tessera {

struct CoverLoader::State {
    std::shared_ptr<const CoverGrounds> grounds;
    HWND window = nullptr;
    UINT message = 0;
    std::atomic<bool> stop{false};
    Event wake; // there is a request, or the end

    CriticalSection lock; // guards the three below
    std::deque<CoverRequest> requests;
    std::deque<CoverResult> results;
    bool told = false;

    std::optional<CoverRequest> next()
    {
        const ScopedLock guard(lock);
        if (requests.empty()) {
            wake.reset();
            return std::nullopt;
        }
        CoverRequest request = std::move(requests.front());
        requests.pop_front();
        return request;
    }

    // Nothing is handed over once the end is asked for.
    void finish(CoverResult result)
    {
        if (stop) {
            return;
        }
        const ScopedLock guard(lock);
        results.push_back(std::move(result));
        if (!told) {
            told = PostMessageA(window, message, 0, 0) != FALSE;
        }
    }
};

namespace {

std::optional<FittedCover> makeCover(const CoverSource& source, const CoverGrounds& grounds)
{
    return quietBorder(std::optional<FittedCover>(), [&]() -> std::optional<FittedCover> {
        const std::optional<Picture> picture = readCover(source);
        return picture ? std::optional(fitCover(*picture, grounds)) : std::nullopt;
    });
}

// Code of ours may still run when everybody has let go of the module.
void keepModule()
{
    HMODULE module = nullptr;
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                       reinterpret_cast<LPCSTR>(&keepModule), &module);
}

} // namespace

CoverLoader::CoverLoader(std::shared_ptr<const CoverGrounds> grounds, HWND window, UINT message)
    : m_state(std::make_shared<State>())
{
    m_state->grounds = std::move(grounds);
    m_state->window = window;
    m_state->message = message;
    m_thread = Thread("Tessera covers", [state = m_state] { run(state); });
}

void CoverLoader::run(const std::shared_ptr<State>& state)
{
    const ComInit com;
    while (!state->stop) {
        std::optional<CoverRequest> request = state->next();
        if (request) {
            state->finish({request->album, makeCover(request->source, *state->grounds)});
        } else if (!state->stop) { // asked for before the wake-up call was taken back
            state->wake.wait();
        }
    }
}

void CoverLoader::add(CoverRequest request, Turn turn)
{
    const ScopedLock guard(m_state->lock);
    if (turn == Turn::Next) {
        m_state->requests.push_front(std::move(request));
    } else {
        m_state->requests.push_back(std::move(request));
    }
    m_state->wake.set();
}

void CoverLoader::hurry(const Album& album)
{
    const ScopedLock guard(m_state->lock);
    auto& requests = m_state->requests;
    const auto found = std::find_if(requests.begin(), requests.end(),
                                    [&](const CoverRequest& each) { return each.album == &album; });
    if (found != requests.end()) {
        std::rotate(requests.begin(), found, std::next(found));
    }
}

std::optional<CoverResult> CoverLoader::take()
{
    const ScopedLock guard(m_state->lock);
    if (m_state->results.empty()) {
        m_state->told = false;
        return std::nullopt;
    }
    CoverResult result = std::move(m_state->results.front());
    m_state->results.pop_front();
    return result;
}

bool CoverLoader::stop(DWORD patience)
{
    if (!m_thread.started()) {
        return true;
    }
    m_state->stop = true;
    m_state->wake.set();
    const bool ended = m_thread.waitAnsweringSentMessages(patience);
    if (!ended) {
        keepModule();
    }
    m_thread.letGo();
    return ended;
}

} // namespace tessera
