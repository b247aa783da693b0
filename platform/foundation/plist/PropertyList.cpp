#include "foundation/plist/PropertyList.h"
