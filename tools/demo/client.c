/*
 * The demo's game client: a window that shows the arguments it was started with and has the buttons Quit and
 * Crash.
 *
 * For tests, arguments of its own: "/exit=N" ends at once with that exit code, "/crash" crashes at once,
 * "/report=FILE" writes the arguments to the file first, one a line, and "/print=TEXT" prints to standard
 * error.
 */
#include <stdio.h>
#include <wchar.h>
#include <windows.h>

enum { ID_QUIT = 1, ID_CRASH = 2, MARGIN = 16, BUTTON_WIDTH = 120, BUTTON_HEIGHT = 32 };

static void crash(void)
{
    volatile int* nowhere = NULL;
    *nowhere = 1;
}

static void reportArguments(const wchar_t* path, int argc, wchar_t** argv)
{
    FILE* file = _wfopen(path, L"wb");
    if (!file)
        return;
    for (int i = 1; i < argc; ++i) {
        char line[4096];
        WideCharToMultiByte(CP_UTF8, 0, argv[i], -1, line, sizeof line, NULL, NULL);
        fprintf(file, "%s\n", line);
    }
    fclose(file);
}

static LRESULT CALLBACK onMessage(HWND window, UINT message, WPARAM wparam, LPARAM lparam)
{
    switch (message) {
    case WM_COMMAND:
        if (LOWORD(wparam) == ID_QUIT)
            PostQuitMessage(0);
        else if (LOWORD(wparam) == ID_CRASH)
            crash();
        return 0;
    case WM_DESTROY:
        PostQuitMessage(0);
        return 0;
    default:
        return DefWindowProcW(window, message, wparam, lparam);
    }
}

static int showWindow(HINSTANCE instance, const wchar_t* text)
{
    const WNDCLASSW class = {.lpfnWndProc = onMessage,
                             .hInstance = instance,
                             .hCursor = LoadCursorW(NULL, (LPCWSTR)IDC_ARROW),
                             .hbrBackground = (HBRUSH)(COLOR_WINDOW + 1),
                             .lpszClassName = L"VelkorDemoClient"};
    RegisterClassW(&class);
    HWND window = CreateWindowW(class.lpszClassName, L"Velkor demo client", WS_OVERLAPPEDWINDOW,
                                CW_USEDEFAULT, CW_USEDEFAULT, 720, 360, NULL, NULL, instance, NULL);
    RECT area;
    GetClientRect(window, &area);
    const int buttonTop = area.bottom - MARGIN - BUTTON_HEIGHT;
    CreateWindowW(L"EDIT", text, WS_CHILD | WS_VISIBLE | WS_BORDER | ES_MULTILINE | ES_READONLY | WS_VSCROLL,
                  MARGIN, MARGIN, area.right - 2 * MARGIN, buttonTop - 2 * MARGIN, window, NULL, instance,
                  NULL);
    CreateWindowW(L"BUTTON", L"Quit", WS_CHILD | WS_VISIBLE | WS_TABSTOP, MARGIN, buttonTop, BUTTON_WIDTH,
                  BUTTON_HEIGHT, window, (HMENU)ID_QUIT, instance, NULL);
    CreateWindowW(L"BUTTON", L"Crash", WS_CHILD | WS_VISIBLE | WS_TABSTOP, 2 * MARGIN + BUTTON_WIDTH,
                  buttonTop, BUTTON_WIDTH, BUTTON_HEIGHT, window, (HMENU)ID_CRASH, instance, NULL);
    ShowWindow(window, SW_SHOWNORMAL);

    MSG message;
    while (GetMessageW(&message, NULL, 0, 0) > 0) {
        if (!IsDialogMessageW(window, &message)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
    return (int)message.wParam;
}

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE previous, PWSTR commandLine, int show)
{
    (void)previous;
    (void)commandLine;
    (void)show;
    int argc = 0;
    wchar_t** argv = CommandLineToArgvW(GetCommandLineW(), &argc);
    static wchar_t text[16384] = L"Started with these arguments:\r\n\r\n";
    for (int i = 1; i < argc; ++i) {
        wcsncat(text, argv[i], 16383 - wcslen(text));
        wcsncat(text, L"\r\n", 16383 - wcslen(text));
    }
    for (int i = 1; i < argc; ++i) {
        if (wcsncmp(argv[i], L"/report=", 8) == 0)
            reportArguments(argv[i] + 8, argc, argv);
        else if (wcsncmp(argv[i], L"/print=", 7) == 0)
            fprintf(stderr, "%ls\n", argv[i] + 7);
    }
    fflush(stderr);
    for (int i = 1; i < argc; ++i) {
        if (wcsncmp(argv[i], L"/exit=", 6) == 0)
            return _wtoi(argv[i] + 6);
        if (wcscmp(argv[i], L"/crash") == 0)
            crash();
    }
    return showWindow(instance, text);
}
