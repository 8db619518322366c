// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

#include <string>
#include <typeinfo>
#include <vector>

/// Who called: addresses, which are cheap to take, and the names of functions, which are not.
namespace Zentu::Inspect::Stack {

/// Some @p depth callers, and before them those of the inspector, the logger and the library, which
/// the names below leave out: looking for them takes longer than the rest.
std::vector<void*> capture(int depth);

/// A frame each: the function, and its file and line where the program has symbols. Takes a tenth
/// of a second and more for each library that is asked for the first time.
QStringList describe(const std::vector<void*>& frames);

/// A frame each, as far as it is known without asking another program.
QStringList functions(const std::vector<void*>& frames);

/// The name of a class as it is written in C++.
std::string className(const std::type_info& type);

} // namespace Zentu::Inspect::Stack
