// SPDX-License-Identifier: MIT
// The application may include every layer below it.
#pragma once
#include "settings/reaches_up.h"
