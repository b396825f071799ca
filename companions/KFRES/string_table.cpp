// The string table where modules have no resource section: an exported array.
#include "platform/posix/resource_strings.h"

extern "C" {
#define KF_STRING(id, text) {id, text},
extern const platform::posix::ResourceString kfresStrings[] asm("resource.strings");
[[gnu::used]] const platform::posix::ResourceString kfresStrings[] = {
#include "companions/KFRES/strings.inc"
    {0, nullptr}};
}
