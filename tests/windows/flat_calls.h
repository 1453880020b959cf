// Calls the library through its flat functions alone, as a host does that shares no code with it. Needs no
// run-time library.
#pragma once

#include <windows.h>

inline int g_iLogLines = 0;

inline int __stdcall IgnoreProgress(int, char*, char*, int) {
    return 0;
}
inline void __stdcall CountLogLine(int, int, char*) {
    ++g_iLogLines;
}
inline BOOL __stdcall RefuseRequest(int, int, char*, char*, char*, int) {
    return FALSE;
}

template <class Function>
Function* FlatFunction(HMODULE hLibrary, const char* sName) {
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(hLibrary, sName)));
}

/// Loads, calls and unloads the library twice. Returns 0, or the line number of the first failure. In
/// port-server mode without a server, the library throws the reason and must catch it itself.
inline int CallFlatFunctions() {
    for (int i = 0; i < 2; ++i) {
        const HMODULE hLibrary = LoadLibraryA(sizeof(void*) == 4 ? "quillet.wfx" : "quillet.wfx64");
        if (!hLibrary)
            return __LINE__;
        const auto setServerMode = FlatFunction<void(unsigned char)>(hLibrary, "QLIB_SetQpstMode");
        setServerMode(1);
        void* const hContext = FlatFunction<void*(unsigned short)>(hLibrary, "QLIB_ConnectPort")(5);
        if (!hContext || FlatFunction<bool(void*)>(hLibrary, "QLIB_IsPhoneConnected")(hContext))
            return __LINE__;
        FlatFunction<void(void*)>(hLibrary, "QLIB_DisconnectPort")(hContext);
        setServerMode(0);
        using Init =
            int __stdcall(int, decltype(&IgnoreProgress), decltype(&CountLogLine), decltype(&RefuseRequest));
        g_iLogLines = 0;
        if (FlatFunction<Init>(hLibrary, "FsInit")(1, IgnoreProgress, CountLogLine, RefuseRequest) != 0)
            return __LINE__;
        if (g_iLogLines == 0)
            return __LINE__;
        char sRoot[MAX_PATH] = "\\";
        FlatFunction<BOOL __stdcall(char*)>(hLibrary, "FsDisconnect")(sRoot);
        FreeLibrary(hLibrary);
    }
    return 0;
}
