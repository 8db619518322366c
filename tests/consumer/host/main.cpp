// SPDX-License-Identifier: MIT
//
// The host's own program. It has the name of the logger, and a class for moc where AUTOMOC is on.

#include <ZentuKit/ZentuKit>

#include <cstdio>

#ifdef WITH_GREETING
int greet(int argc, char** argv);
#endif

int main(int argc, char** argv)
{
#ifdef WITH_GREETING
    return greet(argc, argv);
#else
    Q_UNUSED(argc)
    Q_UNUSED(argv)
    Zentu::IEvent event(QStringLiteral("greeting"));
    std::printf("own %s\n", qUtf8Printable(event.type()));
    return 0;
#endif
}
