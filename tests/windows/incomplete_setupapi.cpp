// A SETUPAPI.DLL with all the functions that the library looks up except one.
extern "C" {

__declspec(dllexport) int __stdcall SetupDiOpenDevRegKey(void*, void*, int, int, int, int) {
    return 0;
}
__declspec(dllexport) int __stdcall SetupDiClassGuidsFromNameA(const char*, void*, int, int*) {
    return 0;
}
__declspec(dllexport) int __stdcall SetupDiGetClassDevsA(void*, const char*, void*, int) {
    return 0;
}
__declspec(dllexport) int __stdcall SetupDiGetDeviceRegistryPropertyA(void*, void*, int, int*, void*, int,
                                                                      int*) {
    return 0;
}
__declspec(dllexport) int __stdcall SetupDiGetDeviceInstanceIdA(void*, void*, char*, int, int*) {
    return 0;
}
__declspec(dllexport) int __stdcall SetupDiDestroyDeviceInfoList(void*) {
    return 0;
}
__declspec(dllexport) int __stdcall SetupDiEnumDeviceInfo(void*, int, void*) {
    return 0;
}

} // extern "C"; "SetupDiClassNameFromGuidA" is missing
