#pragma once

// The report's pictures, drawn as SVG into the page. Their colours are the page's style's.

#include <string>
#include <vector>

#include "devhost/report/run_facts.h"

namespace pxtarvo::devhost {

/// How many prices changed by how much; empty where none did.
std::string priceHistogram(const std::vector<ArticleFact>& repriced);
/// The value of the stock at the prices before and after; empty where both are zero.
std::string stockValueBars(double before, double after);

}  // namespace pxtarvo::devhost
