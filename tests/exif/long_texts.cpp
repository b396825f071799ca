#include "tests/exif/long_texts.inc"

#include "platform/posix/resource_strings.h"

extern "C" {
#define KF_STRING(id, text) {id, KF_LONG_TEXT},
extern const platform::posix::ResourceString longTexts[] asm("resource.strings");
[[gnu::used]] const platform::posix::ResourceString longTexts[] = {
#include "companions/KFRES/strings.inc"
    {0, nullptr}};
}
