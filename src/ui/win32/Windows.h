#pragma once

// The windows, dialogs and shell of the platform, without the macros that break C++.

#include "base/com/Windows.h"

#include <commctrl.h>
#include <commdlg.h>
#include <shellapi.h>
#include <shlobj.h>
