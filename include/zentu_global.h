// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

/// A version as one number, `0xMMNNPP`, that compares as versions do:
/// `#if ZENTU_VERSION >= ZENTU_VERSION_CHECK(1, 1, 0)`. Each part is from 0 to 255.
#define ZENTU_VERSION_CHECK(major, minor, patch) (((major) << 16) | ((minor) << 8) | (patch))

/// The version of the headers that a host is compiled with, as one number.
#define ZENTU_VERSION ZENTU_VERSION_CHECK(1, 0, 0)

/// The same as a text.
#define ZENTU_VERSION_STR "1.0.0"

/// Marks what `libZentuKit.so` offers: exported while the library is built, imported in a host.
#if defined(ZENTU_BUILD_LIBRARY)
#define ZENTU_EXPORT Q_DECL_EXPORT
#else
#define ZENTU_EXPORT Q_DECL_IMPORT
#endif
