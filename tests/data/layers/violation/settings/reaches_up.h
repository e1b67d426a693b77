// SPDX-License-Identifier: MIT
// A settings header that reaches up into the application: the layer check must refuse it.
#pragma once
#include "app/state.h"
