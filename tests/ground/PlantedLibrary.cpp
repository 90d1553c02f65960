// Stands under the names of libraries in a folder that others may write to, and tells when it is loaded.
#include <windows.h>

#include <fstream>

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID)
{
    if (reason == DLL_PROCESS_ATTACH)
        std::ofstream("planted-library-was-loaded") << "loaded";
    return TRUE;
}
