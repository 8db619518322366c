// SPDX-License-Identifier: MIT
#include <ZentuKit/ContextManager>
#include <ZentuKit/qlogstream.h>
#include <ZentuKit/wisp_recorder.h>

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    wisp::clearRecordedLines();

    Zentu::ContextManager contexts;
    contexts.addContext(QStringLiteral("text"));
    // A line of one's own, formatted as the library's are.
    wisp::qlogstream(wisp::LogInfo) << "opened" << QStringLiteral("notes.txt") << 3;

    for (const wisp::Line& line : wisp::recordedLines()) {
        // Without what stands before the text: the address is another one each time.
        const std::size_t text = line.text.find(") ");
        std::puts(line.text.substr(text == std::string::npos ? 0 : text + 2).c_str());
    }
    return 0;
}
