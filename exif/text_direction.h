// Which way a field's value and its text are converted.
#pragma once

namespace exif {

enum class TextDirection { fieldToText = 0, textToField = 1 };

}  // namespace exif
