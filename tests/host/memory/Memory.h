#pragma once

// The whole memory host.
#include "host/memory/Catalog.h"
#include "host/memory/Domain.h"
#include "host/memory/Faults.h"
#include "host/memory/Fields.h"
#include "host/memory/Geometry.h"
#include "host/memory/Layers.h"
#include "host/memory/Map.h"
#include "host/memory/MemoryHost.h"
#include "host/memory/Relationship.h"
#include "host/memory/SpatialReference.h"
#include "host/memory/Subtypes.h"
#include "host/memory/Table.h"
#include "host/memory/Workspace.h"
