#include "platform/faults.h"
#include <csignal>
#include <windows.h>

namespace {

void (*lastAct)();
// Kept free for the act where the stack has run out, in bytes.
constexpr ULONG STACK_FOR_ACT = 65536;

void ActOnce() {
    auto *act = lastAct;
    lastAct = nullptr;
    if (act) act();
}

LONG WINAPI AtException(EXCEPTION_POINTERS *) {
    ActOnce();
    return EXCEPTION_CONTINUE_SEARCH;
}

void AtAbort(int) {
    ActOnce();
}

} // namespace

void CallOnFault(void (*act)()) {
    lastAct = act;
    ULONG size = STACK_FOR_ACT;
    SetThreadStackGuarantee(&size);
    SetUnhandledExceptionFilter(act ? AtException : nullptr);
    signal(SIGABRT, act ? AtAbort : SIG_DFL);
}
