// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

/// Marks what `libZentuKit.so` offers: exported while the library is built, imported in a host.
#if defined(ZENTU_BUILD_LIBRARY)
#define ZENTU_EXPORT Q_DECL_EXPORT
#else
#define ZENTU_EXPORT Q_DECL_IMPORT
#endif
