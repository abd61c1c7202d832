#include <cstdio>
#include <cstdlib>
#include <thread>

#include "platform/system.h"
#include "platform/win32/windows_header.h"

namespace hcr {
namespace {

constexpr DWORD kGraceMs = 10'000;  // the system ends the process when the handler returns
constexpr const wchar_t* kWindowClass = L"HalcyraneEndOfSession";

/// What the console was before: it belongs to the shell, too.
struct ConsoleBefore {
    UINT codePage = 0;
    DWORD mode = 0;
    bool hasMode = false;
};
ConsoleBefore gConsoleBefore;

void lf_giveConsoleBack() {
    if (gConsoleBefore.codePage != 0) SetConsoleOutputCP(gConsoleBefore.codePage);
    if (gConsoleBefore.hasMode) SetConsoleMode(GetStdHandle(STD_OUTPUT_HANDLE), gConsoleBefore.mode);
}

std::atomic<std::atomic<bool>*> gTerminateFlag{nullptr};

bool lf_terminate() {
    std::atomic<bool>* flag = gTerminateFlag.load();
    if (flag == nullptr) return false;
    flag->store(true);
    return true;
}

BOOL WINAPI lf_onConsoleEvent(DWORD event) {
    if (!lf_terminate()) return FALSE;
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) Sleep(kGraceMs);
    return TRUE;
}

LRESULT CALLBACK lf_onWindowMessage(HWND window, UINT message, WPARAM first, LPARAM second) {
    if (message != WM_ENDSESSION) return DefWindowProcW(window, message, first, second);
    if (first != FALSE && lf_terminate()) Sleep(kGraceMs);
    return 0;
}

/// The console tells only programs without any window functions that the user signs out; the others are told by a
/// window, which nobody needs to see.
void lf_awaitEndOfSession() {
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = lf_onWindowMessage;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.lpszClassName = kWindowClass;
    RegisterClassW(&windowClass);
    const HWND window = CreateWindowExW(0, kWindowClass, L"", WS_OVERLAPPED, 0, 0, 0, 0, nullptr, nullptr,
                                        windowClass.hInstance, nullptr);
    if (window == nullptr) return;
    MSG message{};
    while (GetMessageW(&message, nullptr, 0, 0) > 0) DispatchMessageW(&message);
}

}  // namespace

void gf_prepareConsole() {
    gConsoleBefore.codePage = GetConsoleOutputCP();
    SetConsoleOutputCP(CP_UTF8);
    const HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
    gConsoleBefore.hasMode = GetConsoleMode(output, &gConsoleBefore.mode) != FALSE;
    if (gConsoleBefore.hasMode) SetConsoleMode(output, gConsoleBefore.mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
    std::atexit(lf_giveConsoleBack);
}

void gf_leaveProcess(int code) {
    std::fflush(nullptr);
    lf_giveConsoleBack();
    std::_Exit(code);
}

void gf_onTerminate(std::atomic<bool>& flag) {
    if (gTerminateFlag.exchange(&flag) != nullptr) return;
    SetConsoleCtrlHandler(lf_onConsoleEvent, TRUE);
    std::thread(lf_awaitEndOfSession).detach();
}

}  // namespace hcr
