#include "frame/automation/library_lifetime.h"
#include "platform/win32/thread_end.h"

#include <windows.h>

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID processEnds);

// Runs inside the loader's lock: nothing here may wait for another thread, load a module or call
// into COM. When the process ends (a non-null last argument) the other threads are gone, in the
// middle of whatever they did: then nothing is touched at all.
extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID processEnds) {
    if (reason == DLL_THREAD_DETACH) {
        orvane::platform::win32ThreadDetach();
    } else if (reason == DLL_PROCESS_DETACH && processEnds == nullptr) {
        orvane::automation::runUnloadActions();
    }
    return TRUE;
}
