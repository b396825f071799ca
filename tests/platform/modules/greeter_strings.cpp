#include "platform/posix/resource_strings.h"

extern "C" const platform::posix::ResourceString greeterStrings[] asm("resource.strings");

const platform::posix::ResourceString greeterStrings[] = {{100, "Good day"},
                                                          {101, "A text with %d"},
                                                          {4660, "last"},
                                                          {200, "d\u00FC\u20AC"},
                                                          {0, nullptr}};
