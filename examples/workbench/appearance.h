// SPDX-License-Identifier: MIT
#pragma once

/// Lets the screen say how large things are drawn; before the application object is made.
void followScreenScale();

/// Gives the application its style, and the palette that the settings name, now and whenever they
/// change.
void followAppearanceSetting();
