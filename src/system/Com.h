#pragma once

// Everything for calling and serving automation objects.
#include "system/ComPtr.h"
#include "system/DispatchServer.h"
#include "system/Invoke.h"
#include "system/Variant.h"
