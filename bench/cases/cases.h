// Every line of the table, a list a subject.
#pragma once

#include "bench/measure/case.h"

namespace bench {

[[nodiscard]] Cases readCases();
[[nodiscard]] Cases writeCases();
[[nodiscard]] Cases previewCases();
[[nodiscard]] Cases metadataCases();
[[nodiscard]] Cases mpoCases();
[[nodiscard]] Cases processCases();
[[nodiscard]] Cases growthCases();

}  // namespace bench
