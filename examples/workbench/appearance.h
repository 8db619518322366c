// SPDX-License-Identifier: MIT
#pragma once

/// Gives the application the palette that the settings name, now and whenever they change.
void followAppearanceSetting();
