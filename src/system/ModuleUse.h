#pragma once

namespace tessera {

// Keeps the module loaded while it lives: every object that is handed out, every lock that a
// client holds on the class factory, and the controller have one.
class ModuleUse {
public:
    ModuleUse();
    ~ModuleUse();
    ModuleUse(const ModuleUse&) = delete;
    ModuleUse& operator=(const ModuleUse&) = delete;

    static long count();
    static void add();
    static void remove();
};

} // namespace tessera
