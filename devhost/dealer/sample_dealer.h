#pragma once

// A small dealer to try the plug-in on: suppliers, brands, families, a thousand articles with their stock,
// places and movements. The same rows every time.

#include "platform/database.h"

namespace pxtarvo::devhost {

/// Fills empty host tables, in one transaction. Raises the provider's error, of the sample list too; nothing
/// is written then.
///
/// Supplier code 24 is Pro_ID 4, brand SAME is Marca_ID 1, as the import window proposes them. 640 articles
/// stand in the sample list of 2012: by their position in turns of eight, three are sold below the list
/// price, two at it, two above it and one has no price. Sixty more are codes of that list without their
/// leading zero. Articles that the deletion search may offer have one stock row at most: two would make its
/// statement fail.
void fillSampleDealer(Connection& connection);

}  // namespace pxtarvo::devhost
