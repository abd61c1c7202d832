// Starts a Windows program in a console of its own, without a window, and presses Ctrl-C there once a file holds a
// text. Nothing else closes a console program from outside without ending it by force.
// usage: close_from_outside FILE TEXT PROGRAM [ARGUMENT...]

#include <windows.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace {

constexpr DWORD kPollMs = 20;
constexpr DWORD kLongestEndMs = 60'000;  // only a program that hangs takes so long
constexpr int kUsage = 2, kNotStarted = 3, kNotEnded = 4;

bool lf_holds(const std::filesystem::path& name, const std::string& text) {
    std::ifstream file(name, std::ios::binary);
    const std::string all{std::istreambuf_iterator<char>(file), {}};
    return all.find(text) != std::string::npos;
}

std::string lf_plain(const wchar_t* text) {
    return {text, text + std::char_traits<wchar_t>::length(text)};
}

std::wstring lf_commandLine(int count, wchar_t** arguments) {
    std::wstring line;
    for (int i = 0; i < count; ++i) line += (i == 0 ? L"\"" : L" \"") + std::wstring(arguments[i]) + L"\"";
    return line;
}

/// The messages of this program go beside those of the other one, whose console it takes over.
HANDLE gOutput = nullptr;

int lf_tell(int code, const std::string& text) {
    DWORD written = 0;
    WriteFile(gOutput, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
    return code;
}

int lf_close(const PROCESS_INFORMATION& program) {
    FreeConsole();
    AttachConsole(program.dwProcessId);
    SetConsoleCtrlHandler(nullptr, TRUE);  // for this program itself the key means nothing
    const ULONGLONG pressed = GetTickCount64();
    GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0);
    if (WaitForSingleObject(program.hProcess, kLongestEndMs) != WAIT_OBJECT_0) {
        TerminateProcess(program.hProcess, kNotEnded);
        return lf_tell(kNotEnded, "not closed\n");
    }
    const ULONGLONG took = GetTickCount64() - pressed;
    DWORD code = 0;
    GetExitCodeProcess(program.hProcess, &code);
    return lf_tell(0, "closed in " + std::to_string(took) + " ms with exit code " + std::to_string(code) + "\n");
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    gOutput = GetStdHandle(STD_OUTPUT_HANDLE);
    if (count < 4) return lf_tell(kUsage, "usage: close_from_outside FILE TEXT PROGRAM [ARGUMENT...]\n");
    std::wstring line = lf_commandLine(count - 3, arguments + 3);
    STARTUPINFOW start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
    start.hStdOutput = gOutput;
    start.hStdError = GetStdHandle(STD_ERROR_HANDLE);
    PROCESS_INFORMATION program{};
    if (CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, CREATE_NO_WINDOW, nullptr, nullptr, &start,
                       &program) == FALSE) {
        return lf_tell(kNotStarted, "not started\n");
    }
    while (!lf_holds(arguments[1], lf_plain(arguments[2]))) {
        if (WaitForSingleObject(program.hProcess, kPollMs) == WAIT_OBJECT_0) {
            return lf_tell(kNotEnded, "ended by itself\n");
        }
    }
    return lf_close(program);
}
