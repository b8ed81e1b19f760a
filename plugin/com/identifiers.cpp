// Defines the identifiers that the interfaces' header declares.

#include <initguid.h>

#include "plugin/com/interfaces.h"
