#pragma once

// The spreadsheet application through automation, over a reader of its files.

#include "devhost/wine/objects/counted_object.h"
#include "platform/spreadsheet.h"

namespace pxtarvo::devhost {

/// The application object.
windows::Reference<IDispatch> spreadsheetObject(const ObjectRef<SpreadsheetApplication>& application);

}  // namespace pxtarvo::devhost
