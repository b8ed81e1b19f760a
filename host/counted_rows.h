#pragma once

// Results of the host's connection that know how many rows they have, whatever cursors the host works with.

#include "platform/database.h"

namespace pxtarvo {

/// `resultado` itself where it knows its count, or has no rows to give (an UPDATE's is closed). One of a
/// cursor on the server, which does not, is read to its end and closed: what comes back are its rows, each
/// value as the database gave it, which can be walked again, counted, cloned and shown in a grid. A value
/// that could not be read raises its error where it is asked for. Raises what walking the result raises.
ObjectRef<Recordset> contado(ObjectRef<Recordset> resultado);

}  // namespace pxtarvo
