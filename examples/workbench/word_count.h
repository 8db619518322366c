// SPDX-License-Identifier: MIT
#pragma once

class QObject;

/// Adds the counting of words to the tools menu. Knows the menu by its identifier and the documents
/// by what the bus says of them.
void addWordCount(QObject* parent);
