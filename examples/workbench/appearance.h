// SPDX-License-Identifier: MIT
#pragma once

/// Gives the application its style, and the palette that the settings name, now and whenever they
/// change.
void followAppearanceSetting();
