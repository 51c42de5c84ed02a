#pragma once
// The records of the sheet model, all in one include.

#include "core/basic_records.h"
#include "core/data_menu.h"
#include "core/dialog.h"
#include "core/fileinfo.h"
#include "core/game_system.h"
#include "core/item.h"
#include "core/list_info.h"
#include "core/option.h"
#include "core/undo_history.h"
