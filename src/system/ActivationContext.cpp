#include "system/ActivationContext.h"

#include "system/Module.h"

#include <utility>

namespace tessera {

ActivationContext ActivationContext::ofModule()
{
    const std::string path = modulePath(moduleInstance());
    ACTCTXA request{};
    request.cbSize = sizeof request;
    request.dwFlags = ACTCTX_FLAG_HMODULE_VALID | ACTCTX_FLAG_RESOURCE_NAME_VALID;
    request.lpSource = path.c_str();
    request.lpResourceName = MAKEINTRESOURCEA(2); // where manifests of DLLs live
    request.hModule = moduleInstance();
    return ActivationContext(CreateActCtxA(&request));
}

ActivationContext ActivationContext::current()
{
    HANDLE handle = nullptr;
    const bool known = GetCurrentActCtx(&handle) && handle;
    return ActivationContext(known ? handle : INVALID_HANDLE_VALUE);
}

ActivationContext::~ActivationContext()
{
    if (*this) {
        ReleaseActCtx(m_handle);
    }
}

ActivationContext::ActivationContext(ActivationContext&& other) noexcept
    : m_handle(std::exchange(other.m_handle, INVALID_HANDLE_VALUE))
{
}

ActivationContext& ActivationContext::operator=(ActivationContext&& other) noexcept
{
    std::swap(m_handle, other.m_handle);
    return *this;
}

ActivationScope::ActivationScope(const ActivationContext& context)
    : m_active(context && ActivateActCtx(context.get(), &m_cookie))
{
}

ActivationScope::~ActivationScope()
{
    if (m_active) {
        DeactivateActCtx(0, m_cookie);
    }
}

} // namespace tessera
