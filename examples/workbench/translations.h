// SPDX-License-Identifier: MIT
#pragma once

/// Shows the library's texts in the language of the default locale, if there is a translation.
void loadTranslations();
