#pragma once

// All wrappers of standard controls.
#include "windowing/ComboBoxEx.h"
#include "windowing/Control.h"
#include "windowing/Header.h"
#include "windowing/ImageList.h"
#include "windowing/ListView.h"
#include "windowing/ToolBar.h"
#include "windowing/TreeView.h"
