// What the greeter module offers to the tests.
#pragma once

#include "platform/system.h"

struct AttachReport {
  int attached;        // how often DllMain was told of an attachment
  HINSTANCE instance;  // as DllMain got it
  char fileName[MAX_PATH];
  char greeting[32];  // string 100, as DllMain read it
};

using GreeterAdd = int (*)(int first, int second);
using GreeterAttachReport = const AttachReport* (*)();
using GreeterSetDetachCounter = void (*)(int* counter);  // counts up when the module is detached
