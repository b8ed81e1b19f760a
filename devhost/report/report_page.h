#pragma once

// A report as one page of HTML that needs nothing else: it prints on A4 and reads on a telephone.

#include <string>

#include "devhost/report/run_report.h"

namespace pxtarvo::devhost {

/// UTF-8. Whatever a list holds stands in it as text.
std::string reportPage(const RunReport& report);

}  // namespace pxtarvo::devhost
