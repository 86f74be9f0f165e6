#include "system/ModuleUse.h"

#include <atomic>

namespace tessera {

namespace {
constinit std::atomic<long> g_uses{0};
}

ModuleUse::ModuleUse()
{
    add();
}
ModuleUse::~ModuleUse()
{
    remove();
}
long ModuleUse::count()
{
    return g_uses;
}
void ModuleUse::add()
{
    ++g_uses;
}
void ModuleUse::remove()
{
    --g_uses;
}

} // namespace tessera
