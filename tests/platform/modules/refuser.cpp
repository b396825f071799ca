// A module that does not want to be loaded.
#include "platform/system.h"

extern "C" {

int refuserAnswer() { return 1; }

BOOL WINAPI DllMain(HINSTANCE, DWORD, LPVOID) { return FALSE; }

}  // extern "C"
