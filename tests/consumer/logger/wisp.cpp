// SPDX-License-Identifier: MIT
//
// A logger of someone's own, in the place of the one beside the library.

#include <cstdio>

namespace wisp {

class __attribute__((visibility("default"))) logger
{
public:
    static logger* instance();
    void log(int level, const char* text);
};

logger* logger::instance()
{
    static logger theLogger;
    return &theLogger;
}

void logger::log(int level, const char* text)
{
    std::printf("own %d %s\n", level, text);
}

} // namespace wisp
